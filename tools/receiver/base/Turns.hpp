// Lets a few at a time do what takes much memory, so that many requests at once take no more than a few.
#pragma once

#include <cstddef>
#include <semaphore>

namespace mireth::receiver {

/// Any thread may call.
class Turns {
  public:
    /// How many have theirs at the same time.
    explicit Turns(std::ptrdiff_t atOnce) : free_(atOnce) {}

  private:
    friend class Turn;

    std::counting_semaphore<> free_;
};

/// Waits for a turn, and passes it on when it goes.
class Turn {
  public:
    /// `turns` outlives the turn.
    explicit Turn(Turns& turns) : free_(turns.free_) { free_.acquire(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() { free_.release(); }

  private:
    std::counting_semaphore<>& free_;
};

}  // namespace mireth::receiver
