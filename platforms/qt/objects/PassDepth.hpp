// How deep a pass over the app's objects goes, so that each one ends.
#pragma once

#include <cstddef>

namespace mireth::qt {

/// Deeper than any window is nested, and far from the end of the stack.
inline constexpr std::size_t maximumPassDepth = 400;

}  // namespace mireth::qt
