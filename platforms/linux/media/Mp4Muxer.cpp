#include "platforms/linux/media/Mp4Muxer.hpp"

#include <algorithm>
#include <limits>

#include "platforms/linux/media/Mp4Box.hpp"
#include "platforms/linux/media/Mp4Index.hpp"
#include "platforms/linux/media/NalUnits.hpp"

namespace mireth::platform {

namespace {

constexpr std::size_t largest = std::numeric_limits<std::uint32_t>::max();

Mp4Box fileType() {
    constexpr std::uint32_t minorVersion = 512;
    return Mp4Box("ftyp").add("isom").add(minorVersion).add("isomiso2avc1mp41");
}

/// Whether they can be written down: at least one sequence set, and no more or larger ones than there is room
/// for.
bool areUsable(std::span<const std::byte> parameterSets) {
    constexpr std::size_t most = 31;
    constexpr std::size_t smallest = 4;
    const auto units = nalUnitsOf(parameterSets);
    const bool fit = std::ranges::all_of(units, [](const auto& unit) {
        return unit.size() >= smallest && unit.size() <= std::numeric_limits<std::uint16_t>::max();
    });
    return fit && units.size() <= most && std::ranges::any_of(units, isSequenceParameterSet);
}

/// Appends a picture as it lies in a file: each unit after its length.
void append(Mp4Box& data, std::span<const std::byte> stream) {
    for (const auto& unit : nalUnitsOf(stream)) {
        data.add(static_cast<std::uint32_t>(unit.size())).add(unit);
    }
}

}  // namespace

std::expected<std::vector<std::byte>, std::string> muxMp4(const Mp4VideoTrack& track,
                                                          std::span<const Mp4Sample> samples) {
    if (samples.empty() || !areUsable(track.parameterSets)) {
        return std::unexpected("There is no picture, or no description of how it is coded");
    }
    Mp4Box data("mdat");
    const std::size_t head = data.size();
    std::vector<std::uint32_t> sizes;
    for (const Mp4Sample& sample : samples) {
        const std::size_t before = data.size();
        append(data, sample.bytes);
        sizes.push_back(static_cast<std::uint32_t>(data.size() - before));
    }
    std::vector<std::byte> file = fileType().bytes();
    const std::size_t dataBegins = file.size() + mp4Index(track, samples, sizes, 0).size();
    if (dataBegins + data.size() > largest) {
        return std::unexpected("The pictures are too large for one file");
    }
    const auto firstByte = static_cast<std::uint32_t>(dataBegins + head);
    for (const auto& box : {mp4Index(track, samples, sizes, firstByte).bytes(), data.bytes()}) {
        file.insert(file.end(), box.begin(), box.end());
    }
    return file;
}

}  // namespace mireth::platform
