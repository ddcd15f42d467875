// Whether something belongs to something that is marked as masked.
#pragma once

#include <QObject>

namespace mireth::qt {

/// `object`: a window, a pop-up, or an item. True when it is marked itself, or lies in, was made in or was
/// opened by what is: the list of a combo box or of a completer, a button's menu, a tool tip, a dialog, and
/// what these have opened in turn. Main thread.
bool belongsToMarked(const QObject& object);

}  // namespace mireth::qt
