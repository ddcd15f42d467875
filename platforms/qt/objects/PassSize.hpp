// How many of the app's objects a pass takes in, so that each one ends.
#pragma once

#include <cstddef>

namespace mireth::qt {

/// As many views of a window as the library looks at.
inline constexpr std::size_t maximumPassSize = 50'000;

/// Counts them.
class PassSize {
  public:
    void startPass() noexcept { count_ = 0; }

    /// False when there is no room for another one.
    bool takeOneMore() noexcept { return count_++ < maximumPassSize; }

  private:
    std::size_t count_ = 0;
};

}  // namespace mireth::qt
