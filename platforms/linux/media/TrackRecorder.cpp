#include "platforms/linux/media/TrackRecorder.hpp"

#include <limits>
#include <utility>

namespace mireth::platform {

namespace {

constexpr std::int64_t longestDuration = std::numeric_limits<std::int32_t>::max();
/// Far beyond any recording, and far from where seconds or sums would overflow.
constexpr std::int64_t latestTime = std::int64_t{1} << 48;

}  // namespace

TrackRecorder::TrackRecorder(const Mp4VideoTrack& track, std::int64_t defaultFrameDuration)
    : scratch_(std::make_unique<ScratchThread>()),
      converter_(track.width, track.height),
      track_(track),
      defaultFrameDuration_(defaultFrameDuration) {}

TrackRecorder::~TrackRecorder() {
    if (scratch_ == nullptr) {
        return;
    }
    scratch_->run([this] {
        encoder_.reset();
        samples_.clear();
    });
}

std::expected<TrackRecorder, std::string> TrackRecorder::create(int width, int height, std::int32_t timescale,
                                                                std::int64_t defaultFrameDuration) {
    Mp4VideoTrack track;
    track.width = width;
    track.height = height;
    track.timescale = timescale;
    TrackRecorder recorder(track, defaultFrameDuration);
    if (auto made = recorder.makeEncoder(); !made) {
        return std::unexpected(std::move(made.error()));
    }
    return recorder;
}

std::expected<void, std::string> TrackRecorder::makeEncoder() {
    std::expected<void, std::string> outcome;
    scratch_->run([this, &outcome] {
        auto encoder = H264Encoder::create(track_.width, track_.height);
        if (encoder) {
            encoder_.emplace(std::move(*encoder));
        } else {
            outcome = std::unexpected(std::move(encoder.error()));
        }
    });
    return outcome;
}

std::expected<void, std::string> TrackRecorder::checkTime(std::int64_t time) const {
    if (time < 0 || time > latestTime) {
        return std::unexpected("A frame's time lies outside the recording: " + std::to_string(time));
    }
    if (samples_.empty()) {
        return {};
    }
    const std::int64_t previous = samples_.back().time;
    if (time <= previous) {
        return std::unexpected("A frame's time does not follow the one before it: " + std::to_string(time) +
                               " after " + std::to_string(previous));
    }
    if (time - previous > longestDuration) {
        return std::unexpected("A frame lasts too long: from " + std::to_string(previous) + " to " +
                               std::to_string(time));
    }
    return {};
}

std::expected<void, std::string> TrackRecorder::append(const std::byte* pixels, std::size_t bytesPerRow,
                                                       std::int64_t time) {
    if (auto checked = checkTime(time); !checked) {
        return checked;
    }
    const PlanarPicture picture = converter_.convert(pixels, bytesPerRow);
    std::expected<EncodedPicture, std::string> encoded;
    scratch_->run([&] { encoded = encoder_->encode(picture, time * 1000 / track_.timescale); });
    if (!encoded) {
        return std::unexpected(encoded.error());
    }
    Mp4Sample sample;
    sample.bytes = std::move(encoded->bytes);
    sample.time = time;
    sample.duration = defaultFrameDuration_;
    sample.isKeyFrame = encoded->isKeyFrame;
    if (!samples_.empty()) {
        samples_.back().duration = time - samples_.back().time;
        sample.duration = samples_.back().duration;
    }
    samples_.push_back(std::move(sample));
    return {};
}

std::expected<std::vector<std::byte>, std::string> TrackRecorder::finish() {
    if (samples_.empty()) {
        return std::unexpected("The track has no frame");
    }
    track_.parameterSets = encoder_->parameterSets();
    return muxMp4(track_, samples_);
}

}  // namespace mireth::platform
