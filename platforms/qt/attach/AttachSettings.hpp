// What an attached program is told through its environment; mireth-attach sets it.
#pragma once

#include <optional>
#include <string>

#include "MirethVex/Linux/LinuxPlatform.hpp"

namespace mireth::qt {

/// The names of the variables.
namespace attach_variables {
inline constexpr const char* brand = "MIRETH_ATTACH_BRAND";
inline constexpr const char* project = "MIRETH_ATTACH_PROJECT";
inline constexpr const char* srEndpoint = "MIRETH_ATTACH_SR_ENDPOINT";
inline constexpr const char* keldaEndpoint = "MIRETH_ATTACH_KELDA_ENDPOINT";
/// What QT_PLUGIN_PATH was before; absent when it was not set.
inline constexpr const char* pluginPath = "MIRETH_ATTACH_PLUGIN_PATH";
}  // namespace attach_variables

struct AttachSettings {
    std::string brand;
    std::string project;
    platform::LinuxPlatformOptions options;
};

/// Reads the variables, the information file included, and takes them out of the environment again, so that
/// programs which the attached one starts are not attached. Nothing when the program is not to be recorded.
std::optional<AttachSettings> takeAttachSettings();

}  // namespace mireth::qt
