// A completion that moves out of the call before it is called or dropped.
#include "MirethVex/Headless/HttpCall.hpp"

#include <utility>

namespace mireth::headless {

/// Marks the call as running for as long as it lives, whatever the completion throws.
class HttpCall::Running {
  public:
    /// Takes the completion; the call's mutex is held.
    explicit Running(HttpCall& call) : call_(call), completion_(std::exchange(call.completion_, nullptr)) {
        call_.runner_ = std::this_thread::get_id();
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() {
        // Also what the completion owns goes while it still counts as running.
        completion_ = nullptr;
        const std::lock_guard lock(call_.mutex_);
        call_.runner_.reset();
        call_.returned_.notify_all();
    }

    void complete(platform::HttpResult result) { completion_(std::move(result)); }

  private:
    HttpCall& call_;
    Completion completion_;
};

bool HttpCall::isPending() const {
    const std::lock_guard lock(mutex_);
    return completion_ != nullptr;
}

bool HttpCall::isDropped() const {
    const std::lock_guard lock(mutex_);
    return isDropped_;
}

void HttpCall::deliver(platform::HttpResult result) {
    std::optional<Running> running;
    {
        const std::lock_guard lock(mutex_);
        if (completion_ == nullptr) {
            return;
        }
        running.emplace(*this);
    }
    running->complete(std::move(result));
}

void HttpCall::drop() noexcept {
    Completion dropped;
    const std::lock_guard lock(mutex_);
    if (completion_ != nullptr) {
        dropped = std::exchange(completion_, nullptr);
        isDropped_ = true;
    }
}

void HttpCall::end() noexcept {
    drop();
    std::unique_lock lock(mutex_);
    if (runner_ != std::this_thread::get_id()) {
        returned_.wait(lock, [this] { return !runner_; });
    }
}

}  // namespace mireth::headless
