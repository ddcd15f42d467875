// The timers of QtMainQueue: one for delayed work, one for ticks. Both are children of the loop.
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPointer>
#include <chrono>

#include "MirethVex/Base/Work.hpp"
#include "MirethVex/Platform/MainQueue.hpp"
#include "Platform/PhaseClock.hpp"
#include "platforms/qt/system/WorkLoop.hpp"

namespace mireth::qt {

using SteadyClock = std::chrono::steady_clock;

/// Waits for times of the steady clock. Main thread only.
class DueTimer : public QObject {
  public:
    explicit DueTimer(WorkLoop& loop) : QObject(&loop), loop_(loop) {}

  protected:
    /// `fire` is called once, at `due` or later.
    void waitUntil(SteadyClock::time_point due);
    void stopWaiting() { timer_.stop(); }
    virtual void fire() = 0;

    void timerEvent(QTimerEvent* event) override;

    WorkLoop& loop_;

  private:
    QBasicTimer timer_;
    SteadyClock::time_point due_;
};

/// Runs work once and deletes itself.
class DelayedWork final : public DueTimer {
  public:
    DelayedWork(WorkLoop& loop, SteadyClock::time_point due, Work work);

  private:
    void fire() override;

    Work work_;
};

/// Ticks in phase.
class Ticker final : public DueTimer {
  public:
    Ticker(WorkLoop& loop, platform::Seconds interval, Work tick);

    /// Ends the ticks and deletes the ticker; a tick that does so to its own is not destroyed while it runs.
    void invalidate();

  private:
    void fire() override;

    platform::PhaseClock phase_;
    Work tick_;
    bool active_ = true;
    bool ticking_ = false;
};

/// The token handed to the caller; it may outlive the loop.
class TickerToken final : public platform::Timer {
  public:
    explicit TickerToken(Ticker* ticker) : ticker_(ticker) {}
    TickerToken(const TickerToken&) = delete;
    TickerToken& operator=(const TickerToken&) = delete;
    ~TickerToken() override { cancel(); }
    void invalidate() override { cancel(); }

  private:
    void cancel();

    QPointer<Ticker> ticker_;
};

}  // namespace mireth::qt
