// Time that passes by itself, and a thread for everything: the same session, a little less punctual.
#include "endtoend/support/EndToEnd.hpp"
#include "endtoend/support/Video.hpp"

namespace mireth::endtoend {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EndToEndRealTime : public EndToEnd {
  protected:
    const std::unique_ptr<Receiver> receiver_ = startReceiver();
};

TEST_F(EndToEndRealTime, ASessionAtTwentyTimesRealTimeArrivesWhole) {
    const auto run = playFile(exampleScenario("checkout"), receiver_->origin(), {.speed = "20"});
    ASSERT_EQ(run.ended.status, 0) << run.ended.errors;
    EXPECT_THAT(run.results(),
                ElementsAre("initializeProject success", "startRecording success", "stopRecording success"));
    EXPECT_THAT(run.errors(), IsEmpty());
    const Json session = receiver_->show(run.sessionIds().at(0));
    EXPECT_EQ(session.at("session").at("state"), "closed");
    const auto& chunks = session.at("chunks");
    ASSERT_GE(chunks.size(), 2U) << "a slow machine loses frames, but not most of them";
    for (std::size_t index = 0; index < chunks.size(); ++index) {
        EXPECT_EQ(chunks[index].at("number"), index);
        if (index + 1 < chunks.size()) {
            EXPECT_EQ(chunks[index].at("frames"), 20);
        }
        EXPECT_EQ(probeVideo(chunks[index].at("path")).times.back(),
                  (chunks[index].at("frames").get<int>() - 1) * 300);
    }
    const auto types = typesOf(session.at("timeline"));
    EXPECT_EQ(types.front(), "SessionStartMarker");
    EXPECT_EQ(types.back(), "ChunkEndMarker");
}

TEST_F(EndToEndRealTime, SessionsFollowOneAnother) {
    // Forty seconds at twenty times their speed: two real ones, in which even an instrumented encoder has
    // written the last chunk, without which the session of before is not over.
    const auto run = play(scenarioOf({{{"at", 0}, {"call", "startRecording"}, {"expect", "success"}},
                                      {{"at", 6}, {"moveToBackground", true}},
                                      {{"at", 46}, {"call", "startRecording"}, {"expect", "success"}},
                                      {{"at", 50}, {"call", "stopRecording"}, {"expect", "success"}}}),
                          receiver_->origin(), {.speed = "20"});
    ASSERT_EQ(run.ended.status, 0) << run.ended.errors;
    EXPECT_EQ(run.sessionIds().size(), 2U);
    for (const Json& session : receiver_->sessions()) {
        EXPECT_EQ(session.at("state"), "closed");
    }
}

}  // namespace

}  // namespace mireth::endtoend
