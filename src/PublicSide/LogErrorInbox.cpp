#include "PublicSide/LogErrorInbox.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace mireth {

/// What the main queue is given. If it is dropped there, what waits is dropped too: no other turn would come
/// for it.
class LogErrorInbox::Turn {
  public:
    explicit Turn(std::weak_ptr<LogErrorInbox> inbox) : inbox_(std::move(inbox)) {}
    Turn(Turn&&) noexcept = default;
    Turn& operator=(Turn&&) = delete;
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() {
        if (const auto inbox = inbox_.lock()) {
            inbox->clear();
        }
    }

    void operator()() {
        if (const auto inbox = std::exchange(inbox_, {}).lock()) {
            inbox->drain();
        }
    }

  private:
    std::weak_ptr<LogErrorInbox> inbox_;
};

LogErrorInbox::LogErrorInbox(std::shared_ptr<platform::MainQueue> mainQueue, Handler handler)
    : mainQueue_(std::move(mainQueue)), handler_(std::move(handler)) {}

void LogErrorInbox::add(LogErrorData error) {
    if (mainQueue_->isCurrent()) {
        // The handler may bring the end of whoever owns this.
        const auto self = shared_from_this();
        drain();
        handler_(error);
        return;
    }
    bool isFirst = false;
    {
        const std::lock_guard lock(mutex_);
        isFirst = waiting_.empty();
        waiting_.push_back(std::move(error));
    }
    if (isFirst) {
        mainQueue_->post(Turn(weak_from_this()));
    }
}

void LogErrorInbox::drain() {
    {
        const std::lock_guard lock(mutex_);
        if (beingHandled_.empty()) {
            beingHandled_.swap(waiting_);
        } else {
            // The handler has logged an error itself: what came before it goes first.
            std::ranges::move(waiting_, std::back_inserter(beingHandled_));
            waiting_.clear();
        }
    }
    while (!beingHandled_.empty()) {
        const LogErrorData error = std::move(beingHandled_.front());
        beingHandled_.pop_front();
        handler_(error);
    }
}

void LogErrorInbox::clear() noexcept {
    std::deque<LogErrorData> dropped;
    const std::lock_guard lock(mutex_);
    dropped.swap(waiting_);
}

}  // namespace mireth
