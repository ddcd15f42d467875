// What `MirethSR::pauseRecording` answers.
#pragma once

#include <string_view>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

enum class SessionPauseResult { success, notInitialized, notStarted, alreadyPaused };

/// The case's name.
MIRETH_EXPORT std::string_view caseName(SessionPauseResult result) noexcept;

}  // namespace mireth
