// What a hostile service, disk or host can do: a clear line and the result, nothing outside the store,
// nothing sent.
#include <gmock/gmock.h>
#include <unistd.h>

#include <fstream>

#include "support/PostedLines.hpp"
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
    EXPECT_THAT(host.errorMessages(), ElementsAre("API request for creating session failed."));
    EXPECT_EQ(host.state(), "stopped");
    host.advance(30);
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create"));
    EXPECT_FALSE(std::filesystem::exists(host.caches.path() / "mireth"));
}

INSTANTIATE_TEST_SUITE_P(Safety, HostileSessionId,
                         testing::Values("", ".", "..", "../x", "a/b", "a\\b", "a\r\nb",
                                         std::string(4096, 'a'), "s\u00e9ance", "a b", "a%2fb",
                                         std::string("a\0b", 3), "x?y", "x#y"));

/// Starts with the data centre, and counts the log lines that reach the service from then on; each must go to
/// a host below the configured one.
std::size_t linesPostedWith(const std::string& dataCentre) {
    SessionHost host(
        [](auto& options) { options.information["KELDA_ENDPOINT_URL"] = "https://kelda.test:8443"; }, {},
        SessionHost::postEveryLine);
    EXPECT_EQ(host.initialize(), InitializationResult::success);
    host.service.configuration = [&dataCentre](const auto&) {
        const nlohmann::json body{{"srEnabled", "SR_ENABLED_FOR_MOBILE_ONLY"},
                                  {"dataCenter", dataCentre},
                                  {"samplingRate", 100},
                                  {"customSignal", nlohmann::json::array()}};
        return IngestionFake::ok(body.dump());
    };
    (void)host.start();
    for (int line = 0; line < 5; ++line) {
        host.core.log().error(LogTag::signal, "x");
    }
    host.phone().queue().drain();
    EXPECT_THAT(host.errors(), Contains("x").Times(5));
    for (const auto& request : host.phone().service()->requests()) {
        if (request.url.find("WRTarrowEngine") != std::string::npos) {
            EXPECT_THAT(request.url, testing::MatchesRegex("https://[a-z0-9-]+[.]kelda[.]test:8443/.*"));
        }
    }
    return host.service.logBodies.size();
}

struct HostileDataCentre : testing::TestWithParam<std::string> {};

TEST_P(HostileDataCentre, NeverChoosesWhereLogLinesGo) {
    EXPECT_EQ(linesPostedWith(GetParam()), 0U);
}

INSTANTIATE_TEST_SUITE_P(Safety, HostileDataCentre,
                         testing::Values("evil/", "x@y", "#", "%2f", "a:80", "a?b", "-a", "a b", "a\r\nb",
                                         std::string(64, 'a'), "[::1]"));

struct HarmlessDataCentre : testing::TestWithParam<std::string> {};

TEST_P(HarmlessDataCentre, IsWhereEveryLogLineGoes) {
    EXPECT_EQ(linesPostedWith(GetParam()), 5U);
}

// Of a host name only the first label is taken.
INSTANTIATE_TEST_SUITE_P(Safety, HarmlessDataCentre,
                         testing::Values("US_WEST", "us-west.example", "evil.com/"));

TEST(Safety, AJsonBombFailsTheStart) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.configuration = [](const auto&) { return IngestionFake::ok(std::string(100000, '[')); };
    EXPECT_EQ(host.start(), SessionStartResult::fail("Failed to start recording: Decoding error."));
    EXPECT_THAT(host.errorMessages(),
                ElementsAre("JSON decoding failed", "Unexpected error while getting SR configuration",
                            "Failed to initialize a session.", "Failed to start recording."));
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

/// What a session logs that has no store: at the start, and at the end of its first chunk.
const auto storeRefused = ElementsAre("Failed to retrieve chunk files to delete", "Failed to create chunk",
                                      "Failed to save video chunk");

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
        EXPECT_THAT(host.errorMessages(), storeRefused) << component;
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

