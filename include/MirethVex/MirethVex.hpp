// The one header that most hosts need.
#pragma once

#include "MirethVex/PublicSide/MirethSR.hpp"  // IWYU pragma: export
