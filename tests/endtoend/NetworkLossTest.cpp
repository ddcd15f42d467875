// The network goes away for a while.
#include <filesystem>

#include "endtoend/support/EndToEnd.hpp"

namespace mireth::endtoend {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EndToEndNetworkLoss : public EndToEnd {
  protected:
    void SetUp() override {
        // Gone while chunks 0 and 1 end, back before chunk 2 does.
        run_ = play(scenarioOf({{{"at", 0}, {"call", "startRecording"}, {"expect", "success"}},
                                {{"at", 5}, {"network", "none"}},
                                {{"at", 6}, {"reportScreenAppeared", "Lost"}},
                                {{"at", 25}, {"network", "cellular"}},
                                {{"at", 26}, {"reportScreenAppeared", "Found"}},
                                {{"at", 33}, {"call", "stopRecording"}, {"expect", "success"}}}),
                    receiver_->origin(), {.more = {"--allow-tags", "all"}});
        ASSERT_EQ(run_.ended.status, 0) << run_.ended.errors;
        session_ = receiver_->show(run_.sessionIds().at(0));
    }

    const std::unique_ptr<Receiver> receiver_ = startReceiver();
    PhoneRun run_;
    Json session_;
};

TEST_F(EndToEndNetworkLoss, ChunksThatEndWithoutANetworkAreSkippedAndNumbersGoOn) {
    ASSERT_EQ(session_.at("chunks").size(), 2U);
    EXPECT_EQ(session_.at("chunks")[0].at("number"), 2);
    EXPECT_EQ(session_.at("chunks")[0].at("frames"), 20);
    EXPECT_EQ(session_.at("chunks")[1].at("number"), 3);
    EXPECT_EQ(session_.at("chunks")[1].at("frames"), 6);
    EXPECT_EQ(run_.logged("Canceling buffer chunk push, network unavailable").size(), 2U);
    EXPECT_THAT(run_.errors(), IsEmpty());
    EXPECT_EQ(session_.at("session").at("state"), "closed");
}

TEST_F(EndToEndNetworkLoss, EventsOfASkippedChunkDoNotTurnUpInALaterOne) {
    EXPECT_THAT(typesOf(session_.at("timeline")),
                ElementsAre("ScreenChange", "ChunkEndMarker", "ChunkEndMarker"));
    EXPECT_EQ(session_.at("timeline")[0].at("eventDetails").at("screenHierarchy")[0].at("screenName"),
              "Found");
}

TEST_F(EndToEndNetworkLoss, ASkippedChunkStaysInTheStoreUntilTheNextSession) {
    const auto file = [this](const std::string& id, int number) {
        return playback() + "/" + id + "-" + std::to_string(number) + ".mp4";
    };
    const std::string id = run_.sessionIds()[0];
    EXPECT_TRUE(std::filesystem::exists(file(id, 0)));
    EXPECT_TRUE(std::filesystem::exists(file(id, 1)));
    const auto next = play(recordingFor(1), receiver_->origin());
    EXPECT_FALSE(std::filesystem::exists(file(id, 0)));
    EXPECT_FALSE(std::filesystem::exists(file(id, 1)));
    EXPECT_TRUE(std::filesystem::exists(file(next.sessionIds().at(0), 0)));
}

class EndToEndNoNetwork : public EndToEnd {};

TEST_F(EndToEndNoNetwork, ASessionWithoutANetworkKeepsItsChunksToItself) {
    const auto receiver = startReceiver();
    auto scenario = recordingFor(25);
    scenario["network"] = "none";
    const auto run = play(scenario, receiver->origin());
    EXPECT_EQ(run.ended.status, 0);
    const Json session = receiver->show(run.sessionIds().at(0));
    EXPECT_THAT(session.at("chunks"), IsEmpty());
    EXPECT_EQ(session.at("session").at("state"), "closed");
}

}  // namespace

}  // namespace mireth::endtoend
