// A display that shows sixty pictures a second, for animations that run by its clock.
#pragma once

#include <QAnimationDriver>
#include <QBasicTimer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QQuickWindow>
#include <vector>

namespace mireth::benchmarks {

/// What became of the display's intervals.
struct Shown {
    int intervals = 0;
    /// Those in which the window had no new picture.
    int lost = 0;
    /// The most that the main thread has computed between two ticks, in seconds.
    double busiest = 0;
};

/// Ticks on a grid of sixtieths of a second; a tick that comes late does not move the next one. Main thread
/// only.
class Display final : public QAnimationDriver {
  public:
    static constexpr int perSecond = 60;

    Display();
    ~Display() override;

    /// Runs the event loop for that long. The window has something new to show at each tick.
    Shown watch(QQuickWindow& window, int seconds);

    /// In milliseconds of the display's own time.
    qint64 elapsed() const override;

  protected:
    void timerEvent(QTimerEvent* event) override;

  private:
    qint64 interval() const;
    void waitForTick(qint64 next);

    QElapsedTimer clock_;
    QBasicTimer timer_;
    QEventLoop loop_;
    qint64 ticked_ = 0;
    qint64 last_ = 0;
    double computed_ = 0;
    double busiest_ = 0;
};

}  // namespace mireth::benchmarks
