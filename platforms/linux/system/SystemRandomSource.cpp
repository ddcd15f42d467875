#include "platforms/linux/system/SystemRandomSource.hpp"

#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <random>
#include <span>

#include "platforms/linux/system/Uuid.hpp"

namespace mireth::platform {

namespace {

void fillRandomly(std::span<std::byte> bytes) {
    // Requests of up to 256 bytes are never cut short; only a sandbox without the call lets this fail.
    if (getrandom(bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size())) {
        return;
    }
    std::random_device device;
    for (std::byte& byte : bytes) {
        byte = static_cast<std::byte>(device() & 0xFF);
    }
}

std::uint64_t randomWord() {
    std::uint64_t word = 0;
    fillRandomly(std::as_writable_bytes(std::span(&word, 1)));
    return word;
}

}  // namespace

double SystemRandomSource::uniformReal(double low, double high) {
    // 53 random bits over the largest such number: both ends of the range can be drawn.
    constexpr std::uint64_t largest = (std::uint64_t{1} << 53) - 1;
    const double unit = static_cast<double>(randomWord() >> 11) / static_cast<double>(largest);
    return std::clamp(low + (high - low) * unit, std::min(low, high), std::max(low, high));
}

std::int64_t SystemRandomSource::uniformBelow(std::int64_t bound) {
    if (bound <= 0) {
        return 0;
    }
    const auto range = static_cast<std::uint64_t>(bound);
    // The lowest 2^64 mod range words would make small results a little likelier; they are drawn again.
    const std::uint64_t surplus = (0 - range) % range;
    std::uint64_t word = randomWord();
    while (word < surplus) {
        word = randomWord();
    }
    return static_cast<std::int64_t>(word % range);
}

std::string SystemRandomSource::uuid() {
    std::array<std::uint8_t, 16> bytes{};
    fillRandomly(std::as_writable_bytes(std::span(bytes)));
    return formatUuidV4(bytes);
}

}  // namespace mireth::platform
