// What `MirethSR::resumeRecording` answers.
#pragma once

#include <string_view>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

enum class SessionResumeResult { success, notInitialized, notStarted, notPaused };

/// The case's name.
MIRETH_EXPORT std::string_view caseName(SessionResumeResult result) noexcept;

}  // namespace mireth
