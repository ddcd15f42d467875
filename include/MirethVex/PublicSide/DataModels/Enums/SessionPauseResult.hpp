// What `MirethSR::pauseRecording` answers.
#pragma once

#include <string_view>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

enum class SessionPauseResult {
    /// Blank frames from now on.
    success,
    /// `initializeProject` has not succeeded.
    notInitialized,
    /// No session is running, or one is still starting. Also the answer when something of the host or the
    /// platform threw meanwhile; a log line tells.
    notStarted,
    /// Nothing has changed.
    alreadyPaused
};

/// The case's name.
MIRETH_EXPORT std::string_view caseName(SessionPauseResult result) noexcept;

}  // namespace mireth
