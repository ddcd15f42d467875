// Reads the Range header of a request for a file (RFC 9110, section 14). Used for videos.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string_view>

namespace mireth::receiver {

struct ByteRange {
    std::uint64_t first = 0;
    std::uint64_t size = 0;
};

enum class RangeError { unsatisfiable };

/// The one range that `header` asks of a file of `size` bytes; none when the whole file is to be sent: no
/// header, one of another unit, a malformed one, or several ranges, which nobody is obliged to serve.
std::expected<std::optional<ByteRange>, RangeError> byteRange(std::string_view header, std::uint64_t size);

}  // namespace mireth::receiver
