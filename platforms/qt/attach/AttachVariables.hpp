// The environment variables by which mireth-attach tells the plugin what to record.
#pragma once

namespace mireth::qt::attach_variables {

inline constexpr const char* brand = "MIRETH_ATTACH_BRAND";
inline constexpr const char* project = "MIRETH_ATTACH_PROJECT";
inline constexpr const char* srEndpoint = "MIRETH_ATTACH_SR_ENDPOINT";
inline constexpr const char* keldaEndpoint = "MIRETH_ATTACH_KELDA_ENDPOINT";
/// An absolute path: a script may start the program from elsewhere.
inline constexpr const char* information = "MIRETH_ATTACH_INFO";
/// What QT_PLUGIN_PATH and QT_QPA_GENERIC_PLUGINS were before; absent when they were not set.
inline constexpr const char* pluginPath = "MIRETH_ATTACH_PLUGIN_PATH";
inline constexpr const char* genericPlugins = "MIRETH_ATTACH_GENERIC_PLUGINS";

}  // namespace mireth::qt::attach_variables
