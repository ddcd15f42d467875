// Escapes are decoded in one pass.
#include "base/PercentDecoding.hpp"

#include <cstddef>

namespace mireth::receiver {
namespace {

int hexValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

}  // namespace

std::expected<std::string, std::string> percentDecoded(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            out += text[i];
            continue;
        }
        const bool whole = text.size() - i > 2;
        const int high = whole ? hexValue(text[i + 1]) : -1;
        const int low = whole ? hexValue(text[i + 2]) : -1;
        if (high < 0 || low < 0) {
            return std::unexpected("a malformed percent escape at byte " + std::to_string(i));
        }
        out += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return out;
}

}  // namespace mireth::receiver
