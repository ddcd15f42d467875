#include "platforms/linux/system/Utf8.hpp"

#include <cstddef>

namespace mireth::platform {

namespace {

/// What may follow a lead byte: so many bytes in all, and the range of the second one.
struct Sequence {
    std::size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
};

Sequence sequenceOf(unsigned char lead) {
    if (lead < 0x80) {
        return {1};
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        return {2};
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        return {3, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        return {4, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
    }
    return {};
}

}  // namespace

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
        const Sequence sequence = sequenceOf(byte(0));
        if (sequence.length == 0 || sequence.length > text.size()) {
            return false;
        }
        if (sequence.length > 1 && (byte(1) < sequence.low || byte(1) > sequence.high)) {
            return false;
        }
        for (std::size_t i = 2; i < sequence.length; ++i) {
            if ((byte(i) & 0xC0) != 0x80) {
                return false;
            }
        }
        text.remove_prefix(sequence.length);
    }
    return true;
}

}  // namespace mireth::platform
