// Tells the wall-clock time; injected wherever something is stamped.
#pragma once

#include <functional>

#include "MirethVex/Base/Date.hpp"

namespace mireth {

using CurrentTimeProvider = std::function<Date()>;

}  // namespace mireth
