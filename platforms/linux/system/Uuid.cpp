#include "platforms/linux/system/Uuid.hpp"

#include <cstddef>
#include <string_view>

namespace mireth::platform {

std::string formatUuidV4(std::array<std::uint8_t, 16> bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
    std::string text;
    text.reserve(36);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) {
            text += '-';
        }
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 0x0F];
    }
    return text;
}

}  // namespace mireth::platform
