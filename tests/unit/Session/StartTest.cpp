#include <gmock/gmock.h>

#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::IngestionFake;
using test::SessionHost;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using Kind = SessionStartResult::Kind;

TEST(Start, SuccessNamesTheSession) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    const auto result = host.start();
    EXPECT_EQ(result, SessionStartResult::success("Successfully created session: S1", {"S1", 1700000000000}));
    EXPECT_EQ(host.state(), "started");
    EXPECT_TRUE(host.core.hasActiveSession());
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create"));
}

TEST(Start, IsActiveFromTheCallOn) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    const auto starting = host.core.startRecording(VexConfiguration(false, false));
    EXPECT_EQ(host.state(), "starting");
    EXPECT_TRUE(host.core.hasActiveSession());
    EXPECT_EQ(host.await(starting).kind, Kind::success);
}

TEST(Start, WhileTheFirstFetchesTheConfigurationASecondAnswersAlreadyStarted) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    const auto first = host.core.startRecording(VexConfiguration(false, false));
    const auto second = host.core.startRecording(VexConfiguration(false, false));
    EXPECT_EQ(host.await(second).kind, Kind::alreadyStarted);
    EXPECT_EQ(host.await(first).kind, Kind::success);
    EXPECT_EQ(host.service.created, 1);
}

TEST(Start, WhileStartedOrPausedAnswersAlreadyStarted) {
    SessionHost host;
    host.startSession();
    EXPECT_EQ(host.start().kind, Kind::alreadyStarted);
    ASSERT_EQ(host.core.pauseRecording(), SessionPauseResult::success);
    EXPECT_EQ(host.start().kind, Kind::alreadyStarted);
    EXPECT_EQ(host.state(), "paused");
}

TEST(Start, OnATabletIsRefusedWithoutARequest) {
    SessionHost host([](auto& options) { options.device.idiom = platform::UserInterfaceIdiom::pad; });
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    EXPECT_EQ(host.start().kind, Kind::unsupportedDevice);
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_TRUE(host.service.calls.empty());
    EXPECT_THAT(host.errors(), ElementsAre("Device is not supported. [\"deviceType\": \"other\"]"));
}

TEST(Start, TheDeviceIsCheckedBeforeTheState) {
    SessionHost host([](auto& options) { options.device.idiom = platform::UserInterfaceIdiom::desktop; });
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.core.orchestrator()->setState({SessionState::Started{{"S", 1}}});
    EXPECT_EQ(host.start().kind, Kind::unsupportedDevice);
    EXPECT_THAT(host.errorMessages(), ElementsAre("Device is not supported."));
}

TEST(Start, AutomaticTrackingIsSwitchedOnBeforeAnythingIsFetched) {
    SessionHost host({}, {LogTag::lifecycle, LogTag::navigation, LogTag::network});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    (void)host.capture.take();
    (void)host.start(VexConfiguration(false, true));
    const auto lines = host.texts(LogLevel::info);
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines[0], "Enabling automatic screen change detection.");
    EXPECT_EQ(lines[1], "Automatic screen change detection is ON.");
    EXPECT_EQ(lines[2], "Initializing RemoteSessionManager");
}

TEST(Start, AutomaticTrackingIsSwitchedOnWhileTheSessionIsStillStopped) {
    SessionHost host({}, {LogTag::lifecycle, LogTag::navigation});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    std::vector<std::string> states;
    host.core.addLogListener([&](LogTag, LogLevel, const std::string& line) {
        if (line == "Enabling automatic screen change detection." ||
            line == "Automatic screen change detection is ON.") {
            states.push_back(host.state());
        }
    });
    EXPECT_EQ(host.start(VexConfiguration(false, true)).kind, Kind::success);
    EXPECT_THAT(states, ElementsAre("stopped", "stopped"));
}

TEST(Start, WithoutAutomaticTrackingNothingIsSwitchedOn) {
    SessionHost host({}, {LogTag::lifecycle, LogTag::navigation});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    (void)host.start(VexConfiguration(false, false));
    EXPECT_THAT(host.texts(LogLevel::info), Not(Contains("Enabling automatic screen change detection.")));
}

TEST(Start, AConfigurationThatCannotBeHadFailsWithItsReason) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.configuration = [](const auto&) { return IngestionFake::failure(503); };
    EXPECT_EQ(host.start(), SessionStartResult::fail("Failed to start recording: Request failed."));
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_THAT(host.errors(), Contains("Failed to start recording. [\"reason\": \"Request failed.\"]"));
}

TEST(Start, AfterAFailureAnotherStartMaySucceed) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    const auto works = host.service.configuration;
    host.service.configuration = [](const auto&) { return IngestionFake::unreachable(); };
    EXPECT_EQ(host.start(), SessionStartResult::fail("Failed to start recording: Network error."));
    EXPECT_THAT(host.errorMessages(), Contains("Failed to start recording."));
    host.service.configuration = works;
    EXPECT_EQ(host.start().kind, Kind::success);
    EXPECT_THAT(host.errorMessages(), Each("Unexpected error while posting log"))
        << "of the failure, whose lines find no data centre yet";
}

