// Undoes the percent escapes of URLs and forms. Used for request targets and log forms.
#pragma once

#include <expected>
#include <string>
#include <string_view>

namespace mireth::receiver {

/// `text` with its escapes decoded; the error says where one is malformed.
std::expected<std::string, std::string> percentDecoded(std::string_view text);

}  // namespace mireth::receiver
