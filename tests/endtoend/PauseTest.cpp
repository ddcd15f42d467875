// A paused session goes on, but shows nothing and notes nothing.
#include "endtoend/support/EndToEnd.hpp"
#include "endtoend/support/Video.hpp"

namespace mireth::endtoend {

namespace {

using testing::ElementsAre;

class EndToEndPause : public EndToEnd {
  protected:
    void SetUp() override {
        run_ = play(scenarioOf({{{"at", 0}, {"call", "startRecording"}, {"expect", "success"}},
                                {{"at", 3.2}, {"call", "pauseRecording"}, {"expect", "success"}},
                                {{"at", 4}, {"reportScreenAppeared", "Secret"}},
                                {{"at", 5}, {"logError", "secret"}},
                                {{"at", 6.2}, {"call", "resumeRecording"}, {"expect", "success"}},
                                {{"at", 7}, {"reportScreenAppeared", "Open"}},
                                {{"at", 10.1}, {"call", "stopRecording"}, {"expect", "success"}}}),
                    receiver_->origin());
        ASSERT_EQ(run_.ended.status, 0) << run_.ended.errors;
        session_ = receiver_->show(run_.sessionIds().at(0));
    }

    const std::unique_ptr<Receiver> receiver_ = startReceiver();
    PhoneRun run_;
    Json session_;
};

TEST_F(EndToEndPause, FramesAreBlackAndKeepTheirTimes) {
    ASSERT_EQ(session_.at("chunks").size(), 1U);
    const auto frames = decodeFrames(session_.at("chunks")[0].at("path"));
    ASSERT_EQ(frames.size(), 20U);
    for (std::size_t index = 0; index < frames.size(); ++index) {
        const double takenAt = 0.5 * static_cast<double>(index + 1);
        const bool paused = takenAt > 3.2 && takenAt < 6.2;
        const auto lit = findPixel(frames[index], [](Rgb color) { return distance(color, {0, 0, 0}) > 12; });
        EXPECT_EQ(lit.has_value(), !paused) << "frame " << index << (lit ? ", a pixel is lit" : "");
    }
    EXPECT_EQ(probeVideo(session_.at("chunks")[0].at("path")).duration, "10.000000");
}

TEST_F(EndToEndPause, WhatIsReportedMeanwhileIsRefused) {
    EXPECT_THAT(run_.errors(),
                testing::Contains("Can't record screen disappearance without starting the session first"));
    EXPECT_THAT(run_.errors(),
                testing::Contains("Can't record log error without starting the session first"));
    EXPECT_THAT(typesOf(session_.at("timeline")),
                ElementsAre("SessionStartMarker", "MetadataCaptured", "WindowDimensions", "ScreenChange",
                            "ChunkEndMarker"));
    EXPECT_EQ(session_.at("timeline")[3].at("eventDetails").at("screenHierarchy")[0].at("screenName"),
              "Open");
}

}  // namespace

}  // namespace mireth::endtoend
