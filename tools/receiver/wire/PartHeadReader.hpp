// Reads the header lines of a multipart part. Used by the multipart reader.
#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "wire/MultipartReader.hpp"

namespace mireth::receiver {

/// Reads the lines of one part's header, without the empty line at their end.
std::expected<PartHead, std::string> readPartHead(std::string_view lines);

}  // namespace mireth::receiver
