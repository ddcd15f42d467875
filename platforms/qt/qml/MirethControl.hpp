// The library's calls for QML: the singleton `MirethSR` of the module `MirethVex`.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQmlIntegration>

namespace mireth::qt {

/// Results go by the names they have in C++, such as "success" or "notInitialized". Main thread only.
class MirethControl final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(MirethSR)
    QML_SINGLETON
    /// Types and classes to be masked in the next session, with their subclasses: `["CardNumber"]`.
    Q_PROPERTY(QStringList typesToMask MEMBER typesToMask_ NOTIFY typesToMaskChanged)

  public:
    using QObject::QObject;

    /// Initialises the project and starts a session; `started` tells the result. `window`: a Window, or an
    /// item in it, also of a QQuickWidget's; else the focused window, or the first that is visible.
    Q_INVOKABLE void start(const QString& brandId, const QString& projectId, QObject* window = nullptr);
    /// `stopped` tells the result.
    Q_INVOKABLE void stop();
    Q_INVOKABLE QString pause();
    Q_INVOKABLE QString resume();
    Q_INVOKABLE void logError(const QString& message);
    /// True while a session is starting, running, paused or being stopped. No property: sessions also end by
    /// themselves, of which nothing tells.
    Q_INVOKABLE bool hasActiveSession() const;

  Q_SIGNALS:
    void started(const QString& result, const QString& sessionId, const QString& reason);
    void stopped(const QString& result, const QString& reason);
    void typesToMaskChanged();

  private:
    QStringList typesToMask_;
};

}  // namespace mireth::qt
