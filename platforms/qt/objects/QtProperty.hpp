// Properties and signals of Qt's own classes, found past whatever an app has put over them.
#pragma once

#include <QMetaMethod>
#include <QObject>
#include <QVariant>

namespace mireth::qt {

/// What the class of Qt's called `type` itself says of `object`, never what a QML type or a class of the
/// app's says under the same name: reading that may run the app's code, as an alias does. Invalid when the
/// object is of no such class, or the class knows no such property.
QVariant qtProperty(const QObject& object, const char* type, const char* name);

/// The signal of that class of Qt's, `signature` as Qt normalises it. Invalid as above.
QMetaMethod qtSignal(const QObject& object, const char* type, const char* signature);

/// `type` or the one that it is derived from which is called `name`; null when there is none.
const QMetaObject* classNamed(const QMetaObject& type, const char* name);

}  // namespace mireth::qt
