// Makes stored or received text safe to show on a terminal. Used wherever such text is printed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mireth::receiver {

/// `text` with every control character, line or direction override and malformed UTF-8 byte replaced by a
/// visible form: "\n", "\t", "\r", "\u{202E}", "\x{FF}". A backslash stays as it is: the form is for eyes.
std::string printableText(std::string_view text);

/// True when `text` is well-formed UTF-8.
bool isUtf8(std::string_view text);

/// How many code points valid UTF-8 `text` holds; what columns are aligned by.
std::size_t textWidth(std::string_view text);

}  // namespace mireth::receiver
