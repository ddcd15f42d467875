// Records the main window of a program that knows nothing of it.
#pragma once

#include <QObject>
#include <QWindow>
#include <memory>

#include "platforms/qt/attach/AttachSettings.hpp"

namespace mireth::qt {

/// Lives as long as the application. Waits for the first window that is shown and is neither a pop-up, a tool
/// nor a splash screen, and records it until the program quits. Main thread only.
class Attachment final : public QObject {
  public:
    explicit Attachment(AttachSettings settings);
    ~Attachment() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void record(QWindow& window);
    /// Delivers what is recorded already, for a few seconds at most.
    void finish();

    const AttachSettings settings_;
    bool isRecording_ = false;
};

}  // namespace mireth::qt
