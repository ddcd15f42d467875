#include "platforms/linux/media/Mp4Index.hpp"

#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

#include "platforms/linux/media/Mp4SampleEntry.hpp"

namespace mireth::platform {

namespace {

using Samples = std::span<const Mp4Sample>;

template <class Value>
constexpr std::uint32_t word(Value value) {
    return static_cast<std::uint32_t>(value);
}

std::uint64_t durationOf(Samples samples) {
    std::uint64_t duration = 0;
    for (const Mp4Sample& sample : samples) {
        duration += static_cast<std::uint64_t>(sample.duration);
    }
    return duration;
}

/// What comes before the first picture.
std::uint64_t delayOf(Samples samples) {
    return static_cast<std::uint64_t>(samples.front().time);
}

/// A box with times in it. Those of version 0 have 32 bits, which a recording never needs more of.
class TimedBox {
  public:
    TimedBox(std::string_view type, std::uint32_t flags, std::uint64_t longest)
        : isWide_(longest > std::numeric_limits<std::uint32_t>::max()), box_(type, isWide_ ? 1 : 0, flags) {}

    TimedBox& addTime(std::uint64_t time) {
        isWide_ ? box_.add(time) : box_.add(word(time));
        return *this;
    }
    /// When it was made and changed. No time of day: the same frames make the same file.
    TimedBox& addDates() { return addTime(0).addTime(0); }
    Mp4Box& box() { return box_; }

  private:
    const bool isWide_;
    Mp4Box box_;
};

/// Neither turned nor scaled.
Mp4Box& addMatrix(Mp4Box& box) {
    constexpr std::uint32_t one = 0x10000;
    return box.add(one).addZeros(12).add(one).addZeros(12).add(std::uint32_t{0x40000000});
}

Mp4Box movieHeader(const Mp4VideoTrack& track, std::uint64_t duration) {
    constexpr std::uint32_t usualRate = 0x10000;
    constexpr std::uint16_t fullVolume = 0x100;
    constexpr std::uint32_t nextTrack = 2;
    TimedBox header("mvhd", 0, duration);
    header.addDates().box().add(word(track.timescale));
    header.addTime(duration).box().add(usualRate).add(fullVolume).addZeros(10);
    return addMatrix(header.box()).addZeros(24).add(nextTrack);
}

Mp4Box trackHeader(const Mp4VideoTrack& track, std::uint64_t duration) {
    constexpr std::uint32_t enabledAndInMovie = 3;
    constexpr std::uint32_t number = 1;
    TimedBox header("tkhd", enabledAndInMovie, duration);
    header.addDates().box().add(number).addZeros(4);
    header.addTime(duration).box().addZeros(16);
    return addMatrix(header.box()).add(word(track.width) << 16U).add(word(track.height) << 16U);
}

Mp4Box mediaHeader(const Mp4VideoTrack& track, std::uint64_t duration) {
    constexpr std::uint16_t noLanguage = 0x55C4;
    TimedBox header("mdhd", 0, duration);
    header.addDates().box().add(word(track.timescale));
    return header.addTime(duration).box().add(noLanguage).addZeros(2);
}

/// Nothing for as long as the first picture is late, and then all pictures.
Mp4Box edits(std::uint64_t delay, std::uint64_t duration) {
    constexpr std::uint64_t nothing = std::numeric_limits<std::uint64_t>::max();
    constexpr std::uint32_t usualRate = 0x10000;
    TimedBox list("elst", 0, delay + duration);
    list.box().add(std::uint32_t{2});
    list.addTime(delay).addTime(nothing).box().add(usualRate);
    list.addTime(duration).addTime(0).box().add(usualRate);
    return Mp4Box("edts").add(list.box());
}

/// How long each picture lasts; those in a row that last alike are one entry.
Mp4Box durations(Samples samples) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> runs;
    for (const Mp4Sample& sample : samples) {
        if (runs.empty() || runs.back().second != word(sample.duration)) {
            runs.emplace_back(0, word(sample.duration));
        }
        ++runs.back().first;
    }
    Mp4Box box("stts", 0, 0);
    box.add(word(runs.size()));
    for (const auto& [count, duration] : runs) {
        box.add(count).add(duration);
    }
    return box;
}

Mp4Box keyFrames(Samples samples) {
    std::vector<std::uint32_t> numbers;
    for (std::size_t index = 0; index < samples.size(); ++index) {
        if (samples[index].isKeyFrame) {
            numbers.push_back(word(index + 1));
        }
    }
    Mp4Box box("stss", 0, 0);
    box.add(word(numbers.size()));
    for (const std::uint32_t number : numbers) {
        box.add(number);
    }
    return box;
}

Mp4Box sampleTable(const Mp4VideoTrack& track, Samples samples, std::span<const std::uint32_t> sizes,
                   std::uint32_t firstByte) {
    Mp4Box sampleSizes("stsz", 0, 0);
    sampleSizes.addZeros(4).add(word(sizes.size()));
    for (const std::uint32_t size : sizes) {
        sampleSizes.add(size);
    }
    // All pictures lie one after the other.
    constexpr std::uint32_t one = 1;
    Mp4Box chunks("stsc", 0, 0);
    chunks.add(one).add(one).add(word(samples.size())).add(one);
    return Mp4Box("stbl")
        .add(Mp4Box("stsd", 0, 0).add(one).add(mp4SampleEntry(track)))
        .add(durations(samples))
        .add(keyFrames(samples))
        .add(chunks)
        .add(sampleSizes)
        .add(Mp4Box("stco", 0, 0).add(one).add(firstByte));
}

Mp4Box media(const Mp4VideoTrack& track, Samples samples, const Mp4Box& table) {
    Mp4Box handler("hdlr", 0, 0);
    handler.addZeros(4).add("vide").addZeros(12).add("VideoHandler").addZeros(1);
    Mp4Box place("dref", 0, 0);
    constexpr std::uint32_t inThisFile = 1;
    place.add(std::uint32_t{1}).add(Mp4Box("url ", 0, inThisFile));
    const Mp4Box information =
        Mp4Box("minf").add(Mp4Box("vmhd", 0, 1).addZeros(8)).add(Mp4Box("dinf").add(place)).add(table);
    return Mp4Box("mdia").add(mediaHeader(track, durationOf(samples))).add(handler).add(information);
}

}  // namespace

Mp4Box mp4Index(const Mp4VideoTrack& track, Samples samples, std::span<const std::uint32_t> sizes,
                std::uint32_t firstByte) {
    const std::uint64_t delay = delayOf(samples);
    const std::uint64_t duration = delay + durationOf(samples);
    Mp4Box box("trak");
    box.add(trackHeader(track, duration));
    if (delay > 0) {
        box.add(edits(delay, durationOf(samples)));
    }
    box.add(media(track, samples, sampleTable(track, samples, sizes, firstByte)));
    return Mp4Box("moov").add(movieHeader(track, duration)).add(box);
}

}  // namespace mireth::platform
