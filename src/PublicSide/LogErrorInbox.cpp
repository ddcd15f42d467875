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
            inbox->takeTurn();
        }
    }

  private:
    std::weak_ptr<LogErrorInbox> inbox_;
};

LogErrorInbox::LogErrorInbox(std::shared_ptr<platform::MainQueue> mainQueue, Handler handler)
    : mainQueue_(std::move(mainQueue)), handler_(std::move(handler)) {}

void LogErrorInbox::add(LogErrorData error) {
    if (mainQueue_->isCurrent()) {
        const auto self = shared_from_this();
        drain();
        handler_(error);
        return;
    }
    bool needsTurn = false;
    {
        const std::lock_guard lock(mutex_);
        waiting_.push_back({std::move(error), LogOutletScope::current()});
        needsTurn = !std::exchange(isTurnDue_, true);
    }
    if (needsTurn) {
        mainQueue_->post(Turn(weak_from_this()));
    }
}

void LogErrorInbox::takeTurn() {
    {
        const std::lock_guard lock(mutex_);
        if (waiting_.empty() && beingHandled_.empty()) {
            isTurnDue_ = false;
            return;
        }
    }
    // Before anything is handled, so that it comes whatever the handler throws.
    mainQueue_->postAfter(interval, Turn(weak_from_this()));
    drain();
}

void LogErrorInbox::drain() {
    // The handler may bring the end of whoever owns this.
    const auto self = shared_from_this();
    {
        const std::lock_guard lock(mutex_);
        if (beingHandled_.empty()) {
            beingHandled_.swap(waiting_);
        } else {
            // This is called by the handler, or after one that threw: what came before goes first.
            std::ranges::move(waiting_, std::back_inserter(beingHandled_));
            waiting_.clear();
        }
    }
    while (!beingHandled_.empty()) {
        const Entry entry = std::move(beingHandled_.front());
        beingHandled_.pop_front();
        handle(entry);
    }
}

void LogErrorInbox::handle(const Entry& entry) const {
    const LogOutletScope scope(entry.outlet);
    handler_(entry.error);
}

void LogErrorInbox::clear() noexcept {
    std::deque<Entry> dropped;
    const std::lock_guard lock(mutex_);
    isTurnDue_ = false;
    dropped.swap(waiting_);
}

}  // namespace mireth
