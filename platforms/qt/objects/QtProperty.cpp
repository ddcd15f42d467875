#include "platforms/qt/objects/QtProperty.hpp"

#include <QMetaObject>
#include <QMetaProperty>
#include <cstring>

namespace mireth::qt {

QVariant qtProperty(const QObject& object, const char* type, const char* name) {
    const QMetaObject* declaring = object.metaObject();
    while (declaring != nullptr && std::strcmp(declaring->className(), type) != 0) {
        declaring = declaring->superClass();
    }
    return declaring != nullptr ? declaring->property(declaring->indexOfProperty(name)).read(&object)
                                : QVariant();
}

}  // namespace mireth::qt
