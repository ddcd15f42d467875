// What can be said of an application by the state that Qt says it is in.
#pragma once

#include <Qt>

namespace mireth::qt {

/// Losing the focus is no move to the background.
constexpr bool isBackground(Qt::ApplicationState state) {
    return state == Qt::ApplicationSuspended || state == Qt::ApplicationHidden;
}

}  // namespace mireth::qt
