// Files of the form key=value, as /etc/os-release and /etc/machine-info are. Used by LinuxDevice.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace mireth::platform {

/// The assignments of `content` after os-release(5): one a line, values bare or in quotes with backslash
/// escapes; comments and anything else are passed over. The last one of a key counts.
std::map<std::string, std::string, std::less<>> parseKeyValueFile(std::string_view content);

}  // namespace mireth::platform
