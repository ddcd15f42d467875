// Where the objects of a class keep what tells one state of them from the next.
#pragma once

#include <QMetaObject>
#include <vector>

namespace mireth::qt {

/// Whether a control is pressed or under the pointer is no state.
struct ClassState {
    /// The indexes of the properties that are part of it. To read them runs none of the app's code.
    std::vector<int> properties;
    /// The indexes of the signals that tell of a change which no property tells of, or only one that would
    /// cost too much to read twice a second: a long text.
    std::vector<int> changeSignals;
};

ClassState classStateOf(const QMetaObject& type);

}  // namespace mireth::qt
