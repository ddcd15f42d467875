// A receiver that speaks https, and whom the phone trusts.
#include "endtoend/support/Certificate.hpp"
#include "endtoend/support/EndToEnd.hpp"

namespace mireth::endtoend {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// Screen reports that a paused session refuses, each with an error line.
Json sessionWithErrorLines(int count) {
    Json steps{{{"at", 0}, {"call", "startRecording"}}, {{"at", 1}, {"call", "pauseRecording"}}};
    for (int line = 0; line < count; ++line) {
        steps.push_back({{"at", 2}, {"reportScreenAppeared", "Screen"}});
    }
    steps.push_back({{"at", 4}, {"call", "stopRecording"}});
    return scenarioOf(steps);
}

class EndToEndTls : public EndToEnd {
  protected:
    /// A receiver with a certificate for these names.
    void serve(const std::vector<std::string>& hosts) {
        certificate_ = makeCertificate(path(""), hosts);
        receiver_ = startReceiver({}, {"--tls-cert", certificate_.file, "--tls-key", certificate_.key});
    }

    PhoneRun playTrusting(const Json& scenario, const std::string& seed = "0") {
        return play(scenario, receiver_->originAt("localhost"),
                    {.seed = seed, .more = {"--ca-file", certificate_.file}});
    }

    Certificate certificate_;
    std::unique_ptr<Receiver> receiver_;
};

TEST_F(EndToEndTls, ASessionIsRecorded) {
    serve({"localhost", "us-west.localhost"});
    const auto run = playTrusting(recordingFor(21));
    EXPECT_THAT(run.results(),
                ElementsAre("initializeProject success", "startRecording success", "stopRecording success"));
    EXPECT_THAT(run.errors(), IsEmpty());
    const Json session = receiver_->show(run.sessionIds().at(0));
    EXPECT_EQ(session.at("session").at("state"), "closed");
    EXPECT_EQ(session.at("session").at("frames"), 42);
}

TEST_F(EndToEndTls, ASampleOfTheErrorLinesReachesTheDataCentresLogHost) {
    serve({"localhost", "us-west.localhost"});
    const auto run = playTrusting(sessionWithErrorLines(60));
    EXPECT_THAT(run.errors(), testing::SizeIs(60));
    EXPECT_THAT(run.logged("Unexpected error while posting log"), IsEmpty());
    const Json lines = receiver_->show(run.sessionIds().at(0)).at("logLines");
    EXPECT_GT(lines.size(), 2U);
    EXPECT_LT(lines.size(), 40U);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0].at("level"), "error");
    const Json line = Json::parse(lines[0].at("message").get<std::string>());
    const Json expected{
        {"logMessage", "Can't record screen disappearance without starting the session first"},
        {"logTag", "SIGNAL"},
        {"clientSource", "vex-mobile"},
        {"clientType", "VEXMobileIOS"},
        {"clientVexVersion", "1.0.0"},
        {"deviceOsVersion", "17.4"},
        {"deviceName", "Test phone"},
        {"deviceCodename", "phone14,2"},
        {"networkType", "WIFI"},
        {"projectId", "p1"},
        {"brandDc", "US_WEST"},
        {"sessionId", run.sessionIds().at(0)}};
    EXPECT_EQ(line, expected);
    EXPECT_THAT(receiver_->looseLogLines(), IsEmpty());
}

TEST_F(EndToEndTls, TheSeedDecidesWhichLinesArePosted) {
    serve({"localhost", "us-west.localhost"});
    const auto posted = [this](const std::string& seed) {
        const auto run = playTrusting(sessionWithErrorLines(60), seed);
        return receiver_->show(run.sessionIds().at(0)).at("logLines").size();
    };
    const auto first = posted("1");
    EXPECT_EQ(first, posted("1"));
    EXPECT_TRUE(first != posted("2") || first != posted("3") || first != posted("4"));
}

TEST_F(EndToEndTls, ALogHostThatCannotBeTrustedGetsNoLinesAndTheSessionGoesOn) {
    serve({"localhost"});
    const auto run = playTrusting(sessionWithErrorLines(60));
    EXPECT_THAT(run.results(), testing::Contains("stopRecording success"));
    const auto failures = run.logged("Network request failed");
    EXPECT_THAT(failures, Not(IsEmpty()));
    EXPECT_LT(failures.size(), 40U) << "a failed post is not posted itself";
    const Json session = receiver_->show(run.sessionIds().at(0));
    EXPECT_THAT(session.at("logLines"), IsEmpty());
    EXPECT_EQ(session.at("session").at("state"), "closed");
    EXPECT_EQ(session.at("session").at("frames"), 8);
}

TEST_F(EndToEndTls, ACertificateForAnotherHostFailsTheStart) {
    serve({"elsewhere.localhost"});
    const auto run = playTrusting(recordingFor(1));
    EXPECT_THAT(run.results(),
                ElementsAre("initializeProject success", "startRecording fail", "stopRecording notStarted"));
    EXPECT_EQ(run.resultOf("startRecording").at("reason"), "Failed to start recording: Network error.");
    EXPECT_THAT(receiver_->sessions(), IsEmpty());
}

TEST_F(EndToEndTls, AnUnknownAuthorityFailsTheStart) {
    serve({"localhost", "us-west.localhost"});
    const auto run = play(recordingFor(1), receiver_->originAt("localhost"));
    EXPECT_EQ(run.resultOf("startRecording").at("reason"), "Failed to start recording: Network error.");
    EXPECT_THAT(run.logged("Network request failed"), Not(IsEmpty()));
    EXPECT_THAT(receiver_->sessions(), IsEmpty());
}

TEST_F(EndToEndTls, PlainHttpToAHostThatIsNotLoopbackIsRefused) {
    const auto run = play(recordingFor(1), "http://service.example");
    EXPECT_EQ(run.resultOf("startRecording").at("reason"), "Failed to start recording: Network error.");
}

}  // namespace

}  // namespace mireth::endtoend
