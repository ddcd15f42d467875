// What an attached program is told through its environment.
#pragma once

#include <optional>
#include <string>

#include "MirethVex/Linux/LinuxPlatform.hpp"

namespace mireth::qt {

struct AttachSettings {
    std::string brand;
    std::string project;
    platform::LinuxPlatformOptions options;
};

/// Reads the variables and makes the environment again what it was before
/// mireth-attach, so that programs which the attached one starts are not attached. Nothing when the program
/// is not to be recorded.
std::optional<AttachSettings> takeAttachSettings();

}  // namespace mireth::qt
