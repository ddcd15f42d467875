// Real H.264 videos, made and looked at with ffmpeg's programs. Used by the tests of whole videos.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace mireth::receiver::test {

/// The bytes of a chunk as clients make them: two frames a second, 600 units a second. `picture` is a source
/// of ffmpeg's, ready for more options.
std::string encodedVideo(const std::string& picture, const std::string& profile = "main", int frames = 20);
/// What ffprobe tells of the file, with its packets; fails the test when it complains.
nlohmann::json probe(const std::string& path);
/// When each packet is shown, in seconds.
std::vector<double> packetTimes(const nlohmann::json& probed);
/// What decoding every frame of the file complains about; "" when nothing.
std::string complaintsOfDecoding(const std::string& path);

}  // namespace mireth::receiver::test
