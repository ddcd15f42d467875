// Reads the form body of a posted log line, whose values may hold unescaped "&" and "=".
#pragma once

#include <expected>
#include <string>
#include <string_view>

namespace mireth::receiver {

struct ClientLogForm {
    std::string message;    ///< usually the text of a JSON object; not required to be
    std::string levelName;  ///< letters only
};

/// Splits and decodes `body`. The level is a plain word, so it cannot hold a separator; that makes the split
/// unambiguous whatever the message holds: a body that begins with "Message=" is cut at its last
/// "&LevelName=", one that begins with "LevelName=" at its first "&Message=". A "+" is a plus sign, since the
/// client escapes a space as "%20". The error says what is missing or malformed; so is text that does not
/// decode to UTF-8.
std::expected<ClientLogForm, std::string> readClientLogForm(std::string_view body);

}  // namespace mireth::receiver
