#include "PrivateSide/Logger/AdditionalInfo.hpp"

#include <cstdio>
#include <string_view>

namespace mireth {

namespace {

void appendQuoted(std::string& out, std::string_view text) {
    out += '"';
    for (const char c : text) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            case '\0':
                out += "\\0";
                break;
            default:
                if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) {
                    char escaped[12];
                    std::snprintf(escaped, sizeof escaped, "\\u{%02X}", static_cast<unsigned>(c));
                    out += escaped;
                } else {
                    out += c;
                }
        }
    }
    out += '"';
}

}  // namespace

std::string describe(const AdditionalInfo& info) {
    if (info.empty()) {
        return "[:]";
    }
    std::string out = "[";
    for (const auto& [key, value] : info) {
        if (out.size() > 1) {
            out += ", ";
        }
        appendQuoted(out, key);
        out += ": ";
        appendQuoted(out, value);
    }
    out += ']';
    return out;
}

}  // namespace mireth
