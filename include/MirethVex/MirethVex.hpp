// The one header that most hosts need.
#pragma once

#include "MirethVex/PublicSide/MirethSR.hpp"              // IWYU pragma: export
#include "MirethVex/PublicSide/MirethViewController.hpp"  // IWYU pragma: export
#include "MirethVex/Version.hpp"                          // IWYU pragma: export
