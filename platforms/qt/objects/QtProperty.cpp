#include "platforms/qt/objects/QtProperty.hpp"

#include <QMetaObject>
#include <QMetaProperty>
#include <cstring>

namespace mireth::qt {

QVariant qtProperty(const QObject& object, const char* type, const char* name) {
    const QMetaObject* const declaring = classNamed(*object.metaObject(), type);
    return declaring != nullptr ? declaring->property(declaring->indexOfProperty(name)).read(&object)
                                : QVariant();
}

QMetaMethod qtSignal(const QObject& object, const char* type, const char* signature) {
    const QMetaObject* const declaring = classNamed(*object.metaObject(), type);
    return declaring != nullptr ? declaring->method(declaring->indexOfSignal(signature)) : QMetaMethod();
}

const QMetaObject* classNamed(const QMetaObject& type, const char* name) {
    const QMetaObject* candidate = &type;
    while (candidate != nullptr && std::strcmp(candidate->className(), name) != 0) {
        candidate = candidate->superClass();
    }
    return candidate;
}

}  // namespace mireth::qt
