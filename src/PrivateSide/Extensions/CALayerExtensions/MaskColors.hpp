// The two greys of masks.
#pragma once

#include "MirethVex/Base/Color.hpp"

namespace mireth {

inline constexpr Color imageMaskStripeColor = Color::gray(188.0 / 255.0);
inline constexpr Color imageMaskBackgroundColor = Color::gray(225.0 / 255.0);

}  // namespace mireth
