// What `MirethSR::initializeProject` answers.
#pragma once

#include <string_view>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

enum class InitializationResult {
    /// The project is set up.
    success,
    /// The brand or the project identifier is empty.
    paramsRequired,
    /// No window was passed and the application has no key window. Also the answer when something of the
    /// host or the platform threw meanwhile; a log line tells.
    cannotGetKeyWindow,
    /// A session is starting, running or paused; it goes on.
    sessionAlreadyRunning
};

/// The case's name.
MIRETH_EXPORT std::string_view caseName(InitializationResult result) noexcept;

}  // namespace mireth
