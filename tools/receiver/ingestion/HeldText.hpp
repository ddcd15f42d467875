// How much text all uploads together may hold in memory while they arrive. An upload of ordinary size has
// room of its own, so that those that send far more than any client does stand in nobody's way but their own.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <utility>

namespace mireth::receiver {

/// The room that uploads share. Any thread may call.
class SharedText {
  public:
    /// False when there is not as much left.
    bool take(std::size_t bytes) {
        if (taken_.fetch_add(bytes) + bytes <= most) {
            return true;
        }
        giveBack(bytes);
        return false;
    }
    void giveBack(std::size_t bytes) { taken_ -= bytes; }

    static constexpr std::size_t most = std::size_t{16} << 20U;

  private:
    std::atomic<std::size_t> taken_ = 0;
};

/// What one upload holds; given back with the object. One thread at a time.
class HeldText {
  public:
    /// `shared` outlives the object.
    explicit HeldText(SharedText& shared) : shared_(shared) {}
    HeldText(const HeldText&) = delete;
    HeldText& operator=(const HeldText&) = delete;
    ~HeldText() { release(); }

    /// Makes room for a text of `bytes` in all; false when there is none.
    bool hold(std::size_t bytes) {
        const std::size_t beyond = std::max(bytes, own) - own;
        if (beyond > taken_ && !shared_.take(beyond - taken_)) {
            return false;
        }
        taken_ = std::max(taken_, beyond);
        return true;
    }

    /// Gives everything back.
    void release() { shared_.giveBack(std::exchange(taken_, 0)); }

    /// Many times what ten seconds of an app come to.
    static constexpr std::size_t own = std::size_t{64} << 10U;

  private:
    SharedText& shared_;
    std::size_t taken_ = 0;
};

}  // namespace mireth::receiver
