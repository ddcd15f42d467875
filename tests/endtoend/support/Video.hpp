// What a player finds in an uploaded chunk: ffprobe's description and the decoded pixels.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "MirethVex/Platform/Image.hpp"

namespace mireth::endtoend {

struct ProbedVideo {
    int streams = 0;
    std::string codec;
    int width = 0;
    int height = 0;
    std::string timeBase;
    /// In seconds, as ffprobe writes it.
    std::string duration;
    std::vector<std::int64_t> times;  ///< of each packet, in units of the time base
};

ProbedVideo probeVideo(const std::string& path);

struct Rgb {
    int red = 0;
    int green = 0;
    int blue = 0;
    bool operator==(const Rgb&) const = default;
};
std::ostream& operator<<(std::ostream& out, Rgb color);

/// The frames of a chunk, in order.
std::vector<platform::Image> decodeFrames(const std::string& path);

Rgb pixelAt(const platform::Image& frame, std::size_t x, std::size_t y);
/// Greatest difference of a channel.
int distance(Rgb one, Rgb other);
/// Greatest difference between two channels: 0 for any grey.
int saturation(Rgb color);

struct FoundPixel {
    std::size_t x = 0;
    std::size_t y = 0;
    Rgb color;
};
std::ostream& operator<<(std::ostream& out, const FoundPixel& pixel);

/// The first pixel, row by row, that satisfies `wanted`.
std::optional<FoundPixel> findPixel(const platform::Image& frame, const std::function<bool(Rgb)>& wanted);
std::size_t countPixels(const platform::Image& frame, const std::function<bool(Rgb)>& wanted);

}  // namespace mireth::endtoend
