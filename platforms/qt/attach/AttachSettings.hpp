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
inline constexpr const char* information = "MIRETH_ATTACH_INFO";
/// What QT_PLUGIN_PATH and QT_QPA_GENERIC_PLUGINS were before; absent when they were not set.
inline constexpr const char* pluginPath = "MIRETH_ATTACH_PLUGIN_PATH";
inline constexpr const char* genericPlugins = "MIRETH_ATTACH_GENERIC_PLUGINS";
}  // namespace attach_variables

struct AttachSettings {
    std::string brand;
    std::string project;
    platform::LinuxPlatformOptions options;
};

/// Reads the variables, the information file included, and makes the environment again what it was before
/// mireth-attach, so that programs which the attached one starts are not attached. Nothing when the program
/// is not to be recorded.
std::optional<AttachSettings> takeAttachSettings();

}  // namespace mireth::qt
