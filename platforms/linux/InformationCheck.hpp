// Finds what the information dictionary says in vain. Used by LinuxPlatform's warnings and by mireth-attach.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MirethVex/Platform/Device.hpp"
#include "platforms/linux/system/JsonFileInformationDictionary.hpp"

namespace mireth::platform {

/// The idiom that "DEVICE_IDIOM" may name; nothing for any other name.
std::optional<UserInterfaceIdiom> idiomNamed(std::string_view name);

/// One line for each of the library's keys whose value is no text or none that the library can use, naming
/// the key and quoting the value. `allowInsecureHttp`: plain http with any host is allowed whatever it says.
std::vector<std::string> warningsAbout(const JsonFileInformationDictionary& information,
                                       bool allowInsecureHttp);

}  // namespace mireth::platform
