#include "platforms/qt/system/LoopTimers.hpp"

#include <QTimerEvent>
#include <algorithm>
#include <cmath>
#include <utility>

namespace mireth::qt {

SteadyClock::duration clampedDuration(platform::Seconds seconds) {
    constexpr double longest = 100.0 * 365 * 24 * 3600;
    const double count = std::isnan(seconds.count()) ? 0 : std::clamp(seconds.count(), 0.0, longest);
    return std::chrono::duration_cast<SteadyClock::duration>(platform::Seconds(count));
}

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
    : DueTimer(loop),
      interval_(std::max<SteadyClock::duration>(clampedDuration(interval), std::chrono::milliseconds(1))),
      tick_(std::move(tick)),
      due_(SteadyClock::now() + interval_) {
    waitUntil(due_);
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
    const auto missed = std::max<SteadyClock::rep>((SteadyClock::now() - due_) / interval_, 0);
    due_ += (missed + 1) * interval_;
    waitUntil(due_);
}

void TickerToken::cancel() {
    if (auto* const ticker = ticker_.data()) {
        ticker_.clear();
        ticker->invalidate();
    }
}

}  // namespace mireth::qt
