// Records the main window of a program that knows nothing of it.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>
#include <optional>

#include "MirethVex/PublicSide/MirethSR.hpp"
#include "platforms/qt/attach/AttachSettings.hpp"

namespace mireth::qt {

/// Lives as long as the application. Waits for the first window that is shown and belongs to no other, and is
/// neither a pop-up, a tool nor a splash screen, and records it until the program quits. When that window is
/// gone, or was a dialog, the next such window is recorded instead, in a session of its own. Main thread
/// only.
class Attachment final : public QObject {
  public:
    explicit Attachment(AttachSettings settings);
    ~Attachment() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void shown(QWindow& window);
    bool givesWayTo(const QWindow& window) const;
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
};

}  // namespace mireth::qt
