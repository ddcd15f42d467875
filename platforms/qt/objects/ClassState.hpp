// Where the objects of a class keep what tells one state of them from the next.
#pragma once

#include <QMetaObject>
#include <string_view>
#include <vector>

namespace mireth::qt {

/// One that is part of the state.
struct StateProperty {
    std::string_view name;
    /// Among the properties of the class.
    int index = 0;
};

/// Whether a control is pressed or under the pointer is no state.
struct ClassState {
    /// To read them runs none of the app's code. Each name stands for that of the nearest class which may be
    /// asked.
    std::vector<StateProperty> properties;
    /// The indexes of the signals that tell of a change which no property tells of, or only one that would
    /// cost too much to read twice a second: a long text.
    std::vector<int> changeSignals;
};

ClassState classStateOf(const QMetaObject& type);

}  // namespace mireth::qt
