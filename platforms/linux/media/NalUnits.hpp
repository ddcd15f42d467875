// The units of an H.264 byte stream. Private to this folder.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace mireth::platform {

/// The units of `stream` (ITU-T H.264 Annex B) without start codes and padding. They lie in the stream's
/// memory.
std::vector<std::span<const std::byte>> nalUnitsOf(std::span<const std::byte> stream);

/// Of a unit that is not empty.
bool isSequenceParameterSet(std::span<const std::byte> unit);

}  // namespace mireth::platform