TEST(Safety, AStoreThatOthersCouldReadBecomesTheUsersAlone) {
    SessionHost host;
    std::filesystem::create_directories(host.storeDirectory());
    for (const auto& directory : {host.storeDirectory().parent_path(), host.storeDirectory()}) {
        std::filesystem::permissions(directory, std::filesystem::perms::all);
    }
    host.startSession();
    host.advance(10);
    EXPECT_EQ(host.service.chunks.size(), 1U);
    for (const auto& directory : {host.storeDirectory().parent_path(), host.storeDirectory()}) {
        EXPECT_EQ(std::filesystem::status(directory).permissions(), std::filesystem::perms::owner_all);
    }
}

TEST(Safety, AStoreOfAnotherUserIsRefusedAndLeftAlone) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give a directory away";
    }
    for (const char* component : {"mireth", "mireth/playback"}) {
        SessionHost host;
        std::filesystem::create_directories(host.storeDirectory());
        std::ofstream(host.storeDirectory() / "S1-0.mp4") << "keep me";
        constexpr uid_t nobody = 65534;
        ASSERT_EQ(chown((host.caches.path() / component).c_str(), nobody, nobody), 0);
        host.startSession();
        host.advance(10);
        EXPECT_TRUE(host.service.chunks.empty()) << component;
        EXPECT_TRUE(std::filesystem::exists(host.storeDirectory() / "S1-0.mp4")) << component;
        EXPECT_EQ(host.state(), "started") << component;
        EXPECT_THAT(host.errorMessages(), storeRefused) << component;
    }
}

TEST(Safety, NothingLoggedWhilePostingALineIsPostedAgain) {
    SessionHost host({}, {}, SessionHost::postEveryLine);
    host.startSession();
    // Every post fails and logs errors itself.
    host.service.log = [](const auto&) { return IngestionFake::failure(500); };
    for (int line = 0; line < 3; ++line) {
        host.core.log().error(LogTag::signal, "line");
    }
    host.phone().queue().drain();
    EXPECT_THAT(test::postedLines(host.service.logBodies),
                ElementsAre("SIGNAL line", "SIGNAL line", "SIGNAL line"));
    const auto messages = host.errorMessages();
    for (const char* message : {"line", "Request failed.", "Unexpected error while posting log"}) {
        EXPECT_THAT(messages, Contains(message).Times(3));
    }
    EXPECT_THAT(messages, testing::SizeIs(9));
}

TEST(Safety, AListenerThatReportsEveryFailedPostAsAnErrorCausesNoOther) {
    SessionHost host({}, {}, SessionHost::postEveryLine);
    host.startSession();
    ASSERT_EQ(host.core.pauseRecording(), SessionPauseResult::success);
    host.service.log = [](const auto&) { return IngestionFake::failure(500); };
    constexpr int enough = 30;
    int reports = 0;
    host.core.addLogListener([&](LogTag, LogLevel, const std::string&) {
        if (++reports <= enough) {
            host.core.logError("reported");
        }
    });
    host.core.log().error(LogTag::signal, "line");
    // What is reported on another thread is refused on main, later.
    host.advance(1);
    EXPECT_THAT(test::postedLines(host.service.logBodies), ElementsAre("SIGNAL line"));
    EXPECT_THAT(host.errorMessages(),
                ElementsAre("line", "Request failed.", "Unexpected error while posting log"));
}

TEST(Safety, ALogListenerThatThrowsDoesNoHarm) {
    SessionHost host;
    host.core.addLogListener(
        [](LogTag, LogLevel, const std::string&) { throw std::runtime_error("host bug"); });
    EXPECT_EQ(host.core.initializeProject("", "", host.window), InitializationResult::paramsRequired);
    EXPECT_THAT(host.errors(), ElementsAre("Can't initialize. Both brandId and projectId are required."));
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
