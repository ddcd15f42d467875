// What is sent in place of a version or a device's value that cannot be found.
#pragma once

namespace mireth {

inline constexpr const char* unknownValue = "Unknown";

}  // namespace mireth
