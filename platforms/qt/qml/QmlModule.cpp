#include "platforms/qt/qml/QmlModule.hpp"

#include <QtQml>

#include "platforms/qt/qml/MirethAttached.hpp"
#include "platforms/qt/qml/MirethControl.hpp"

namespace mireth::qt {

void registerQmlModule() {
    [[maybe_unused]] static const bool isRegistered = [] {
        qmlRegisterTypesAndRevisions<MirethControl, MirethAttached>("MirethVex", 1);
        return true;
    }();
}

}  // namespace mireth::qt
