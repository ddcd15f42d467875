// The plugin of the module `MirethVex`: QML loads it into programs without C++ of their own.
#pragma once

#include <QQmlExtensionPlugin>

namespace mireth::qt {

class MirethQmlPlugin final : public QQmlExtensionPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

  public:
    void registerTypes(const char* uri) override;
};

}  // namespace mireth::qt
