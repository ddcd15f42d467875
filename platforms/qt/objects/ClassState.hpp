// Where the objects of a class keep what tells one state of them from the next.
#pragma once

#include <QMetaObject>
#include <vector>

namespace mireth::qt {

/// Whether a control is pressed or under the pointer is no state.
struct ClassState {
    /// The indexes of the properties that are part of it. To read them runs none of the app's code.
    std::vector<int> properties;
    /// The indexes of the signals that tell of a change which no property tells of.
    std::vector<int> changeSignals;
    /// A long document is told by its revision: to go through its text twice a second would cost too much.
    bool isTextEditOfItems = false;
};

ClassState classStateOf(const QMetaObject& type);

}  // namespace mireth::qt
