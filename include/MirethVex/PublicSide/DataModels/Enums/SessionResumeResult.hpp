// What `MirethSR::resumeRecording` answers.
#pragma once

#include <string_view>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

enum class SessionResumeResult {
    /// The screen and what happens on it are recorded again.
    success,
    /// `initializeProject` has not succeeded.
    notInitialized,
    /// No session is running, or one is still starting. Also the answer when something of the host or the
    /// platform threw meanwhile; a log line tells.
    notStarted,
    /// A session is running and was not paused; it goes on.
    notPaused
};

/// The case's name.
MIRETH_EXPORT std::string_view caseName(SessionResumeResult result) noexcept;

}  // namespace mireth
