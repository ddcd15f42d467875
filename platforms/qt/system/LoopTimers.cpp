#include "platforms/qt/system/LoopTimers.hpp"

#include <QTimerEvent>
#include <algorithm>
#include <utility>

namespace mireth::qt {

void DueTimer::waitUntil(SteadyClock::time_point due) {
    using std::chrono::milliseconds;
    due_ = due;
    // Qt counts whole milliseconds in an int; a longer wait is made of several.
    constexpr milliseconds longest(24LL * 3600 * 1000);
    const auto left = std::chrono::ceil<milliseconds>(due - SteadyClock::now());
    timer_.start(static_cast<int>(std::clamp(left, milliseconds(0), longest).count()), Qt::PreciseTimer,
                 this);
}

void DueTimer::timerEvent(QTimerEvent* /*event*/) {
    if (SteadyClock::now() < due_) {
        waitUntil(due_);
        return;
    }
    timer_.stop();
    fire();
}

DelayedWork::DelayedWork(WorkLoop& loop, SteadyClock::time_point due, Work work)
    : DueTimer(loop), work_(std::move(work)) {
    waitUntil(due);
}

void DelayedWork::fire() {
    auto work = std::exchange(work_, nullptr);
    deleteLater();
    loop_.run(work);
}

Ticker::Ticker(WorkLoop& loop, platform::Seconds interval, Work tick)
    : DueTimer(loop), phase_(interval), tick_(std::move(tick)) {
    phase_.start(SteadyClock::now());
    waitUntil(phase_.due());
}

void Ticker::invalidate() {
    active_ = false;
    stopWaiting();
    if (ticking_) {
        deleteLater();
    } else {
        delete this;
    }
}

void Ticker::fire() {
    ticking_ = true;
    loop_.run(tick_);
    ticking_ = false;
    if (!active_ || loop_.isRetired()) {
        return;
    }
    phase_.next(SteadyClock::now());
    waitUntil(phase_.due());
}

void TickerToken::cancel() {
    if (auto* const ticker = ticker_.data()) {
        ticker_.clear();
        ticker->invalidate();
    }
}

}  // namespace mireth::qt
