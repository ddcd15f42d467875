#include "platforms/qt/qml/MirethQmlPlugin.hpp"

#include "platforms/qt/qml/QmlModule.hpp"

namespace mireth::qt {

void MirethQmlPlugin::registerTypes(const char* /*uri*/) {
    registerQmlModule();
}

}  // namespace mireth::qt
