#include "PrivateSide/Configuration/PlaybackConfiguration.hpp"

#include "Base/CheckedMath.hpp"

namespace mireth {

std::int64_t PlaybackConfiguration::framesPerChunk() const {
    return checkedMultiply<std::int64_t>(fps, secondsPerChunk);
}

platform::MediaTime PlaybackConfiguration::frameDuration() const {
    platform::MediaTime duration;
    duration.value = checkedDivide(kTimescale, fps);
    duration.timescale = kTimescale;
    return duration;
}

platform::MediaTime PlaybackConfiguration::presentationTime(std::int64_t frameNumber) const {
    platform::MediaTime time = frameDuration();
    time.value = checkedMultiply(time.value, frameNumber);
    return time;
}

std::int64_t PlaybackConfiguration::maxNumberOfFiles() const {
    return checkedMultiply(checkedDivide<std::int64_t>(60, secondsPerChunk), maxRecordMinutes);
}

platform::Seconds getSecondsDelayBasedOnFps(std::int32_t fps) {
    return platform::Seconds(1.0 / static_cast<double>(fps));
}

}  // namespace mireth
