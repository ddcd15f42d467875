// What tells one state of a masked widget or item from the next: its text, value, selection and the like.
#pragma once

#include <QObject>

#include "MirethVex/Platform/View.hpp"

namespace mireth::qt {

/// Leaves the state in the view's text, which the library compares before and after a tap and shows to
/// nobody. Whether a control is pressed or under the pointer is not part of it. Views without text are left
/// as they are.
void describeState(const QObject& object, platform::View& view);

}  // namespace mireth::qt
