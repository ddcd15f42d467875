// Reading and writing whole byte strings on a descriptor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace mireth::platform {

/// Everything from the current position, but `maxBytes` + 1 bytes at most, so that the caller can tell a
/// file that is too long. Nothing on an error, which errno names.
std::optional<std::string> readUpTo(int descriptor, std::uint64_t maxBytes);

/// False on an error, which errno names.
bool writeAll(int descriptor, std::span<const std::byte> bytes);

/// A small file of the system's or the user's (also behind a link), such as /etc/os-release; nothing when it
/// is missing, unreadable, not a regular file or longer than `maxBytes`. errno names why; EFBIG: too long,
/// ENOTSUP: no regular file.
std::optional<std::string> readSmallFile(const std::string& path, std::uint64_t maxBytes);

}  // namespace mireth::platform
