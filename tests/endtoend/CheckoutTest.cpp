// A whole session of an app that a person would use: what the phone says, and what arrives.
#include <algorithm>
#include <cmath>

#include "endtoend/support/EndToEnd.hpp"
#include "endtoend/support/Video.hpp"

namespace mireth::endtoend {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EndToEndCheckout : public EndToEnd {
  protected:
    void SetUp() override {
        run_ = playFile(exampleScenario("checkout"), receiver_->origin(),
                        {.more = {"--allow-tags", "playback,network"}});
        ASSERT_EQ(run_.ended.status, 0) << run_.ended.errors;
        ASSERT_EQ(run_.sessionIds().size(), 1U) << run_.ended.out;
        session_ = receiver_->show(run_.sessionIds()[0]);
    }

    /// A frame every half second until the stop, that of its own instant included.
    std::vector<int> expectedFramesOfChunks() const {
        const double stoppedAt = run_.resultOf("stopRecording").at("at");
        std::vector<int> chunks;
        for (int left = static_cast<int>(std::floor(stoppedAt / 0.5)); left > 0; left -= 20) {
            chunks.push_back(std::min(left, 20));
        }
        return chunks;
    }

    const std::unique_ptr<Receiver> receiver_ = startReceiver();
    PhoneRun run_;
    Json session_;
};

TEST_F(EndToEndCheckout, EveryCallSucceedsAndNothingGoesWrong) {
    EXPECT_THAT(run_.results(),
                ElementsAre("initializeProject success", "startRecording success", "stopRecording success"));
    EXPECT_THAT(run_.errors(), IsEmpty());
    EXPECT_EQ(run_.ended.errors, "");
    EXPECT_EQ(run_.end().at("event"), "end");
    EXPECT_EQ(run_.end().at("state"), "stopped");
    EXPECT_EQ(run_.end().at("hasActiveSession"), false);
}

TEST_F(EndToEndCheckout, TheHostIsToldTheSessionThatTheServiceMade) {
    ASSERT_EQ(receiver_->sessions().size(), 1U);
    const Json made = receiver_->sessions()[0];
    const Json told = run_.resultOf("startRecording");
    const std::string id = made.at("id");
    EXPECT_EQ(told.at("sessionId"), id);
    EXPECT_EQ(told.at("message"), "Successfully created session: " + id);
    EXPECT_EQ(told.at("sessionStartTimeMillis"), made.at("startMillis"));
    EXPECT_EQ(made.at("state"), "closed");
    EXPECT_EQ(made.at("isTestSession"), false);
    EXPECT_EQ(made.at("brandDc"), "US_WEST");
}

TEST_F(EndToEndCheckout, ChunksHoldTwentyFramesAndTheLastOneTheRest) {
    const auto expected = expectedFramesOfChunks();
    ASSERT_EQ(session_.at("chunks").size(), expected.size());
    for (std::size_t index = 0; index < expected.size(); ++index) {
        const Json& chunk = session_.at("chunks")[index];
        EXPECT_EQ(chunk.at("number"), index);
        EXPECT_EQ(chunk.at("frames"), expected[index]) << "chunk " << index;
        EXPECT_EQ(chunk.at("durationMillis"), expected[index] * 500) << "chunk " << index;
    }
    EXPECT_LT(expected.back(), 20) << "the scenario's last chunk is to be a shorter one";
}

TEST_F(EndToEndCheckout, EveryChunkIsAcknowledgedInOrder) {
    std::vector<std::string> expected;
    for (std::size_t number = 0; number < expectedFramesOfChunks().size(); ++number) {
        expected.push_back("Successfuly pushed chunk. [\"chunkNumber\": \"" + std::to_string(number) + "\"]");
    }
    EXPECT_EQ(run_.logged("Successfuly pushed chunk."), expected);
}

TEST_F(EndToEndCheckout, TheTimelineBeginsWithTheStartMarkerAndTheMetadata) {
    const Json& timeline = session_.at("timeline");
    ASSERT_GE(timeline.size(), 2U);
    const Json marker{{"timestamp", 1700000000000}, {"type", "SessionStartMarker"}, {"chunkNumber", 0}};
    EXPECT_EQ(timeline[0], marker);
    EXPECT_EQ(timeline[1].at("type"), "MetadataCaptured");
    const auto entry = [](const char* id, const char* value) {
        return Json{{"metadataId", id}, {"metadataValue", value}};
    };
    const Json metadata{entry("SdkVersion", "1.0.0"),
                        entry("AppVersion", "4.2.0"),
                        entry("DeviceId", "6F9619FF-8B86-D011-B42D-00C04FC964FF"),
                        entry("Platform", "iOS"),
                        entry("OperatingSystem", "iOS 17.4"),
                        entry("DeviceModel", "Phone"),
                        entry("DeviceCodename", "phone14,2")};
    EXPECT_EQ(timeline[1].at("eventDetails").at("metadata"), metadata);
}

TEST_F(EndToEndCheckout, TheWindowsDimensionsComeOnceWithTheFirstFrame) {
    std::vector<Json> dimensions;
    std::ranges::copy_if(session_.at("timeline"), std::back_inserter(dimensions),
                         [](const Json& event) { return event.at("type") == "WindowDimensions"; });
    ASSERT_EQ(dimensions.size(), 1U);
    const Json expected{
        {"timestamp", 1700000000500},
        {"type", "WindowDimensions"},
        {"eventDetails", {{"windowWidthPx", 1170}, {"windowHeightPx", 2532}, {"mode", "Regular"}}},
        {"chunkNumber", 0}};
    EXPECT_EQ(dimensions[0], expected);
}

TEST_F(EndToEndCheckout, EachChunksEventsEndWithItsEndMarker) {
    for (const Json& chunk : session_.at("chunks")) {
        std::vector<Json> events;
        std::ranges::copy_if(
            session_.at("timeline"), std::back_inserter(events),
            [&chunk](const Json& event) { return event.at("chunkNumber") == chunk.at("number"); });
        ASSERT_EQ(events.size(), chunk.at("events"));
        const auto types = typesOf(events);
        EXPECT_EQ(std::ranges::count(types, "ChunkEndMarker"), 1) << chunk;
        const Json marker{{"timestamp", chunk.at("endMillis")},
                          {"type", "ChunkEndMarker"},
                          {"chunkNumber", chunk.at("number")}};
        EXPECT_EQ(events.back(), marker);
    }
}

TEST_F(EndToEndCheckout, AReaderFindsTheVideosExact) {
    const auto expected = expectedFramesOfChunks();
    for (std::size_t index = 0; index < expected.size(); ++index) {
        const ProbedVideo video = probeVideo(session_.at("chunks")[index].at("path"));
        std::vector<std::int64_t> times;
        for (int frame = 0; frame < expected[index]; ++frame) {
            times.push_back(frame * 300);
        }
        EXPECT_EQ(video.streams, 1);
        EXPECT_EQ(video.codec, "h264");
        EXPECT_EQ(video.width, 250);
        EXPECT_EQ(video.height, 500);
        EXPECT_EQ(video.timeBase, "1/600");
        EXPECT_EQ(video.times, times);
        EXPECT_DOUBLE_EQ(std::stod(video.duration), expected[index] * 0.5);
    }
}

TEST_F(EndToEndCheckout, WhatArrivesIsTheFileThatWasWritten) {
    for (const Json& chunk : session_.at("chunks")) {
        const std::string written =
            playback() + "/" + run_.sessionIds()[0] + "-" + chunk.at("number").dump() + ".mp4";
        EXPECT_EQ(readFile(written), readFile(chunk.at("path"))) << written;
    }
}

TEST_F(EndToEndCheckout, FramesShowTheAppBetweenBlackMargins) {
    for (const Json& chunk : session_.at("chunks")) {
        for (const auto& frame : decodeFrames(chunk.at("path"))) {
            EXPECT_LE(distance(pixelAt(frame, 2, 250), {0, 0, 0}), 8);
            EXPECT_LE(distance(pixelAt(frame, 247, 250), {0, 0, 0}), 8);
            const auto light = countPixels(frame, [](Rgb color) { return color.green > 128; });
            EXPECT_GT(light, 250 * 500 / 4) << "the app's pages are light";
        }
    }
}

TEST_F(EndToEndCheckout, TheWholeVideoHasThePicturesOfItsChunksAtTheirTimes) {
    const auto whole = path("whole.mp4");
    receiver_->exportVideo(run_.sessionIds()[0], whole);
    const auto joined = decodeFrames(whole);
    std::size_t at = 0;
    for (const Json& chunk : session_.at("chunks")) {
        for (const auto& frame : decodeFrames(chunk.at("path"))) {
            ASSERT_LT(at, joined.size());
            EXPECT_TRUE(std::ranges::equal(joined[at].pixels(), frame.pixels())) << "frame " << at;
            ++at;
        }
    }
    EXPECT_EQ(at, joined.size());
    const auto video = probeVideo(whole);
    for (std::size_t i = 0; i < at; ++i) {
        EXPECT_EQ(video.times.at(i), static_cast<std::int64_t>(300 * i));
    }
    EXPECT_DOUBLE_EQ(std::stod(video.duration), 0.5 * static_cast<double>(at));
}

class EndToEndTimeline : public EndToEnd {};

TEST_F(EndToEndTimeline, APlainSessionHoldsItsFourEvents) {
    const auto receiver = startReceiver();
    const auto run = play(recordingFor(3.5), receiver->origin());
    const Json session = receiver->show(run.sessionIds().at(0));
    EXPECT_THAT(typesOf(session.at("timeline")),
                ElementsAre("SessionStartMarker", "MetadataCaptured", "WindowDimensions", "ChunkEndMarker"));
    EXPECT_EQ(session.at("chunks")[0].at("frames"), 7);
    EXPECT_EQ(probeVideo(session.at("chunks")[0].at("path")).times,
              (std::vector<std::int64_t>{0, 300, 600, 900, 1200, 1500, 1800}));
}

}  // namespace

}  // namespace mireth::endtoend
