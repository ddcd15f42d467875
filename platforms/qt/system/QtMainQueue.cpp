#include "platforms/qt/system/QtMainQueue.hpp"

#include <QCoreApplication>
#include <mutex>
#include <thread>
#include <utility>

#include "platforms/qt/system/LoopTimers.hpp"
#include "platforms/qt/system/WorkLoop.hpp"

namespace mireth::qt {

/// What other threads see of the loop. The application owns the loop, and with it goes all that is queued;
/// `loop` is null from then on.
struct QtMainQueue::Gate {
    const std::thread::id mainThread = std::this_thread::get_id();
    std::mutex mutex;
    WorkLoop* loop = nullptr;  // guarded by mutex; set to null on the main thread only
};

QtMainQueue::QtMainQueue(EscapedErrorHandler onEscapedError) : gate_(std::make_shared<Gate>()) {
    gate_->loop = new WorkLoop(QCoreApplication::instance(), std::move(onEscapedError), [gate = gate_] {
        const std::lock_guard lock(gate->mutex);
        gate->loop = nullptr;
    });
}

QtMainQueue::~QtMainQueue() {
    if (isCurrent()) {
        if (auto* const loop = gate_->loop) {
            loop->retire();
        }
        return;
    }
    const std::lock_guard lock(gate_->mutex);
    if (gate_->loop != nullptr) {
        gate_->loop->deleteLater();
    }
}

void QtMainQueue::post(Work work) {
    const std::lock_guard lock(gate_->mutex);
    if (gate_->loop != nullptr) {
        QCoreApplication::postEvent(gate_->loop, new WorkEvent(std::move(work)));
    }
}

void QtMainQueue::postAfter(platform::Seconds delay, Work work) {
    if (!(delay.count() > 0)) {
        post(std::move(work));
        return;
    }
    const auto due = SteadyClock::now() + platform::clampedDuration(delay);
    post([gate = gate_, due, work = std::move(work)]() mutable {
        if (auto* const loop = gate->loop) {
            new DelayedWork(*loop, due, std::move(work));
        }
    });
}

std::unique_ptr<platform::Timer> QtMainQueue::scheduleRepeating(platform::Seconds interval, Work tick) {
    auto* const loop = gate_->loop;
    return std::make_unique<TickerToken>(loop == nullptr ? nullptr
                                                         : new Ticker(*loop, interval, std::move(tick)));
}

bool QtMainQueue::isCurrent() const noexcept {
    return gate_->mainThread == std::this_thread::get_id();
}

bool QtMainQueue::runOwnWork(const std::function<bool()>& done, platform::Seconds limit) {
    constexpr std::chrono::milliseconds betweenLooks(1);
    const auto end = SteadyClock::now() + platform::clampedDuration(limit);
    while (!done() && SteadyClock::now() < end) {
        if (auto* const loop = gate_->loop) {
            QCoreApplication::sendPostedEvents(loop, WorkEvent::kind());
        }
        std::this_thread::sleep_for(betweenLooks);
    }
    return done();
}

}  // namespace mireth::qt
