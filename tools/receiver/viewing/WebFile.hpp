// The files of the page, which are part of the program. Generated from web/ when the program is built.
#pragma once

#include <span>
#include <string_view>

namespace mireth::receiver {

struct WebFile {
    std::string_view path;  ///< relative, such as "index.html" or "replay/player.js"
    std::string_view bytes;
    std::string_view digest;  ///< SHA-256 in hexadecimal
};

/// All of them, in no order.
std::span<const WebFile> webFiles();

}  // namespace mireth::receiver
