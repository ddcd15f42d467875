#include "platforms/qt/qml/QmlModule.hpp"

#include <QtQml>

#include "platforms/qt/qml/MirethAttached.hpp"
#include "platforms/qt/qml/MirethControl.hpp"

namespace mireth::qt {

void registerQmlModule() {
    [[maybe_unused]] static const bool isRegistered = [] {
        constexpr const char* module = "MirethVex";
        qmlRegisterSingletonType<MirethControl>(
            module, 1, 0, "MirethSR", [](QQmlEngine*, QJSEngine*) -> QObject* { return new MirethControl; });
        qmlRegisterUncreatableType<MirethAttached>(module, 1, 0, "Mireth",
                                                   "Mireth is attached to other objects");
        return true;
    }();
}

}  // namespace mireth::qt
