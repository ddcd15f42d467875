// Properties of Qt's own classes, read past whatever an app has put over them.
#pragma once

#include <QObject>
#include <QVariant>

namespace mireth::qt {

/// What the class of Qt's called `type` itself says of `object`, never what a QML type or a class of the
/// app's says under the same name: reading that may run the app's code, as an alias does. Invalid when the
/// object is of no such class, or the class knows no such property.
QVariant qtProperty(const QObject& object, const char* type, const char* name);

}  // namespace mireth::qt
