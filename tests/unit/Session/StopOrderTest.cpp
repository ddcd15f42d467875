// The order in which a session's parts are stopped, and what sets a stop off.
#include <gmock/gmock.h>

#include "support/Finger.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::Finger;
using test::SessionHost;
using testing::ElementsAre;

/// Runs `action` whenever the line is logged.
void onLine(SessionHost& host, const std::string& line, const std::function<void()>& action) {
    host.core.addLogListener([line, action](LogTag, LogLevel, const std::string& text) {
        if (text == line) {
            action();
        }
    });
}

TEST(StopOrder, TheTrackerIsStoppedThenTheDetectorThenTheFramesThenTheLastChunkIsSaved) {
    SessionHost host({}, {LogTag::navigation, LogTag::playback});
    host.startSession();
    host.advance(0.5);
    Finger finger(host.window);
    const auto act = [&](const char* screen, double uptime) {
        host.core.reportScreenChange({{screen}}, ScreenChangeType::appear, ScreenDetectionType::manual, "");
        finger.tap({195, 422}, uptime);
    };
    onLine(host, "Stopped tracking Navigation.", [&] { act("WithoutATracker", 1001); });
    onLine(host, "Frames recorder stopped", [&] { act("WithoutADetector", 1002); });
    (void)host.capture.take();
    ASSERT_EQ(host.stop().kind, SessionCloseResult::Kind::success);

    std::vector<std::string> lines;
    for (const auto& text : host.texts(LogLevel::info)) {
        lines.push_back(text.substr(0, text.find(" [")));
    }
    EXPECT_THAT(lines,
                ElementsAre("Automatic screen change detection is OFF.", "Stopped tracking Navigation.",
                            "Frames recorder stopped", "New Video chunk."));
    const auto& timeline = host.service.chunks.at(0).timeline;
    ASSERT_EQ(timeline.size(), 5U) << "the first three events, the tap that still had a detector, the end";
    EXPECT_EQ(timeline[3]["type"], "UserInteraction");
    EXPECT_EQ(timeline[3]["timestamp"], 1001000);
}

TEST(StopOrder, TheChunksAreListenedForUntilTheLastIsUploadedAndTheCloseComesAfter) {
    SessionHost host({}, {LogTag::playback});
    host.startSession();
    host.advance(0.5);
    std::string stateAtTheUpload;
    host.service.record = [&](const auto&) {
        stateAtTheUpload = host.state();
        return test::IngestionFake::ok(R"({"status":"SUCCESS"})");
    };
    onLine(host, "Frames recorder stopped", [&] { EXPECT_TRUE(host.service.chunks.empty()); });
    ASSERT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
    EXPECT_EQ(stateAtTheUpload, "started");
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create", "record", "close"));
}

TEST(StopOrder, TheBackgroundSetsTheStopOffBeforeItsLineAndRunsItLater) {
    SessionHost host({}, {LogTag::lifecycle});
    host.startSession();
    std::vector<std::string> order;
    onLine(host, "App moved to the background. Session is closed", [&] {
        order.push_back("line while " + host.state());
        host.phone().queue().post([&order] { order.emplace_back("posted by the line"); });
    });
    onLine(host, "Disabling automatic screen change detection.", [&] { order.emplace_back("stop"); });
    host.phone().application().moveToBackground();
    EXPECT_THAT(order, ElementsAre("line while started"));
    EXPECT_EQ(host.state(), "started");
    host.advance(0.1);
    EXPECT_THAT(order, ElementsAre("line while started", "stop", "posted by the line"));
    EXPECT_EQ(host.state(), "stopped");
}

}  // namespace
}  // namespace mireth
