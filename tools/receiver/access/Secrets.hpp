// Comparing and keeping secrets: tokens and cookies. Used where a request must prove who sent it.
#pragma once

#include <expected>
#include <string>
#include <string_view>

namespace mireth::receiver {

/// SHA-256 of `text`, 32 bytes.
std::string digestOf(std::string_view text);

/// Takes the same time whatever the texts are and wherever they differ.
bool sameSecret(std::string_view a, std::string_view b);

/// The token that stands in a file, without the line end: 20 to 128 of A-Z a-z 0-9 "_" "-", which need no
/// escape in a URL. The error names the file.
std::expected<std::string, std::string> readToken(const std::string& path);

}  // namespace mireth::receiver
