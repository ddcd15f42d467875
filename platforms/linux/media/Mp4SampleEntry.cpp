#include "platforms/linux/media/Mp4SampleEntry.hpp"

#include <algorithm>
#include <cstdint>
#include <span>

#include "platforms/linux/media/NalUnits.hpp"

namespace mireth::platform {

namespace {

/// The decoder's configuration (ISO 14496-15, 5.3.3.1): pictures of 4:2:0 and 8 bits.
Mp4Box decoderConfiguration(std::span<const std::byte> parameterSets) {
    auto units = nalUnitsOf(parameterSets);
    const auto others = std::ranges::stable_partition(units, isSequenceParameterSet);
    const std::span sequence(units.begin(), others.begin());
    const auto addSets = [](Mp4Box& box, std::uint8_t count, const auto& sets) {
        box.add(count);
        for (const auto& set : sets) {
            box.add(static_cast<std::uint16_t>(set.size())).add(set);
        }
    };
    Mp4Box box("avcC");
    // The profile and the level are the sequence set's own.
    box.add(std::uint8_t{1}).add(sequence.front().subspan(1, 3));
    constexpr std::uint8_t lengthsOfFourBytes = 0xFF;
    box.add(lengthsOfFourBytes);
    addSets(box, static_cast<std::uint8_t>(0xE0U | sequence.size()), sequence);
    addSets(box, static_cast<std::uint8_t>(others.size()), others);
    constexpr std::byte high{100};
    if (sequence.front()[1] >= high) {
        box.add(std::uint32_t{0xFDF8F800});
    }
    return box;
}

}  // namespace

Mp4Box mp4SampleEntry(const Mp4VideoTrack& track) {
    constexpr std::uint32_t dotsPerInch = 72U << 16U;
    Mp4Box box("avc1");
    box.addZeros(6).add(std::uint16_t{1}).addZeros(16);
    box.add(static_cast<std::uint16_t>(track.width)).add(static_cast<std::uint16_t>(track.height));
    box.add(dotsPerInch).add(dotsPerInch).addZeros(4).add(std::uint16_t{1}).addZeros(32);
    box.add(std::uint16_t{24}).add(std::uint16_t{0xFFFF});
    box.add(decoderConfiguration(track.parameterSets));
    // What PlanarConverter makes (ITU-T H.273): BT.709, IEC 61966-2-1 and SMPTE 170M, of limited range.
    Mp4Box color("colr");
    color.add("nclx").add(std::uint16_t{1}).add(std::uint16_t{13}).add(std::uint16_t{6}).add(std::uint8_t{0});
    return box.add(color).add(Mp4Box("pasp").add(std::uint32_t{1}).add(std::uint32_t{1}));
}

}  // namespace mireth::platform
