// Writes 16 bytes as a version-4 UUID. Used by the random source and the device identifier.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace mireth::platform {

/// `bytes` with the version and variant bits of RFC 9562, section 5.4 set, in 36 characters with upper-case
/// digits.
std::string formatUuidV4(std::array<std::uint8_t, 16> bytes);

}  // namespace mireth::platform
