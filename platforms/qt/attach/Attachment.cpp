#include "platforms/qt/attach/Attachment.hpp"

#include <QCoreApplication>
#include <QEvent>
#include <QWindow>
#include <utility>

#include "MirethVex/MirethVex.hpp"
#include "MirethVex/Qt/QtPlatform.hpp"
#include "Platform/Guarded.hpp"

namespace mireth::qt {

namespace {

/// Who quits a program does not want to wait longer for it.
constexpr platform::Seconds patience(3);

bool isMainWindow(const QWindow& window) {
    return window.type() == Qt::Window && window.parent() == nullptr && window.transientParent() == nullptr;
}

}  // namespace

Attachment::Attachment(AttachSettings settings) : settings_(std::move(settings)) {
    QCoreApplication::instance()->installEventFilter(this);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] { finish(); });
}

Attachment::~Attachment() = default;

bool Attachment::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Expose && !isRecording_ && watched->isWindowType()) {
        auto& window = static_cast<QWindow&>(*watched);
        if (window.isExposed() && isMainWindow(window)) {
            isRecording_ = true;
            platform::guarded("the recording of a program", [&] { record(window); });
        }
    }
    return false;
}

void Attachment::record(QWindow& window) {
    if (!install(settings_.options)) {
        return;
    }
    if (initializeProject(settings_.brand, settings_.project, &window) == InitializationResult::success) {
        MirethSR::shared().startRecording().then([](const SessionStartResult&) {});
    }
}

void Attachment::finish() {
    if (isRecording_) {
        (void)finishRecording(patience);
    }
}

}  // namespace mireth::qt
