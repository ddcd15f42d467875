// The error lines of the entry point, the orchestrator and the session manager: their tags, and that each is
// posted to the service as well.
#include <gmock/gmock.h>

#include "support/PostedLines.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::IngestionFake;
using test::SessionHost;
using testing::Contains;

/// Stands for the remote log, which forgets lines as long as it knows no data centre.
struct Poster final : RemoteLogPoster {
    void post(LogLevel level, LogTag tag, const std::string& message, const AdditionalInfo&,
              bool ignoreSampling) override {
        EXPECT_EQ(level, LogLevel::error);
        EXPECT_FALSE(ignoreSampling);
        posted.push_back(std::string(key(tag)) + " " + message);
    }
    std::vector<std::string> posted;
};

/// One error line, and what brings it about.
struct ErrorLine {
    std::string name;
    LogTag tag;
    std::string message;
    std::function<void(SessionHost&)> cause;

    friend std::ostream& operator<<(std::ostream& out, const ErrorLine& line) { return out << line.name; }
};

void initialized(SessionHost& host) {
    ASSERT_EQ(host.initialize(), InitializationResult::success);
}

ErrorLine refusedAnswer(std::string name, std::string message, IngestionFake::Answer IngestionFake::* answer,
                        const std::string& body) {
    return {std::move(name), LogTag::network, std::move(message), [answer, body](SessionHost& host) {
                initialized(host);
                host.service.*answer = [body](const auto&) {
                    return body.empty() ? IngestionFake::unreachable() : IngestionFake::ok(body);
                };
                (void)host.start();
                (void)host.stop();
            }};
}

std::vector<ErrorLine> entryPointLines() {
    return {
        {"StartWithoutAProject", LogTag::lifecycle, "Unable to start recording. Orchestrator is nil",
         [](SessionHost& host) { (void)host.start(); }},
        {"LogErrorWithoutAProject", LogTag::signal, "Can't log error. Not initialized.",
         [](SessionHost& host) { host.core.logError("x"); }},
        {"ScreenWithoutAProject", LogTag::signal, "Can't record screen change. Not initialized.",
         [](SessionHost& host) {
             host.core.reportScreenChange({{"Home"}}, ScreenChangeType::appear, ScreenDetectionType::manual);
         }},
        {"EmptyIdentifier", LogTag::lifecycle, "Can't initialize. Both brandId and projectId are required.",
         [](SessionHost& host) { (void)host.core.initializeProject("", "p", host.window); }},
        {"NoWindow", LogTag::lifecycle,
         "Cannot get key window, pass it explicitly to the initializeProject method.",
         [](SessionHost& host) {
             host.phone().application().setKeyWindow(nullptr);
             (void)host.core.initializeProject("b", "p", nullptr);
         }},
    };
}

std::vector<ErrorLine> orchestratorLines() {
    return {
        {"StartThatFails", LogTag::lifecycle, "Failed to start recording.",
         [](SessionHost& host) {
             initialized(host);
             host.service.configuration = [](const auto&) { return IngestionFake::unreachable(); };
             (void)host.start();
         }},
        {"LogErrorWithoutASession", LogTag::signal,
         "Can't record log error without starting the session first",
         [](SessionHost& host) {
             initialized(host);
             host.core.logError("x");
         }},
        {"ScreenWithoutASession", LogTag::signal,
         "Can't record screen disappearance without starting the session first",
         [](SessionHost& host) {
             initialized(host);
             host.core.reportScreenChange({{"Home"}}, ScreenChangeType::appear, ScreenDetectionType::manual);
         }},
        {"EmptyHierarchy", LogTag::signal, "Screen hierarchy cannot be empty",
         [](SessionHost& host) {
             host.startSession();
             host.core.reportScreenChange({}, ScreenChangeType::appear, ScreenDetectionType::manual);
         }},
        {"SignalWithoutASession", LogTag::lifecycle, "Can't record signal without starting a session",
         [](SessionHost& host) {
             initialized(host);
             host.core.orchestrator()->backdoorRecordSignal(SessionSignalType::rageTap, {1, 2});
         }},
    };
}

std::vector<ErrorLine> sessionManagerLines() {
    return {
        refusedAnswer("NoConfiguration", "Failed to initialize a session.", &IngestionFake::configuration,
                      ""),
        refusedAnswer("NoCreation", "API request for creating session failed.", &IngestionFake::create, ""),
        refusedAnswer("RefusedCreation", "Failed to initialize mireth SDK.", &IngestionFake::create,
                      R"({"status":"ERROR","sessionInfo":{"sessionId":"","sessionStartTime":"",)"
                      R"("creationDataCenter":"","isTestSession":false}})"),
        refusedAnswer("NoClose", "API request for closing session failed.", &IngestionFake::close, ""),
    };
}

struct ErrorLines : testing::TestWithParam<ErrorLine> {};

TEST_P(ErrorLines, HaveTheirTagAndArePosted) {
    const auto& [name, tag, message, cause] = GetParam();
    SessionHost host;
    const auto poster = std::make_shared<Poster>();
    host.capture.log().setRemotePoster(poster);
    cause(host);
    std::vector<std::string> logged;
    for (const auto& line : host.capture.take()) {
        EXPECT_EQ(line.level, LogLevel::error);
        logged.push_back(std::string(key(line.tag)) + " " + line.text.substr(0, line.text.find(" [\"")));
    }
    const std::string expected = std::string(key(tag)) + " " + message;
    EXPECT_THAT(logged, Contains(expected).Times(1));
    EXPECT_THAT(poster->posted, Contains(expected).Times(1));
}

constexpr auto nameOf = [](const auto& info) { return info.param.name; };
INSTANTIATE_TEST_SUITE_P(EntryPoint, ErrorLines, testing::ValuesIn(entryPointLines()), nameOf);
INSTANTIATE_TEST_SUITE_P(Orchestrator, ErrorLines, testing::ValuesIn(orchestratorLines()), nameOf);
INSTANTIATE_TEST_SUITE_P(SessionManager, ErrorLines, testing::ValuesIn(sessionManagerLines()), nameOf);

TEST(ErrorLinesOfASession, ReachTheServiceWithTheirTags) {
    SessionHost host({}, {}, SessionHost::postEveryLine);
    host.startSession();
    ASSERT_EQ(host.core.pauseRecording(), SessionPauseResult::success);
    host.core.logError("x");
    host.service.close = [](const auto&) { return IngestionFake::ok("no JSON"); };
    EXPECT_EQ(host.stop(), SessionCloseResult::fail("Decoding error."));
    host.core.reset();
    host.core.logError("x");
    host.phone().queue().drain();
    const auto posted = test::postedLines(host.service.logBodies);
    for (const char* line :
         {"SIGNAL Can't record log error without starting the session first",
          "NETWORK API request for closing session failed.", "SIGNAL Can't log error. Not initialized."}) {
        EXPECT_THAT(posted, Contains(line).Times(1));
    }
    EXPECT_EQ(host.errors().size(), posted.size()) << "no error line was kept back";
}

}  // namespace
}  // namespace mireth
