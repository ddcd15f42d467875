// What tells one state of a masked widget or item from the next: its text, value, selection and the like.
#pragma once

#include <QMetaObject>
#include <QObject>
#include <vector>

#include "MirethVex/Platform/View.hpp"

namespace mireth::qt {

/// The indexes of the properties of a class that are part of the state. Whether a control is pressed or under
/// the pointer is not.
std::vector<int> statePropertiesOf(const QMetaObject& type);

/// Leaves the state in the view's text, which the library compares before and after a tap and shows to
/// nobody; of texts no more than a hash. `properties` are those of the object's class. Views without text are
/// left as they are.
void describeState(const QObject& object, const std::vector<int>& properties, platform::View& view);

}  // namespace mireth::qt
