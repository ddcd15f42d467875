#include "platforms/qt/qml/MirethControl.hpp"

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <string_view>
#include <utility>

#include "MirethVex/MirethVex.hpp"
#include "MirethVex/Qt/QtPlatform.hpp"
#include "platforms/qt/system/Installation.hpp"

namespace mireth::qt {

namespace {

QString textOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString textOf(const std::optional<std::string>& text) {
    return text ? textOf(std::string_view(*text)) : QString();
}

/// Null for what is neither a window nor in one.
QWindow* windowOf(QObject* object) {
    if (auto* const item = qobject_cast<QQuickItem*>(object)) {
        return item->window();
    }
    return qobject_cast<QWindow*>(object);
}

VexConfiguration configurationFor(const QStringList& typesToMask) {
    VexConfiguration configuration;
    for (const QString& type : typesToMask) {
        configuration.additionalViewTypesToMask.push_back(&viewClassNamed(type.toStdString()));
    }
    return configuration;
}

}  // namespace

void MirethControl::start(const QString& brandId, const QString& projectId, QObject* window) {
    const auto initialized =
        initializeProject(brandId.toStdString(), projectId.toStdString(), windowOf(window));
    MirethSR* const library = Installation::shared().library();
    if (initialized != InitializationResult::success || library == nullptr) {
        Q_EMIT started(textOf(caseName(initialized)), {}, {});
        return;
    }
    library->startRecording(configurationFor(typesToMask_))
        .then([self = QPointer(this)](const SessionStartResult& start) {
            if (self != nullptr) {
                const QString sessionId =
                    start.info ? textOf(std::string_view(start.info->sessionId)) : QString();
                Q_EMIT self->started(textOf(caseName(start.kind)), sessionId, textOf(start.reason));
            }
        });
}

void MirethControl::stop() {
    MirethSR* const library = Installation::shared().library();
    if (library == nullptr) {
        Q_EMIT stopped(textOf(caseName(SessionCloseResult::Kind::notInitialized)), {});
        return;
    }
    library->stopRecording().then([self = QPointer(this)](const SessionCloseResult& stop) {
        if (self != nullptr) {
            Q_EMIT self->stopped(textOf(caseName(stop.kind)), textOf(stop.reason));
        }
    });
}

QString MirethControl::pause() {
    MirethSR* const library = Installation::shared().library();
    return textOf(
        caseName(library != nullptr ? library->pauseRecording() : SessionPauseResult::notInitialized));
}

QString MirethControl::resume() {
    MirethSR* const library = Installation::shared().library();
    return textOf(
        caseName(library != nullptr ? library->resumeRecording() : SessionResumeResult::notInitialized));
}

void MirethControl::logError(const QString& message) {
    if (MirethSR* const library = Installation::shared().library()) {
        library->logError(message.toStdString());
    }
}

bool MirethControl::hasActiveSession() const {
    const MirethSR* const library = Installation::shared().library();
    return library != nullptr && library->hasActiveSession();
}

}  // namespace mireth::qt
