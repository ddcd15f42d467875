// What may be a session's identifier. It comes from a server and ends up in file names and addresses.
#pragma once

#include <algorithm>
#include <string_view>

namespace mireth {

/// 1 to 128 characters of A-Z, a-z, 0-9, ".", "_" and "-", but neither "." nor "..".
inline bool isValidSessionIdentifier(std::string_view text) noexcept {
    const auto allowed = [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' ||
               c == '_' || c == '-';
    };
    return !text.empty() && text.size() <= 128 && text != "." && text != ".." &&
           std::ranges::all_of(text, allowed);
}

}  // namespace mireth
