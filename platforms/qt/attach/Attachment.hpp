// Records the main window of a program that knows nothing of it.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>
#include <functional>
#include <optional>

#include "MirethVex/PublicSide/MirethSR.hpp"
#include "platforms/qt/attach/AttachSettings.hpp"

namespace mireth::qt {

/// Lives as long as the application. Waits for the first window that can be the main window, and records it
/// until the program quits. When that window is gone, or gives way to another one, the other one is recorded
/// instead, in a session of its own; so is the window of an application that comes back from the background.
/// Main thread only.
class Attachment final : public QObject {
  public:
    explicit Attachment(AttachSettings settings);
    ~Attachment() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    /// When the present event has been handled.
    void inATurn(const std::function<void()>& work);
    void shown(QWindow& window);
    /// When the recorded window is gone.
    void lookForAnother();
    bool isRecordedThere() const;
    /// The move to the background has ended the session.
    void stateChanged(Qt::ApplicationState state);
    /// After the session that was started last.
    void recordNext(QWindow& window);
    void record();
    /// Delivers what is recorded already, for a few seconds at most.
    void finish();

    const AttachSettings settings_;
    /// Whether the library could be installed; nothing before the first window.
    std::optional<bool> isInstalled_;
    QPointer<QWindow> recorded_;
    std::optional<Async<SessionStartResult>> start_;
    /// Whether that session is being ended, for what is then `recorded_`.
    bool isChanging_ = false;
    bool isInBackground_ = false;
};

}  // namespace mireth::qt
