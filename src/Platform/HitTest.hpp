// Finds the view under a finger.
#pragma once

#include <memory>

#include "MirethVex/Platform/View.hpp"

namespace mireth::platform {

/// The deepest visible view of the tree that holds `point`, in the coordinates of `root`; null when there is
/// none. Main thread.
std::shared_ptr<View> deepestViewAt(std::shared_ptr<View> root, Point point);

}  // namespace mireth::platform
