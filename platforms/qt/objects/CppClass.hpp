// What C++ knows of the class of an object, and Qt does not when the class has no Q_OBJECT.
#pragma once

#include <QObject>
#include <string>
#include <typeinfo>
#include <vector>

namespace mireth::qt {

/// Null for an object of code that was built without run-time type information.
const std::type_info* cppClassOf(const QObject& object);

/// With their namespaces, those of all that the class derives from first.
std::vector<std::string> namesOf(const std::type_info& type);

}  // namespace mireth::qt
