// The generic plugin `mireth`: Qt loads it into any program whose environment asks for it.
#pragma once

#include <QGenericPlugin>

namespace mireth::qt {

class MirethGenericPlugin final : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "mireth.json")

  public:
    /// The application owns the object and deletes it before it is gone itself.
    QObject* create(const QString& name, const QString& specification) override;
};

}  // namespace mireth::qt
