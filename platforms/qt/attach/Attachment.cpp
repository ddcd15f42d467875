#include "platforms/qt/attach/Attachment.hpp"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QTimer>
#include <utility>

#include "Base/GuardedRun.hpp"
#include "MirethVex/MirethVex.hpp"
#include "MirethVex/Qt/QtPlatform.hpp"
#include "platforms/qt/attach/MainWindows.hpp"
#include "platforms/qt/system/ApplicationStates.hpp"

namespace mireth::qt {

namespace {

/// Who quits a program does not want to wait longer for it.
constexpr platform::Seconds patience(3);

}  // namespace

Attachment::Attachment(AttachSettings settings) : settings_(std::move(settings)) {
    QCoreApplication::instance()->installEventFilter(this);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] { finish(); });
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        runGuarded("the recording of a program", [this, state] { stateChanged(state); });
    });
}

Attachment::~Attachment() = default;

bool Attachment::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Expose && watched->isWindowType()) {
        auto& window = static_cast<QWindow&>(*watched);
        if (window.isExposed() && isMainWindow(window)) {
            // What is installed in the middle of an event has Qt ask one of the program's filters twice.
            inATurn([this, shownWindow = QPointer(&window)] {
                if (shownWindow != nullptr) {
                    shown(*shownWindow);
                }
            });
        }
    } else if (event->type() == QEvent::Hide && watched == recorded_) {
        // What is made anew is hidden and shown again at once.
        inATurn([this] { lookForAnother(); });
    }
    return false;
}

void Attachment::inATurn(const std::function<void()>& work) {
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): what Qt makes of the function is its own.
    QTimer::singleShot(0, this, [work] { runGuarded("the recording of a program", work); });
}

void Attachment::shown(QWindow& window) {
    if (!isInstalled_) {
        isInstalled_ = install(settings_.options);
        if (*isInstalled_) {
            recorded_ = &window;
            record();
        }
    } else if (*isInstalled_ && (!isRecordedThere() || givesWay(*recorded_, window))) {
        recordNext(window);
    }
}

void Attachment::lookForAnother() {
    if (isRecordedThere()) {
        return;
    }
    if (QWindow* const window = largestMainWindow()) {
        recordNext(*window);
    }
}

bool Attachment::isRecordedThere() const {
    return recorded_ != nullptr && recorded_->isVisible();
}

void Attachment::stateChanged(Qt::ApplicationState state) {
    const bool wasInBackground = isInBackground_;
    isInBackground_ = isBackground(state);
    if (wasInBackground && !isInBackground_ && recorded_ != nullptr) {
        recordNext(*recorded_);
    }
}

void Attachment::recordNext(QWindow& window) {
    recorded_ = &window;
    if (isChanging_) {
        return;
    }
    if (!start_) {
        record();
        return;
    }
    isChanging_ = true;
    start_->then([self = QPointer(this)](const SessionStartResult&) {
        MirethSR::shared().stopRecording().then([self](const SessionCloseResult&) {
            if (self != nullptr) {
                self->isChanging_ = false;
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
    // What is waiting for the last session to end is not begun any more.
    recorded_ = nullptr;
    if (isInstalled_) {
        (void)finishRecording(patience);
    }
}

}  // namespace mireth::qt
