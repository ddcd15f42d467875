// Counts the connections that wait for a thread, so that slow ones can give theirs up for them. Shared by the
// server's threads.
#pragma once

#include <atomic>

namespace mireth::receiver {

/// Any thread may call.
class Crowd {
  public:
    /// One more connection waits.
    void joined() { ++wanted_; }
    /// A thread is about to be free for one of those who wait, if any do. True for as many calls as
    /// connections joined.
    bool serveOne() {
        int wanted = wanted_.load();
        while (wanted > 0 && !wanted_.compare_exchange_weak(wanted, wanted - 1)) {
        }
        return wanted > 0;
    }

  private:
    std::atomic<int> wanted_ = 0;
};

}  // namespace mireth::receiver
