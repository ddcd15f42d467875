// The app goes to the background, which ends the session.
#include "endtoend/support/EndToEnd.hpp"

namespace mireth::endtoend {

namespace {

using testing::ElementsAre;

class EndToEndBackground : public EndToEnd {
  protected:
    const std::unique_ptr<Receiver> receiver_ = startReceiver();
};

TEST_F(EndToEndBackground, TheMoveStopsTheSessionAndClosesIt) {
    const auto run = play(scenarioOf({{{"at", 0}, {"call", "startRecording"}, {"expect", "success"}},
                                      {{"at", 12.2}, {"moveToBackground", true}},
                                      {{"at", 20}, {"call", "stopRecording"}, {"expect", "notStarted"}}}),
                          receiver_->origin(), {.more = {"--allow-tags", "lifecycle"}});
    ASSERT_EQ(run.ended.status, 0) << run.ended.errors;
    EXPECT_EQ(run.logged("App moved to the background. Session is closed").size(), 1U);
    const Json session = receiver_->show(run.sessionIds().at(0));
    EXPECT_EQ(session.at("session").at("state"), "closed");
    ASSERT_EQ(session.at("chunks").size(), 2U);
    EXPECT_EQ(session.at("chunks")[1].at("frames"), 4);
    EXPECT_EQ(session.at("chunks")[1].at("endMillis"), 1700000012200);
}

TEST_F(EndToEndBackground, ALaterStartMakesANewSessionOfItsOwn) {
    const auto run = playFile(exampleScenario("background"), receiver_->origin());
    ASSERT_EQ(run.ended.status, 0) << run.ended.errors;
    ASSERT_EQ(run.sessionIds().size(), 2U);
    for (const auto& id : run.sessionIds()) {
        const Json session = receiver_->show(id);
        EXPECT_EQ(session.at("session").at("state"), "closed") << id;
        ASSERT_EQ(session.at("chunks").size(), 1U) << id;
        EXPECT_EQ(session.at("chunks")[0].at("number"), 0) << id;
        EXPECT_THAT(typesOf(session.at("timeline")), ElementsAre("SessionStartMarker", "MetadataCaptured",
                                                                 "WindowDimensions", "ChunkEndMarker"))
            << id;
    }
    EXPECT_EQ(receiver_->show(run.sessionIds()[0]).at("session").at("frames"), 12);
    EXPECT_EQ(receiver_->show(run.sessionIds()[1]).at("session").at("frames"), 8);
}

}  // namespace

}  // namespace mireth::endtoend
