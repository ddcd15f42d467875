// Calls from inside a start: by a log listener, and while the service is asked.
#include <gmock/gmock.h>

#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::SessionHost;
using testing::ElementsAre;

/// Runs `action` once, when a line that begins with `beginning` is logged.
void onLine(SessionHost& host, const std::string& beginning, const std::function<void()>& action) {
    host.core.addLogListener(
        [beginning, action, done = std::make_shared<bool>(false)](LogTag, LogLevel, const std::string& line) {
            if (line.starts_with(beginning) && !std::exchange(*done, true)) {
                action();
            }
        });
}

TEST(Reentrancy, AStopFromALogListenerWithinTheStartStopsTheWholeSession) {
    for (const char* line : {"Pusher starts pushing", "Recorded event", "Frames recorder started"}) {
        SessionHost host({}, {LogTag::network, LogTag::signal, LogTag::playback});
        ASSERT_EQ(host.initialize(), InitializationResult::success);
        std::optional<Async<SessionCloseResult>> stopping;
        onLine(host, line, [&] { stopping = host.core.stopRecording(); });
        EXPECT_EQ(host.start().kind, SessionStartResult::Kind::success) << line;
        EXPECT_EQ(host.await(stopping.value()).kind, SessionCloseResult::Kind::success) << line;
        host.advance(30);
        EXPECT_EQ(host.state(), "stopped") << line;
        EXPECT_TRUE(host.service.chunks.empty()) << line;
        EXPECT_EQ(host.service.closed, 1) << line;
    }
}

TEST(Reentrancy, APauseFromALogListenerWithinTheStartAnswersNotStarted) {
    SessionHost host({}, {LogTag::network});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    std::optional<SessionPauseResult> paused;
    onLine(host, "Pusher starts pushing", [&] { paused = host.core.pauseRecording(); });
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::success);
    EXPECT_EQ(paused, SessionPauseResult::notStarted);
    EXPECT_EQ(host.state(), "started");
}

TEST(Reentrancy, AStartFromALogListenerWithinTheStartCreatesOneSession) {
    SessionHost host({}, {LogTag::lifecycle});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    std::optional<Async<SessionStartResult>> second;
    onLine(host, "Enabling automatic",
           [&] { second = host.core.startRecording(VexConfiguration(false, false)); });
    const auto first = host.core.startRecording(VexConfiguration(false, true));
    const auto one = host.await(first).kind;
    const auto other = host.await(second.value()).kind;
    EXPECT_NE(one, other);
    EXPECT_EQ(host.service.created, 1);
}

TEST(Reentrancy, AResetDuringTheStartEndsItWithoutASession) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    const auto starting = host.core.startRecording(VexConfiguration(false, false));
    host.core.reset();
    EXPECT_EQ(host.await(starting),
              SessionStartResult::fail(
                  "Failed to start recording: The library was reset while the session was starting."));
    EXPECT_THAT(host.errors(), ElementsAre("Failed to start recording. [\"reason\": \"The library was reset "
                                           "while the session was starting.\"]"));
    EXPECT_EQ(host.service.created, 0);
    host.advance(30);
    EXPECT_TRUE(host.service.chunks.empty());
}

TEST(Reentrancy, AResetWhileTheSessionIsCreatedEndsItWithoutRecording) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    const auto create = host.service.create;
    host.service.create = [&](const platform::HttpRequest& request) {
        host.core.reset();
        return create(request);
    };
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::fail);
    EXPECT_THAT(host.errorMessages(), ElementsAre("Failed to start recording."));
    host.advance(30);
    EXPECT_TRUE(host.service.chunks.empty());
}

}  // namespace
}  // namespace mireth
