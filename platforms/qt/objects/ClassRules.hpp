// Which of Qt's classes are shown, and as what. Everything that is not named here is masked.
#pragma once

#include <QMetaObject>

#include "platforms/qt/objects/ClassCatalog.hpp"

namespace mireth::qt {

/// `type` is a class of C++. The rule of the nearest class that is named counts for its subclasses too, as
/// far as it masks; what a subclass that is not named paints itself is never taken for harmless.
MirroredClass ruleForWidget(const QMetaObject& type);
MirroredClass ruleForItem(const QMetaObject& type);

}  // namespace mireth::qt
