// Draws made from the engine's words by hand: the standard library's distributions differ between
// implementations, the engine does not.
#include "MirethVex/Headless/SeededRandomSource.hpp"

#include <algorithm>
#include <array>
#include <limits>

namespace mireth::headless {

std::uint64_t SeededRandomSource::draw() {
    const std::lock_guard lock(mutex_);
    return engine_();
}

double SeededRandomSource::uniformReal(double low, double high) {
    // 53 bits, both ends included.
    constexpr double largest = 9007199254740991.0;
    const double share = static_cast<double>(draw() >> 11U) / largest;
    return std::clamp(low + (high - low) * share, std::min(low, high), std::max(low, high));
}

std::int64_t SeededRandomSource::uniformBelow(std::int64_t bound) {
    if (bound <= 1) {
        return 0;
    }
    const auto range = static_cast<std::uint64_t>(bound);
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    // Words past the last whole multiple of the range would favour the low results.
    const std::uint64_t usable = most - most % range;
    std::uint64_t word = draw();
    while (word >= usable) {
        word = draw();
    }
    return static_cast<std::int64_t>(word % range);
}

std::string SeededRandomSource::uuid() {
    std::array<std::uint64_t, 2> words{};
    {
        const std::lock_guard lock(mutex_);
        words = {engine_(), engine_()};
    }
    // Version 4 and the variant bits, RFC 9562 section 5.4.
    words[0] = (words[0] & ~std::uint64_t{0xF000}) | 0x4000U;
    words[1] = (words[1] & ~(std::uint64_t{3} << 62U)) | (std::uint64_t{2} << 62U);
    std::string text;
    text.reserve(36);
    for (unsigned digit = 0; digit < 32; ++digit) {
        if (digit == 8 || digit == 12 || digit == 16 || digit == 20) {
            text += '-';
        }
        const unsigned shift = 60 - 4 * (digit % 16);
        text += "0123456789ABCDEF"[(words[digit / 16] >> shift) & 0xFU];
    }
    return text;
}

}  // namespace mireth::headless
