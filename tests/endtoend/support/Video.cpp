#include "endtoend/support/Video.hpp"

#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "endtoend/support/EndToEnd.hpp"
#include "tests/contract/media/DecodedVideo.hpp"

namespace mireth::endtoend {

ProbedVideo probeVideo(const std::string& path) {
    const Ended ended =
        runProcess({"ffprobe", "-v", "error", "-of", "json", "-show_streams", "-show_packets", path});
    if (ended.status != 0) {
        throw std::runtime_error(ended.errors);
    }
    const Json found = Json::parse(ended.out);
    const Json& stream = found.at("streams").at(0);
    ProbedVideo video{.streams = static_cast<int>(found.at("streams").size()),
                      .codec = stream.at("codec_name"),
                      .width = stream.at("width"),
                      .height = stream.at("height"),
                      .timeBase = stream.at("time_base"),
                      .duration = stream.at("duration"),
                      .times = {}};
    for (const auto& packet : found.at("packets")) {
        video.times.push_back(packet.at("pts"));
    }
    return video;
}

std::ostream& operator<<(std::ostream& out, Rgb color) {
    return out << "(" << color.red << ", " << color.green << ", " << color.blue << ")";
}

std::vector<platform::Image> decodeFrames(const std::string& path) {
    auto video = tests::decodeVideo(readFile(path));
    if (video.errors != 0 || video.frames.empty()) {
        throw std::runtime_error(path + ": cannot be decoded");
    }
    return std::move(video.frames);
}

Rgb pixelAt(const platform::Image& frame, std::size_t x, std::size_t y) {
    const std::uint32_t pixel = frame.pixels()[y * frame.pixelWidth() + x];
    const auto channel = [pixel](unsigned shift) { return static_cast<int>((pixel >> shift) & 0xFFU); };
    return {channel(16), channel(8), channel(0)};
}

int distance(Rgb one, Rgb other) {
    return std::max(
        {std::abs(one.red - other.red), std::abs(one.green - other.green), std::abs(one.blue - other.blue)});
}

int saturation(Rgb color) {
    const auto [least, most] = std::minmax({color.red, color.green, color.blue});
    return most - least;
}

std::ostream& operator<<(std::ostream& out, const FoundPixel& pixel) {
    return out << pixel.color << " at " << pixel.x << ", " << pixel.y;
}

std::optional<FoundPixel> findPixel(const platform::Image& frame, const std::function<bool(Rgb)>& wanted) {
    for (std::size_t y = 0; y < frame.pixelHeight(); ++y) {
        for (std::size_t x = 0; x < frame.pixelWidth(); ++x) {
            const Rgb color = pixelAt(frame, x, y);
            if (wanted(color)) {
                return FoundPixel{x, y, color};
            }
        }
    }
    return std::nullopt;
}

std::size_t countPixels(const platform::Image& frame, const std::function<bool(Rgb)>& wanted) {
    std::size_t count = 0;
    for (std::size_t y = 0; y < frame.pixelHeight(); ++y) {
        for (std::size_t x = 0; x < frame.pixelWidth(); ++x) {
            count += wanted(pixelAt(frame, x, y)) ? 1 : 0;
        }
    }
    return count;
}

}  // namespace mireth::endtoend
