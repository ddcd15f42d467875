// How far a walk over a view tree goes: the tree is the host's, and may be larger than any window, or
// endless.
#pragma once

#include <cstddef>

namespace mireth::platform {

inline constexpr std::size_t maxViewDepth = 1000;
inline constexpr std::size_t maxViews = 50'000;

}  // namespace mireth::platform
