// The decoder parameters of an H.264 track (ISO/IEC 14496-15, "avcC") as units that can stand in the stream.
// Used where chunks with different parameters are joined.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mireth::receiver {

/// Every parameter set behind its length in four bytes; none when the record is cut off, of another version,
/// or its track writes lengths in another size.
std::optional<std::string> parameterSetsAsUnits(std::string_view record);

}  // namespace mireth::receiver
