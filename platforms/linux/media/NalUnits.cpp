#include "platforms/linux/media/NalUnits.hpp"

#include <algorithm>
#include <array>

namespace mireth::platform {

namespace {

using Bytes = std::span<const std::byte>;

constexpr std::array startCode{std::byte{0}, std::byte{0}, std::byte{1}};

/// A unit never ends in a zero; those before the next start code pad the stream.
Bytes withoutPadding(Bytes unit) {
    while (!unit.empty() && unit.back() == std::byte{0}) {
        unit = unit.first(unit.size() - 1);
    }
    return unit;
}

}  // namespace

std::vector<Bytes> nalUnitsOf(Bytes stream) {
    std::vector<Bytes> units;
    auto code = std::ranges::search(stream, startCode);
    while (!code.empty()) {
        const Bytes rest(code.end(), stream.end());
        code = std::ranges::search(rest, startCode);
        if (const Bytes unit = withoutPadding({rest.begin(), code.begin()}); !unit.empty()) {
            units.push_back(unit);
        }
    }
    return units;
}

bool isSequenceParameterSet(Bytes unit) {
    constexpr std::byte typeBits{0x1F};
    constexpr std::byte sequenceSet{7};
    return (unit.front() & typeBits) == sequenceSet;
}

}  // namespace mireth::platform
