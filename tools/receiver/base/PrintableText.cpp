// Decodes UTF-8 strictly, one code point at a time, and escapes what could steer a terminal or mislead a
// reader.
#include "base/PrintableText.hpp"

#include <array>
#include <cstdint>
#include <cstdio>

namespace mireth::receiver {
namespace {

struct Decoded {
    std::uint32_t code;
    std::size_t length;  // 0: not UTF-8
};

unsigned char byteAt(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

Decoded decodeAt(std::string_view text, std::size_t at) {
    const unsigned char lead = byteAt(text, at);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t length = lead >= 0xF0 && lead < 0xF5 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
    if (length == 0 || lead >= 0xF5 || at + length > text.size()) {
        return {0, 0};
    }
    std::uint32_t code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned char next = byteAt(text, at + i);
        if ((next & 0xC0U) != 0x80U) {
            return {0, 0};
        }
        code = (code << 6U) | (next & 0x3FU);
    }
    constexpr std::array<std::uint32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < smallest[length] || code > 0x10FFFF || surrogate ? Decoded{0, 0} : Decoded{code, length};
}

bool isUnsafe(std::uint32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0x200B && code <= 0x200F) ||
           (code >= 0x2028 && code <= 0x202E) || (code >= 0x2060 && code <= 0x206F) || code == 0xFEFF ||
           code == 0x061C;
}

std::string escaped(const char* format, std::uint32_t value) {
    char text[16];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string visible(std::uint32_t code) {
    switch (code) {
        case '\n':
            return "\\n";
        case '\t':
            return "\\t";
        case '\r':
            return "\\r";
        default:
            return escaped("\\u{%X}", code);
    }
}

}  // namespace

std::string printableText(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const Decoded here = decodeAt(text, at);
        if (here.length == 0) {
            out += escaped("\\x{%02X}", byteAt(text, at));
            ++at;
        } else {
            out += isUnsafe(here.code) ? visible(here.code) : std::string(text.substr(at, here.length));
            at += here.length;
        }
    }
    return out;
}

bool isUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = decodeAt(text, at).length;
        if (length == 0) {
            return false;
        }
        at += length;
    }
    return true;
}

std::size_t textWidth(std::string_view text) {
    std::size_t width = 0;
    for (const char c : text) {
        width += (static_cast<unsigned char>(c) & 0xC0U) != 0x80U ? 1 : 0;
    }
    return width;
}

}  // namespace mireth::receiver
