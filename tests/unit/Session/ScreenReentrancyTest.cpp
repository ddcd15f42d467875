// Reports, and calls that end the session, from inside a handler or a log listener while a change is
// recorded.
#include <gmock/gmock.h>

#include <stdexcept>

#include "ScreenChanges.hpp"

namespace mireth {
namespace {

using test::notStartedLine;
using testing::ElementsAre;
using testing::IsEmpty;
using ScreenReentrancy = test::ScreenChanges;

TEST_F(ScreenReentrancy, AHandlerThatReportsComesAfterTheReportOfItsOwnScreen) {
    start(true);
    appear(controller("Cart", [this] {
        library.reportScreenAppeared("Cart, named by the host");
        appear(controller("Sheet", [this] { library.reportScreenAppeared("Sheet, named by the host"); }));
    }));
    host.advance(10);
    EXPECT_THAT(uploaded(), ElementsAre("appear auto Cart", "appear manual Cart, named by the host",
                                        "appear auto Sheet", "appear manual Sheet, named by the host"));
}

TEST_F(ScreenReentrancy, ALogListenerThatReportsWhileAChangeIsRecordedIsRecordedNext) {
    start(true);
    whenRecorded("Cart", [this] {
        appear(controller("Sheet"));
        library.reportScreenAppeared("Offer");
    });
    appear(controller("Cart", [this] { library.reportScreenAppeared("Named"); }));
    host.advance(10);
    EXPECT_THAT(uploaded(), ElementsAre("appear auto Cart", "appear auto Sheet", "appear manual Offer",
                                        "appear manual Named"));
}

TEST_F(ScreenReentrancy, AReportGetsNotBetweenTheFirstTwoEvents) {
    whenRecorded("SessionStartMarker", [this] { library.reportScreenAppeared("Early"); });
    start(false);
    library.reportScreenAppeared("Cart");
    host.advance(10);
    EXPECT_THAT(uploaded(), ElementsAre("appear manual Cart"));
}

TEST_F(ScreenReentrancy, ALogListenerThatStopsTheSessionWhileAChangeIsRecordedKeepsThatOneAndNoLater) {
    start(true);
    host.advance(0.5);
    whenRecorded("Cart", [this] { (void)library.stopRecording(); });
    appear(controller("Cart"));
    appear(controller("Pay"));
    library.reportScreenAppeared("Thanks");
    host.advance(1);
    EXPECT_FALSE(library.hasActiveSession());
    EXPECT_EQ(host.service.closed, 1);
    EXPECT_THAT(uploaded(), ElementsAre("appear auto Cart"));
    EXPECT_THAT(heard, ElementsAre("Cart appeared", "Pay appeared"));
}

TEST_F(ScreenReentrancy, ALogListenerMayPauseTheSessionWhileAChangeIsRecorded) {
    start(true);
    whenRecorded("Cart", [this] { (void)library.pauseRecording(); });
    appear(controller("Cart"));
    appear(controller("Pay"));
    EXPECT_THAT(host.errors(), ElementsAre(notStartedLine));
    host.advance(10);
    EXPECT_THAT(uploaded(), ElementsAre("appear auto Cart"));
}

TEST_F(ScreenReentrancy, ALogListenerMayResetTheLibraryWhileAChangeIsRecorded) {
    start(true);
    whenRecorded("Cart", [this] { library.reset(); });
    appear(controller("Cart"));
    EXPECT_FALSE(library.hasActiveSession());
    EXPECT_THAT(heard, ElementsAre("Cart appeared"));
    host.advance(10);
    EXPECT_THAT(host.service.chunks, IsEmpty());
}

TEST_F(ScreenReentrancy, ALogListenerMayResetTheLibraryWhileItPauses) {
    ASSERT_EQ(library.initializeProject("b1", "p1", host.window), InitializationResult::success);
    library.setAllowedLoggingTags({LogTag::lifecycle});
    startAgain(false);
    library.addLogListener([this](LogTag, LogLevel, const std::string& line) {
        if (line == "Successfully paused the session.") {
            library.reset();
        }
    });
    EXPECT_EQ(library.pauseRecording(), SessionPauseResult::success);
    EXPECT_FALSE(library.hasActiveSession());
}

TEST_F(ScreenReentrancy, AHandlerMayResetTheLibraryAndOthersStillHear) {
    start(true);
    appear(controller("Cart", [this] { library.reset(); }));
    appear(controller("Pay"));
    EXPECT_THAT(heard, ElementsAre("Cart appeared", "Pay appeared"));
    EXPECT_THAT(host.errors(), ElementsAre("Can't record screen change. Not initialized."));
}

TEST_F(ScreenReentrancy, ALogListenerThatThrowsKeepsNeitherTheChangeNorTheHandlerBack) {
    start(true);
    library.addLogListener([](LogTag, LogLevel, const std::string&) { throw std::runtime_error("a bug"); });
    appear(controller("Cart"));
    host.advance(10);
    EXPECT_THAT(uploaded(), ElementsAre("appear auto Cart"));
    EXPECT_THAT(heard, ElementsAre("Cart appeared"));
}

TEST_F(ScreenReentrancy, WhatAHandlerThrowsReachesTheAppAndItsScreenIsRecorded) {
    start(true);
    EXPECT_THROW(appear(controller("Cart", [] { throw std::runtime_error("the app's bug"); })),
                 std::runtime_error);
    host.advance(10);
    EXPECT_THAT(uploaded(), ElementsAre("appear auto Cart"));
}

}  // namespace
}  // namespace mireth
