// What a hostile service, disk or host can do: a clear line and the result, nothing outside the store,
// nothing sent.
#include <gmock/gmock.h>

#include <fstream>

#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::IngestionFake;
using test::SessionHost;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

struct HostileSessionId : testing::TestWithParam<std::string> {};

TEST_P(HostileSessionId, FailsTheStartAndWritesNothing) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.create = [](const auto&) {
        const nlohmann::json body{{"status", "SUCCESS"},
                                  {"sessionInfo",
                                   {{"sessionId", GetParam()},
                                    {"sessionStartTime", "2023-11-14T22:13:20.000Z"},
                                    {"creationDataCenter", ""},
                                    {"isTestSession", false}}}};
        return IngestionFake::ok(body.dump());
    };
    EXPECT_EQ(host.start(),
              SessionStartResult::fail("The service answered with a session id that cannot be used."));
    EXPECT_EQ(host.state(), "stopped");
    host.advance(30);
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create"));
    EXPECT_FALSE(std::filesystem::exists(host.caches.path() / "mireth"));
}

INSTANTIATE_TEST_SUITE_P(Safety, HostileSessionId,
                         testing::Values("", ".", "..", "../x", "a/b", "a\\b", "a\r\nb",
                                         std::string(4096, 'a'), "s\u00e9ance", "a b", "a%2fb",
                                         std::string("a\0b", 3), "x?y", "x#y"));

struct HostileDataCentre : testing::TestWithParam<std::string> {};

TEST_P(HostileDataCentre, NeverChoosesWhereLogLinesGo) {
    SessionHost host([](auto& options) {
        options.information["KELDA_ENDPOINT_URL"] = "https://kelda.test:8443";
        options.seed = 7;
    });
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.configuration = [](const auto&) {
        const nlohmann::json body{{"srEnabled", "SR_ENABLED_FOR_MOBILE_ONLY"},
                                  {"dataCenter", GetParam()},
                                  {"samplingRate", 100},
                                  {"customSignal", nlohmann::json::array()}};
        return IngestionFake::ok(body.dump());
    };
    (void)host.start();
    for (int line = 0; line < 50; ++line) {
        host.core.log().error(LogTag::signal, "x");
    }
    host.phone().queue().drain();
    for (const auto& request : host.phone().service()->requests()) {
        if (request.url.find("WRTarrowEngine") != std::string::npos) {
            EXPECT_THAT(request.url, testing::MatchesRegex("https://[a-z0-9-]+[.]kelda[.]test:8443/.*"));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Safety, HostileDataCentre,
                         testing::Values("evil.com/", "evil/", "x@y", "#", "%2f", "a:80", "a?b", "-a", "a b",
                                         "a\r\nb", std::string(64, 'a'), "[::1]", "US_WEST"));

TEST(Safety, AJsonBombFailsTheStart) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.configuration = [](const auto&) { return IngestionFake::ok(std::string(100000, '[')); };
    EXPECT_EQ(host.start(), SessionStartResult::fail("Failed to start recording: Decoding error."));
}

TEST(Safety, ASymlinkPlantedAtTheChunksNameIsNotFollowed) {
    SessionHost host;
    host.startSession();
    host.phone().queue().drain();
    const auto target = host.caches.path() / "precious";
    std::ofstream(target) << "keep me";
    std::filesystem::create_symlink(target, host.storeDirectory() / "S1-0.mp4");
    host.advance(10);
    std::string kept;
    std::getline(std::ifstream(target), kept);
    EXPECT_EQ(kept, "keep me");
    EXPECT_EQ(host.service.chunks.size(), 1U);
    EXPECT_TRUE(std::filesystem::is_regular_file(
        std::filesystem::symlink_status(host.storeDirectory() / "S1-0.mp4")));
}

TEST(Safety, ALinkInPlaceOfTheStoresDirectoryIsRefusedAndWhatItLeadsToStays) {
    for (const char* component : {"mireth", "mireth/playback"}) {
        SessionHost host;
        const auto target = host.caches.path() / "elsewhere";
        std::filesystem::create_directories(target / "playback");
        std::ofstream(target / "precious") << "keep me";
        std::ofstream(target / "playback" / "precious") << "keep me";
        std::filesystem::create_directories((host.caches.path() / component).parent_path());
        std::filesystem::create_symlink(target, host.caches.path() / component);
        host.startSession();
        host.advance(10);
        EXPECT_TRUE(host.service.chunks.empty()) << component;
        EXPECT_TRUE(std::filesystem::exists(target / "precious")) << component;
        EXPECT_TRUE(std::filesystem::exists(target / "playback" / "precious")) << component;
        EXPECT_EQ(host.state(), "started") << component;
    }
}

TEST(Safety, ACacheThatCannotBeWrittenLosesTheChunksWithALineAndTheRecordingGoesOn) {
    SessionHost host;
    std::ofstream(host.caches.path() / "mireth") << "a file where the directory should be";
    host.startSession();
    host.advance(20);
    EXPECT_TRUE(host.service.chunks.empty());
    EXPECT_EQ(host.state(), "started");
    EXPECT_THAT(host.errors(), Contains(HasSubstr("Failed to create chunk")));
    EXPECT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
}

TEST(Safety, TheStoreAndItsFilesBelongToTheUserAlone) {
    SessionHost host;
    host.startSession();
    host.advance(10);
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(host.storeDirectory()).permissions(), perms::owner_all);
    EXPECT_EQ(std::filesystem::status(host.storeDirectory() / "S1-0.mp4").permissions(),
              perms::owner_read | perms::owner_write);
}

TEST(Safety, NothingLoggedWhilePostingALineIsPostedAgain) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    ASSERT_EQ(host.start().kind, SessionStartResult::Kind::success);
    // Every post fails and logs errors itself.
    host.service.log = [](const auto&) { return IngestionFake::failure(500); };
    (void)host.capture.take();
    for (int line = 0; line < 200; ++line) {
        host.core.log().error(LogTag::signal, "line");
    }
    host.phone().queue().drain();
    for (const auto& body : host.service.logBodies) {
        EXPECT_THAT(body, HasSubstr("%22logMessage%22:%22line%22"));
    }
    EXPECT_GT(host.service.logBodies.size(), 10U);
    EXPECT_LE(host.service.logBodies.size(), 200U);
}

TEST(Safety, ALogListenerThatThrowsDoesNoHarm) {
    SessionHost host;
    host.core.addLogListener(
        [](LogTag, LogLevel, const std::string&) { throw std::runtime_error("host bug"); });
    EXPECT_EQ(host.core.initializeProject("", "", host.window), InitializationResult::paramsRequired);
}

TEST(Safety, AHostCallbackThatThrowsInThenDoesNotEndTheLoop) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.core.startRecording(VexConfiguration(false, false)).then([](const auto&) {
        throw std::runtime_error("host bug");
    });
    host.advance(1);
    EXPECT_EQ(host.state(), "started");
}

}  // namespace
}  // namespace mireth
