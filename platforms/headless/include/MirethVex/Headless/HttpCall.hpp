// One request of a client without a network of its own: who may still call its completion, and who waits.
#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

#include "MirethVex/Platform/HttpClient.hpp"

namespace mireth::headless {

/// The completion is called or dropped, once, and never under a lock. Any thread.
class HttpCall {
  public:
    using Completion = platform::HttpClient::Completion;

    explicit HttpCall(Completion completion) : completion_(std::move(completion)) {}

    /// True until the completion was called or dropped.
    bool isPending() const;
    /// True once the completion was dropped uncalled.
    bool isDropped() const;

    /// Calls the completion, unless that was done or it was dropped. What it throws comes out here.
    void deliver(platform::HttpResult result);
    /// Drops the completion, with what it owns, unless it was called before. Does not wait.
    void drop() noexcept;
    /// Drops it, or waits until it has returned if it is running, but not on the thread that runs it: a
    /// completion may take the client's last owner with it.
    void end() noexcept;

  private:
    class Running;

    mutable std::mutex mutex_;
    std::condition_variable returned_;
    Completion completion_;                  // guarded by mutex_; null once called or dropped
    bool isDropped_ = false;                 // guarded by mutex_
    std::optional<std::thread::id> runner_;  // guarded by mutex_; there while the completion runs
};

}  // namespace mireth::headless
