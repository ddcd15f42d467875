#include "platforms/qt/attach/MirethGenericPlugin.hpp"

#include <QString>
#include <utility>

#include "Base/GuardedRun.hpp"
#include "platforms/qt/attach/Attachment.hpp"
#include "platforms/qt/qml/QmlModule.hpp"

namespace mireth::qt {

QObject* MirethGenericPlugin::create(const QString& name, const QString& /*specification*/) {
    QObject* attachment = nullptr;
    if (name.compare(QLatin1String("mireth"), Qt::CaseInsensitive) == 0) {
        runGuarded("the attaching to a program", [&attachment] {
            if (auto settings = takeAttachSettings()) {
                // Before the program loads QML that may import it.
                registerQmlModule();
                attachment = new Attachment(std::move(*settings));
            }
        });
    }
    return attachment;
}

}  // namespace mireth::qt
