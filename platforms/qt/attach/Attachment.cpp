#include "platforms/qt/attach/Attachment.hpp"

#include <QCoreApplication>
#include <QEvent>
#include <utility>

#include "Base/GuardedRun.hpp"
#include "MirethVex/MirethVex.hpp"
#include "MirethVex/Qt/QtPlatform.hpp"

namespace mireth::qt {

namespace {

/// Who quits a program does not want to wait longer for it.
constexpr platform::Seconds patience(3);

bool isMainWindow(const QWindow& window) {
    const auto type = window.type();
    const bool isOfItsOwn = window.parent() == nullptr && window.transientParent() == nullptr;
    // A window of items that asks for no frame, and for nothing else, is of the kind `Qt::Widget`.
    const bool isOfItsKind =
        type == Qt::Window || type == Qt::Widget || type == Qt::Dialog || type == Qt::Sheet;
    return isOfItsOwn && isOfItsKind;
}

}  // namespace

Attachment::Attachment(AttachSettings settings) : settings_(std::move(settings)) {
    QCoreApplication::instance()->installEventFilter(this);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] { finish(); });
}

Attachment::~Attachment() = default;

bool Attachment::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Expose && watched->isWindowType()) {
        auto& window = static_cast<QWindow&>(*watched);
        if (window.isExposed() && isMainWindow(window)) {
            runGuarded("the recording of a program", [&] { shown(window); });
        }
    }
    return false;
}

void Attachment::shown(QWindow& window) {
    if (!isInstalled_) {
        isInstalled_ = install(settings_.options);
        if (*isInstalled_) {
            recorded_ = &window;
            record();
        }
    } else if (*isInstalled_ && givesWayTo(window)) {
        recordNext(window);
    }
}

bool Attachment::givesWayTo(const QWindow& window) const {
    if (recorded_ == nullptr || !recorded_->isVisible()) {
        return true;
    }
    const auto isDialog = [](const QWindow& of) { return of.type() == Qt::Dialog || of.type() == Qt::Sheet; };
    return isDialog(*recorded_) && !isDialog(window);
}

void Attachment::recordNext(QWindow& window) {
    recorded_ = &window;
    if (!start_) {
        record();
        return;
    }
    start_->then([self = QPointer(this)](const SessionStartResult&) {
        MirethSR::shared().stopRecording().then([self](const SessionCloseResult&) {
            if (self != nullptr) {
                self->record();
            }
        });
    });
}

void Attachment::record() {
    if (recorded_ != nullptr && initializeProject(settings_.brand, settings_.project, recorded_.data()) ==
                                    InitializationResult::success) {
        start_ = MirethSR::shared().startRecording();
        start_->then([](const SessionStartResult&) {});
    }
}

void Attachment::finish() {
    if (isInstalled_) {
        (void)finishRecording(patience);
    }
}

}  // namespace mireth::qt