TEST(Start, AProjectForTheWebOnlyIsNotEnabledAndNothingIsCreated) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.enablement = "SR_ENABLED_FOR_WEB_ONLY";
    EXPECT_EQ(host.start().kind, Kind::sessionReplayNotEnabled);
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_THAT(host.service.calls, ElementsAre("configuration"));
}

TEST(Start, ASamplingRateOfZeroRejectsAndNothingIsCreated) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.samplingRate = 0;
    EXPECT_EQ(host.start().kind, Kind::samplingRejected);
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_THAT(host.service.calls, ElementsAre("configuration"));
}

TEST(Start, ARefusedCreationFailsWithTheStatus) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.create = [](const auto&) {
        return IngestionFake::ok(
            R"({"status":"THROTTLED","sessionInfo":{"sessionId":"","sessionStartTime":"",)"
            R"("creationDataCenter":"","isTestSession":false}})");
    };
    EXPECT_EQ(host.start(), SessionStartResult::fail("Request to API failed. Response status: THROTTLED"));
    EXPECT_THAT(host.errors(),
                ElementsAre("Failed to initialize mireth SDK. [\"statusCode\": \"THROTTLED\"]"));
    EXPECT_EQ(host.state(), "stopped");
}

TEST(Start, AStartTimeWithoutAFractionFailsWithoutAReason) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.create = [](const auto&) {
        return IngestionFake::ok(R"({"status":"SUCCESS","sessionInfo":{"sessionId":"S1",)"
                                 R"("sessionStartTime":"2023-11-14T22:13:20Z","creationDataCenter":"",)"
                                 R"("isTestSession":false}})");
    };
    EXPECT_EQ(host.start(), SessionStartResult::fail(std::nullopt));
}

TEST(Start, TheResultIsLogged) {
    SessionHost host({}, {LogTag::lifecycle});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.samplingRate = 0;
    (void)host.start();
    EXPECT_THAT(host.texts(LogLevel::info),
                Contains("Vex session start result. [\"result\": \"samplingRejected\"]"));
}

TEST(Start, ASuccessIsLoggedWithTheSession) {
    SessionHost host({}, {LogTag::lifecycle});
    host.startSession();
    EXPECT_THAT(host.texts(LogLevel::info),
                Contains("Vex session start result. [\"result\": \"success(sessionId: S1, "
                         "sessionStartTimeMillis: 1700000000000)\"]"));
}

TEST(Start, AFailedCreationIsLoggedWithItsReason) {
    SessionHost host({}, {LogTag::lifecycle});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.create = [](const auto&) { return IngestionFake::unreachable(); };
    EXPECT_EQ(host.start(), SessionStartResult::fail("Network error."));
    EXPECT_THAT(host.texts(LogLevel::info),
                Contains("Vex session start result. [\"result\": \"fail(Network error.)\"]"));
}

TEST(Start, AConfigurationThatCannotBeHadLeavesNothingThatTheBackgroundCouldEnd) {
    SessionHost host({}, {LogTag::lifecycle});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.configuration = [](const auto&) { return IngestionFake::unreachable(); };
    ASSERT_EQ(host.start().kind, Kind::fail);
    // What the posting of the failure's lines has to say is not looked at.
    host.phone().queue().drain();
    (void)host.capture.take();
    host.phone().application().moveToBackground();
    host.advance(1);
    EXPECT_TRUE(host.capture.take().empty());
}

TEST(Start, ARefusedCreationLeavesNothingThatTheBackgroundCouldEnd) {
    SessionHost host({}, {LogTag::lifecycle});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.samplingRate = 0;
    ASSERT_EQ(host.start().kind, Kind::samplingRejected);
    (void)host.capture.take();
    host.phone().application().moveToBackground();
    host.advance(1);
    EXPECT_TRUE(host.capture.take().empty());
    host.service.samplingRate = 100;
    EXPECT_EQ(host.start().kind, Kind::success);
}

TEST(Start, EverySessionBeginsAtChunkZeroWithAnEmptyStore) {
    SessionHost host;
    host.startSession();
    host.advance(11);
    ASSERT_EQ(host.service.chunks.size(), 1U);
    (void)host.stop();
    EXPECT_FALSE(std::filesystem::is_empty(host.storeDirectory()));
    ASSERT_EQ(host.start().kind, Kind::success);
    host.phone().queue().drain();
    EXPECT_TRUE(std::filesystem::is_empty(host.storeDirectory()));
    host.advance(10);
    EXPECT_EQ(host.service.chunks.back().info["chunkNumber"], 0);
    EXPECT_EQ(host.service.chunks.back().info["sessionId"], "S2");
}

TEST(Start, TheCreateRequestCarriesTheFirstLabelOfTheDataCentre) {
    SessionHost host;
    host.startSession();
    const auto requests = host.phone().service()->requests();
    EXPECT_EQ(requests[1].body,
              R"({"brandId":"b1","brandDc":"us-west","projectId":"p1","isTestSession":false})");
}

}  // namespace
}  // namespace mireth
