// Runs ffmpeg and ffprobe.
#include "support/VideoTools.hpp"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/Program.hpp"
#include "support/TemporaryDirectory.hpp"

namespace mireth::receiver::test {

std::string encodedVideo(const std::string& picture, const std::string& profile, int frames) {
    const TemporaryDirectory directory;
    const auto path = directory.file("chunk.mp4");
    const auto made = runProgram({"ffmpeg",
                                  "-v",
                                  "error",
                                  "-f",
                                  "lavfi",
                                  "-i",
                                  picture + "r=2:s=250x500",
                                  "-frames:v",
                                  std::to_string(frames),
                                  "-c:v",
                                  "libx264",
                                  "-profile:v",
                                  profile,
                                  "-bf",
                                  "0",
                                  "-pix_fmt",
                                  "yuv420p",
                                  "-video_track_timescale",
                                  "600",
                                  path});
    EXPECT_EQ(made.status, 0) << made.errors;
    return fileText(path);
}

nlohmann::json probe(const std::string& path) {
    const auto result = runProgram(
        {"ffprobe", "-v", "error", "-show_packets", "-show_format", "-show_streams", "-of", "json", path});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    return nlohmann::json::parse(result.out);
}

std::vector<double> packetTimes(const nlohmann::json& probed) {
    std::vector<double> all;
    for (const auto& packet : probed.at("packets")) {
        all.push_back(std::stod(packet.at("pts_time").get<std::string>()));
    }
    return all;
}

std::string complaintsOfDecoding(const std::string& path) {
    return runProgram({"ffmpeg", "-v", "error", "-i", path, "-f", "null", "-"}).errors;
}

}  // namespace mireth::receiver::test
