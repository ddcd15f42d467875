// Which of a program's windows is recorded as its main window, and from when on.
#include <gmock/gmock.h>

#include "qt/support/Attached.hpp"

namespace mireth::qttest {

namespace {

using endtoend::Json;
using testing::ElementsAre;

class QtAttachedWindows : public Attached {
  protected:
    /// The width of each session's window, in the order of the sessions, after a program that took these
    /// steps.
    std::vector<int> widthsAfter(std::vector<std::string> steps) {
        steps.insert(steps.begin(), MIRETH_WINDOWS_PROGRAM);
        EXPECT_EQ(attach(std::move(steps)).status, 7);
        std::vector<int> widths;
        for (const Json& session : receiver_->sessions()) {
            const Json report = receiver_->show(session.at("id"));
            for (const Json& event : report.at("timeline")) {
                if (event.at("type") == "WindowDimensions") {
                    widths.push_back(event.at("eventDetails").at("windowWidthPx").get<int>());
                }
            }
        }
        EXPECT_EQ(widths.size(), receiver_->sessions().size());
        return widths;
    }
};

TEST_F(QtAttachedWindows, AFramelessWindowOfItemsIsOne) {
    EXPECT_THAT(widthsAfter({"frameless-items"}), ElementsAre(250));
}

TEST_F(QtAttachedWindows, ASplashGivesWayToTheFirstWindowWithAFrame) {
    EXPECT_THAT(widthsAfter({"show:splash", "show:main"}), ElementsAre(100, 300));
}

TEST_F(QtAttachedWindows, OneThatMakesItsFrameItselfStaysItBesideSmallerOnes) {
    EXPECT_THAT(widthsAfter({"show:own-frame", "show:helper"}), ElementsAre(350));
}

TEST_F(QtAttachedWindows, WhatTheDesktopDoesNotManageOrTheUserCannotReachIsNone) {
    EXPECT_THAT(widthsAfter({"show:tray-icon+show:overlay", "show:main"}), ElementsAre(300));
}

TEST_F(QtAttachedWindows, WhatFillsTheScreenNeedsNoDesktopToManageIt) {
    EXPECT_THAT(widthsAfter({"show:kiosk"}), ElementsAre(800));
}

TEST_F(QtAttachedWindows, AfterALogInThatClosesLateTheLargestIsTheOne) {
    EXPECT_THAT(widthsAfter({"show:log-in", "show:helper+show:main", "hide:log-in"}), ElementsAre(200, 300));
}

TEST_F(QtAttachedWindows, OneThatIsHiddenAndShownAgainAtOnceStaysIt) {
    EXPECT_THAT(widthsAfter({"show:main+show:helper", "show-again:main"}), ElementsAre(300));
}

TEST_F(QtAttachedWindows, ItIsRecordedAnewAfterTheBackground) {
    EXPECT_THAT(widthsAfter({"show:main", "suspend"}), ElementsAre(300, 300));
}

}  // namespace

}  // namespace mireth::qttest
