// What a project's configuration and the service's refusals do to a session.
#include "endtoend/support/EndToEnd.hpp"
#include "endtoend/support/ScriptedService.hpp"

namespace mireth::endtoend {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EndToEndProject : public EndToEnd {
  protected:
    /// One start against a receiver with this configuration file.
    void start(const Json& configuration) {
        const auto receiver = startReceiver(configuration);
        run_ = play(recordingFor(1), receiver->origin());
        result_ = run_.resultOf("startRecording");
        sessions_ = receiver->sessions();
    }

    PhoneRun run_;
    Json result_;
    std::vector<Json> sessions_;
};

TEST_F(EndToEndProject, IsRecordedOnlyWhenItIsEnabledForMobile) {
    for (const auto* enabled : {"SR_ENABLED_FOR_MOBILE_ONLY", "SR_ENABLED_FOR_WEB_AND_MOBILE"}) {
        start({{"default", {{"srEnabled", enabled}}}});
        EXPECT_EQ(result_.at("result"), "success") << enabled;
        EXPECT_EQ(sessions_.size(), 1U) << enabled;
    }
    for (const Json& enabled :
         {Json("SR_DISABLED"), Json("SR_UNKNOWN"), Json("SR_ENABLED_FOR_WEB_ONLY"), Json()}) {
        start({{"default", {{"srEnabled", enabled}}}});
        EXPECT_EQ(result_.at("result"), "sessionReplayNotEnabled") << enabled;
        EXPECT_THAT(sessions_, IsEmpty()) << enabled;
        EXPECT_THAT(run_.errors(), IsEmpty()) << enabled;
        EXPECT_EQ(run_.end().at("state"), "stopped");
    }
}

TEST_F(EndToEndProject, IsNeverRecordedAtASamplingRateBelowOne) {
    for (const double rate : {0.0, 0.5}) {
        start({{"default", {{"samplingRate", rate}}}});
        EXPECT_EQ(result_.at("result"), "samplingRejected") << rate;
        EXPECT_THAT(sessions_, IsEmpty()) << rate;
        EXPECT_EQ(run_.end().at("state"), "stopped");
    }
}

TEST_F(EndToEndProject, ThatTheServiceDoesNotKnowIsNotRecorded) {
    start({{"projects", {{{"brandId", "b2"}, {"projectId", "p2"}}}}});
    EXPECT_EQ(result_.at("result"), "fail");
    EXPECT_EQ(result_.at("reason"), "Failed to start recording: Request failed.");
    EXPECT_THAT(run_.errors(),
                ElementsAre("Request failed.", "Unexpected error while getting SR configuration",
                            "Failed to initialize a session.", "Failed to start recording."));
    EXPECT_THAT(sessions_, IsEmpty());
}

TEST_F(EndToEndProject, OfAnotherBrandHasItsOwnSettings) {
    const auto receiver = startReceiver({{"default", {{"srEnabled", "SR_DISABLED"}}},
                                         {"projects",
                                          {{{"brandId", "b1"},
                                            {"projectId", "p1"},
                                            {"srEnabled", "SR_ENABLED_FOR_MOBILE_ONLY"},
                                            {"dataCenter", "EU_CENTRAL.x"}}}}});
    auto scenario = recordingFor(1);
    EXPECT_EQ(play(scenario, receiver->origin()).resultOf("startRecording").at("result"), "success");
    EXPECT_EQ(receiver->sessions().at(0).at("brandDc"), "EU_CENTRAL")
        << "only the first label is the data centre";
    scenario["project"]["brandId"] = "b2";
    EXPECT_EQ(play(scenario, receiver->origin()).resultOf("startRecording").at("result"),
              "sessionReplayNotEnabled");
}

TEST_F(EndToEndProject, WithoutADataCentreGetsNoSession) {
    const ScriptedService service({{Request::configuration, configuredFor("")}});
    const auto result = play(recordingFor(1), service.origin()).resultOf("startRecording");
    EXPECT_EQ(result.at("result"), "fail");
    EXPECT_EQ(result.at("reason"), "Brand DC is not present.");
    EXPECT_EQ(service.count(Request::create), 0U);
}

TEST_F(EndToEndProject, WhoseUploadsAreThrottledLosesItsSession) {
    const auto receiver =
        startReceiver({{"default", {{"uploadRate", {{"perSecond", 0.001}, {"burst", 1}}}}}});
    const auto run = play(recordingFor(60), receiver->origin());
    EXPECT_THAT(run.results(), ElementsAre("initializeProject success", "startRecording success",
                                           "stopRecording notStarted"));
    const auto skipped = run.logged("Single chunk skipped: Error during chunk push.");
    ASSERT_THAT(skipped, testing::Not(IsEmpty()));
    EXPECT_NE(skipped[0].find("THROTTLED"), std::string::npos) << skipped[0];
    EXPECT_NE(skipped[0].find("transactionId"), std::string::npos) << skipped[0];
    const Json session = receiver->show(run.sessionIds().at(0));
    EXPECT_EQ(session.at("session").at("state"), "closed");
    ASSERT_EQ(session.at("chunks").size(), 1U);
    EXPECT_EQ(session.at("chunks")[0].at("number"), 0);
    EXPECT_EQ(run.end().at("state"), "stopped");
}

TEST_F(EndToEndProject, WhoseCreationIsRefusedIsToldTheStatus) {
    const ScriptedService service(
        {{Request::create,
          okWith(R"({"status":"THROTTLED","sessionInfo":{"sessionId":"","sessionStartTime":"",)"
                 R"("creationDataCenter":"","isTestSession":false}})")}});
    const auto run = play(recordingFor(1), service.origin());
    const auto result = run.resultOf("startRecording");
    EXPECT_EQ(result.at("result"), "fail");
    EXPECT_EQ(result.at("reason"), "Request to API failed. Response status: THROTTLED");
    EXPECT_THAT(run.errors(), ElementsAre("Failed to initialize mireth SDK."));
}

}  // namespace

}  // namespace mireth::endtoend
