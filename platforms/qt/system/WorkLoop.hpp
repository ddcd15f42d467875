// The object on the main thread that runs the main queue's work when Qt's loop comes to it.
#pragma once

#include <QEvent>
#include <QObject>
#include <functional>

#include "Base/GuardedRun.hpp"
#include "MirethVex/Base/Work.hpp"

namespace mireth::qt {

/// Carries work to the loop.
class WorkEvent final : public QEvent {
  public:
    explicit WorkEvent(Work posted);
    static QEvent::Type kind();

    Work work;
};

/// Main thread only. Its timers are its children and its posted events go with it, so that deleting it drops
/// all that has not run.
class WorkLoop final : public QObject {
  public:
    /// `whenGone` is called once, before anything is dropped.
    WorkLoop(QObject* parent, EscapedErrorHandler onEscapedError, std::function<void()> whenGone);
    ~WorkLoop() override;

    /// Runs work and reports what it throws.
    void run(Work& work) noexcept;

    /// Deletes the loop: at once, or after the work that it is running. Nothing else runs from here on.
    void retire();
    bool isRetired() const noexcept { return isRetired_; }

  protected:
    void customEvent(QEvent* event) override;

  private:
    const EscapedErrorHandler onEscapedError_;
    const std::function<void()> whenGone_;
    int running_ = 0;
    bool isRetired_ = false;
};

}  // namespace mireth::qt
