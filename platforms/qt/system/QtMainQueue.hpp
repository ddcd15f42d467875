// The main queue of a Qt application: its own event loop, nested ones included.
#pragma once

#include <functional>
#include <memory>

#include "Base/GuardedRun.hpp"
#include "MirethVex/Platform/MainQueue.hpp"

namespace mireth::qt {

/// The main thread is the application's. Work and ticks run in whichever loop is running, so also while a
/// modal dialog, a menu or a drag has one of its own. Nothing runs once the application object is gone; what
/// is queued then is dropped.
///
/// May be destroyed by work that it runs, and on any thread.
class QtMainQueue final : public platform::MainQueue {
  public:
    /// On the main thread, after the application object was made. `onEscapedError` is told on the main thread
    /// what work has thrown; standard error when left out.
    explicit QtMainQueue(EscapedErrorHandler onEscapedError = {});
    QtMainQueue(const QtMainQueue&) = delete;
    QtMainQueue& operator=(const QtMainQueue&) = delete;
    ~QtMainQueue() override;

    void post(Work work) override;
    void postAfter(platform::Seconds delay, Work work) override;
    /// An interval below one millisecond, or one that is no number, counts as one millisecond.
    std::unique_ptr<platform::Timer> scheduleRepeating(platform::Seconds interval, Work tick) override;
    bool isCurrent() const noexcept override;

    /// Runs posted work, without any loop of Qt's, until `done` or for `limit`; the last value of `done`.
    /// Main thread only.
    bool runOwnWork(const std::function<bool()>& done, platform::Seconds limit);

  private:
    struct Gate;
    const std::shared_ptr<Gate> gate_;
};

}  // namespace mireth::qt
