// The download of a whole session: real H.264 chunks joined by the real program, looked at with ffprobe.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "support/RunningReceiver.hpp"
#include "support/VideoTools.hpp"
#include "video/ParameterSets.hpp"

namespace mireth::receiver {
namespace {

using namespace test;

class WholeVideo : public testing::Test {
  protected:
    std::string download() const {
        const auto response = receiver_.get("/api/sessions/" + id_ + "/video.mp4");
        EXPECT_EQ(response.status, 200) << response.body;
        EXPECT_EQ(response.header("content-type"), "video/mp4");
        EXPECT_EQ(response.header("content-disposition"), "attachment; filename=\"session-" + id_ + ".mp4\"");
        return directory_.write("whole.mp4", response.body);
    }

    const TemporaryDirectory directory_;
    RunningReceiver receiver_;
    const std::string id_ = receiver_.createSession();
};

TEST_F(WholeVideo, JoinsTheChunksInOrderWithoutEncodingThemAgain) {
    const auto first = encodedVideo("testsrc=");
    const auto second = encodedVideo("color=red:", "main", 10);
    receiver_.put(chunkUpload(id_, 1, second));
    receiver_.put(chunkUpload(id_, 0, first));
    const auto path = download();
    const auto probed = probe(path);
    EXPECT_EQ(probed.at("streams").size(), 1U);
    EXPECT_EQ(probed.at("streams").at(0).at("time_base"), "1/600");
    EXPECT_EQ(probed.at("streams").at(0).at("codec_name"), "h264");
    EXPECT_EQ(probed.at("format").at("duration"), "15.000000");
    const auto at = packetTimes(probed);
    ASSERT_EQ(at.size(), 30U);
    for (std::size_t i = 0; i < at.size(); ++i) {
        EXPECT_DOUBLE_EQ(at[i], 0.5 * static_cast<double>(i));
    }
    // The coded pictures are the chunks' own.
    std::vector<std::string> sizes;
    for (const auto* const bytes : {&first, &second}) {
        const auto single = probe(directory_.write("one.mp4", *bytes));
        for (const auto& packet : single.at("packets")) {
            sizes.push_back(packet.at("size"));
        }
    }
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const int grown = i == 20 ? 100 : 0;  // may carry its decoder parameters
        EXPECT_LE(std::stoi(probed.at("packets").at(i).at("size").get<std::string>()),
                  std::stoi(sizes[i]) + grown);
        EXPECT_GE(std::stoi(probed.at("packets").at(i).at("size").get<std::string>()), std::stoi(sizes[i]));
    }
    EXPECT_EQ(complaintsOfDecoding(path), "");
}

TEST_F(WholeVideo, AMissingChunkKeepsItsTime) {
    const auto bytes = encodedVideo("testsrc=");
    receiver_.put(chunkUpload(id_, 1, bytes));
    receiver_.put(chunkUpload(id_, 4, bytes));
    const auto at = packetTimes(probe(download()));
    ASSERT_EQ(at.size(), 40U);
    EXPECT_DOUBLE_EQ(at[0], 10.0);
    EXPECT_DOUBLE_EQ(at[19], 19.5);
    EXPECT_DOUBLE_EQ(at[20], 40.0);
    EXPECT_DOUBLE_EQ(at[39], 49.5);
}

TEST_F(WholeVideo, AShortChunkInTheMiddleKeepsItsTenSeconds) {
    const auto bytes = encodedVideo("testsrc=");
    receiver_.put(chunkUpload(id_, 0, bytes));
    receiver_.put(chunkUpload(id_, 1, encodedVideo("testsrc=", "main", 8)));
    receiver_.put(chunkUpload(id_, 2, bytes));
    const auto probed = probe(download());
    const auto at = packetTimes(probed);
    ASSERT_EQ(at.size(), 48U);
    EXPECT_DOUBLE_EQ(at[27], 13.5);
    EXPECT_DOUBLE_EQ(at[28], 20.0);
    EXPECT_EQ(probed.at("format").at("duration"), "30.000000");
}

TEST_F(WholeVideo, OfALongChunkTheFirstTenSecondsArePlayed) {
    const auto longOne = encodedVideo("testsrc=", "main", 28);
    receiver_.put(chunkUpload(id_, 0, longOne));
    receiver_.put(chunkUpload(id_, 1, longOne));
    const auto path = download();
    const auto probed = probe(path);
    const auto at = packetTimes(probed);
    ASSERT_EQ(at.size(), 40U);
    for (std::size_t i = 0; i < at.size(); ++i) {
        EXPECT_DOUBLE_EQ(at[i], 0.5 * static_cast<double>(i));
    }
    EXPECT_EQ(probed.at("format").at("duration"), "20.000000");
    EXPECT_EQ(complaintsOfDecoding(path), "");
}

TEST_F(WholeVideo, ChunksOfDifferentDecoderParametersPlayOneAfterTheOther) {
    receiver_.put(chunkUpload(id_, 0, encodedVideo("testsrc=", "high")));
    receiver_.put(chunkUpload(id_, 1, encodedVideo("testsrc=", "baseline")));
    receiver_.put(chunkUpload(id_, 2, encodedVideo("testsrc=", "high")));
    const auto path = download();
    EXPECT_EQ(packetTimes(probe(path)).size(), 60U);
    EXPECT_EQ(complaintsOfDecoding(path), "");
}

TEST_F(WholeVideo, IsTheSameFileEachTimeAndComesInRanges) {
    receiver_.put(chunkUpload(id_, 0, encodedVideo("testsrc=")));
    const auto target = "/api/sessions/" + id_ + "/video.mp4";
    const auto whole = receiver_.get(target);
    EXPECT_EQ(receiver_.get(target).body, whole.body);
    EXPECT_EQ(receiver_.get(target, "If-None-Match: " + whole.header("etag") + "\r\n").status, 304);
    const auto part = receiver_.get(target, "Range: bytes=100-199\r\n");
    EXPECT_EQ(part.status, 206);
    EXPECT_EQ(part.body, whole.body.substr(100, 100));
    // A download that is resumed after the session grew would be half of one file and half of another.
    receiver_.put(chunkUpload(id_, 1, encodedVideo("testsrc=")));
    const auto grown =
        receiver_.get(target, "Range: bytes=100-199\r\nIf-Range: " + whole.header("etag") + "\r\n");
    EXPECT_EQ(grown.status, 200);
    EXPECT_GT(grown.body.size(), whole.body.size());
}

TEST_F(WholeVideo, WithoutAChunkThereIsNone) {
    EXPECT_EQ(receiver_.get("/api/sessions/" + id_ + "/video.mp4").status, 404);
    EXPECT_EQ(receiver_.get("/api/sessions/unknown/video.mp4").status, 404);
}

TEST_F(WholeVideo, AChunkThatOnlyLooksLikeAVideoHarmsNobody) {
    // Its boxes pass; its pictures are no pictures.
    receiver_.put(chunkUpload(id_, 0));
    const auto response = receiver_.get("/api/sessions/" + id_ + "/video.mp4");
    EXPECT_EQ(response.status, 500);
    EXPECT_EQ(response.body, R"({"error":"the video could not be made"})");
    EXPECT_EQ(receiver_.takeReports(),
              std::vector<std::string>{"the video of session " + id_ + " could not be made"});
    EXPECT_TRUE(std::filesystem::is_empty(receiver_.data() + "/exports"));
}

// Bytes all over the tables replaced, one at a time. Many of these files pass the
// check of their boxes; what comes of them is a video or an error.
TEST_F(WholeVideo, DamagedChunksHarmNobody) {
    const auto sound = encodedVideo("testsrc=");
    const auto movie = sound.find("moov");
    ASSERT_NE(movie, std::string::npos);
    int taken = 0;
    for (std::size_t at = movie + 8, i = 0; at < sound.size(); at += 23, ++i) {
        auto damaged = sound;
        damaged[at] = static_cast<char>(i % 2 == 0 ? 0xFF : 0x7F);
        const auto id = receiver_.createSession();
        if (receiver_.put(chunkUpload(id, 0, damaged)).status != 200) {
            continue;
        }
        ++taken;
        const auto response = receiver_.get("/api/sessions/" + id + "/video.mp4");
        EXPECT_TRUE(response.status == 200 || response.status == 500) << response.status << " at " << at;
    }
    EXPECT_GT(taken, 10);
    receiver_.takeReports();
    receiver_.put(chunkUpload(id_, 0, sound));
    EXPECT_EQ(complaintsOfDecoding(download()), "");
}

TEST(ParameterSetsTest, EveryWayToBeCutOffIsSeen) {
    const std::string record{"\x01\x64\x00\x0a\xff\xe1\x00\x02SP\x01\x00\x01P", 14};
    const std::string units{"\0\0\0\x02SP\0\0\0\x01P", 11};
    EXPECT_EQ(parameterSetsAsUnits(record), units);
    EXPECT_EQ(parameterSetsAsUnits(record + "more"), units);
    for (std::size_t size = 0; size < record.size(); ++size) {
        EXPECT_EQ(parameterSetsAsUnits(record.substr(0, size)), std::nullopt) << size;
    }
    EXPECT_EQ(parameterSetsAsUnits("\x02" + record.substr(1)), std::nullopt);
    EXPECT_EQ(parameterSetsAsUnits(record.substr(0, 4) + "\xfd" + record.substr(5)), std::nullopt);
}

}  // namespace
}  // namespace mireth::receiver
