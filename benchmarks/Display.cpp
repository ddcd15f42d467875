#include "benchmarks/Display.hpp"

#include <time.h>

#include <algorithm>

namespace mireth::benchmarks {

namespace {

constexpr qint64 nanoseconds = 1'000'000'000;

double threadSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

}  // namespace

Display::Display() {
    clock_.start();
    install();
    waitForTick(1);
}

Display::~Display() {
    uninstall();
}

Shown Display::watch(QQuickWindow& window, int seconds) {
    const qint64 first = interval() + 1;
    last_ = first + static_cast<qint64>(seconds) * perSecond;
    std::vector<bool> shown(static_cast<std::size_t>(last_ - first), false);
    const auto swapped = connect(&window, &QQuickWindow::frameSwapped, this, [&] {
        const qint64 now = interval();
        if (now >= first && now < last_) {
            shown[static_cast<std::size_t>(now - first)] = true;
        }
    });
    computed_ = threadSeconds();
    busiest_ = 0;
    loop_.exec();
    disconnect(swapped);
    Shown result;
    result.intervals = static_cast<int>(shown.size());
    result.lost = static_cast<int>(std::ranges::count(shown, false));
    result.busiest = busiest_;
    return result;
}

qint64 Display::elapsed() const {
    return ticked_ * 1000 / perSecond;
}

void Display::timerEvent(QTimerEvent* /*event*/) {
    const qint64 now = interval();
    if (now <= ticked_) {
        waitForTick(ticked_ + 1);
        return;
    }
    ticked_ = now;
    const double computed = threadSeconds();
    busiest_ = std::max(busiest_, computed - computed_);
    computed_ = computed;
    if (ticked_ >= last_) {
        loop_.quit();
    }
    waitForTick(ticked_ + 1);
    if (isRunning()) {
        advance();
    }
}

qint64 Display::interval() const {
    return clock_.nsecsElapsed() * perSecond / nanoseconds;
}

void Display::waitForTick(qint64 next) {
    // Qt's timers count whole milliseconds; one more rather than a tick too early.
    const qint64 wait = next * nanoseconds / perSecond - clock_.nsecsElapsed();
    timer_.start(static_cast<int>(std::max<qint64>(wait, 0) / 1'000'000 + 1), Qt::PreciseTimer, this);
}

}  // namespace mireth::benchmarks
