// The model's time: what is due when, and in which order.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <tuple>
#include <utility>

namespace mireth::model {

/// At one instant timers come in the order in which they were set, then steps. Each is a turn; what is left
/// for after the turn runs before the next one.
class DueList {
  public:
    using Instant = std::chrono::nanoseconds;
    using Action = std::function<void()>;

    Instant now() const { return now_; }
    std::int64_t nowMillis() const { return now_ / std::chrono::milliseconds(1); }

    void after(Instant delay, Action action) { add(now_ + delay, false, nextPlace_++, std::move(action)); }
    void step(Instant at, Action action) { add(at, true, nextPlace_++, std::move(action)); }
    void afterTurn(Action action) { afterTurn_.push_back(std::move(action)); }

    /// A place in the order for a timer that is set again and again.
    std::uint64_t takePlace() { return nextPlace_++; }
    void afterInPlace(Instant delay, std::uint64_t place, Action action) {
        add(now_ + delay, false, place, std::move(action));
    }

    /// Runs turn by turn until nothing is due.
    void run() {
        while (!due_.empty()) {
            auto next = due_.extract(due_.begin());
            now_ = std::get<0>(next.key());
            next.mapped()();
            finishTurn();
        }
    }

  private:
    using Key = std::tuple<Instant, bool, std::uint64_t>;

    void add(Instant at, bool isStep, std::uint64_t place, Action action) {
        due_.emplace(Key{at, isStep, place}, std::move(action));
    }
    void finishTurn() {
        while (!afterTurn_.empty()) {
            const Action action = std::move(afterTurn_.front());
            afterTurn_.pop_front();
            action();
        }
    }

    Instant now_{0};
    std::uint64_t nextPlace_ = 0;
    std::map<Key, Action> due_;
    std::deque<Action> afterTurn_;
};

}  // namespace mireth::model
