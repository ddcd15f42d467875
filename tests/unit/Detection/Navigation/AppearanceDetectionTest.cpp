#include "PrivateSide/Detection/Navigation/AppearanceDetection.hpp"

#include <gmock/gmock.h>

#include <stdexcept>

#include "support/HookedApplication.hpp"
#include "support/LogCapture.hpp"
#include "support/RecordingController.hpp"

namespace mireth {
namespace {

using test::errorLine;
using test::infoLine;
using testing::ElementsAre;
using testing::IsEmpty;

const test::LogLine on = infoLine(LogTag::navigation, "Automatic screen change detection is ON.");
const test::LogLine off = infoLine(LogTag::navigation, "Automatic screen change detection is OFF.");
const test::LogLine cancelled =
    errorLine(LogTag::navigation, "Cancelling: Unable to turn automatic screen appearance detection ON.");

struct Detection : testing::Test {
    test::LogCapture capture;
    std::shared_ptr<test::HookedApplication> application = std::make_shared<test::HookedApplication>();
    /// What is reported and what the app's controllers hear, in one order.
    std::vector<std::string> happened;
    std::function<void()> whileReporting = [] {};
    std::shared_ptr<AppearanceDetection> detection = std::make_shared<AppearanceDetection>(
        capture.log(), application,
        [this](const std::vector<ScreenHierarchyElement>& hierarchy, ScreenChangeType change,
               ScreenDetectionType method) {
            ASSERT_EQ(hierarchy.size(), 1U);
            happened.push_back(hierarchy[0].screenName + "/" + hierarchy[0].screenType +
                               (change == ScreenChangeType::appear ? " appear" : " disappear") +
                               (method == ScreenDetectionType::automatic ? " auto" : " manual"));
            whileReporting();
        });

    std::shared_ptr<platform::ViewController> cart(std::function<void()> inHandler = {}) {
        return std::make_shared<test::RecordingController>("Cart", happened, std::move(inHandler));
    }
    void showAndHide() {
        application->appearance.didAppear(cart(), false);
        application->appearance.didDisappear(cart(), false);
    }
};

TEST_F(Detection, BeforeAnyInterceptionControllersHearAndNothingIsReported) {
    showAndHide();
    EXPECT_THAT(happened, ElementsAre("Cart appeared", "Cart disappeared"));
    EXPECT_EQ(detection->shouldReportChange(), std::nullopt);
}

TEST_F(Detection, EnableSwizzleReportsEachScreenByItsClassNameBeforeItsOwnHandlerRuns) {
    detection->enableSwizzle();
    showAndHide();
    EXPECT_THAT(happened, ElementsAre("Cart/Screen appear auto", "Cart appeared",
                                      "Cart/Screen disappear auto", "Cart disappeared"));
    EXPECT_EQ(detection->shouldReportChange(), true);
    capture.expectLines({on});
}

class CheckoutController final : public platform::ViewController {};

TEST_F(Detection, AControllerWithoutANameIsReportedUnderItsClass) {
    detection->enableSwizzle();
    application->appearance.didAppear(std::make_shared<CheckoutController>(), false);
    EXPECT_THAT(happened, ElementsAre("CheckoutController/Screen appear auto"));
    capture.expectLines({on});
}

TEST_F(Detection, EnableSwizzleTwiceInstallsOnceAndLeavesDetectionOn) {
    detection->enableSwizzle();
    detection->enableSwizzle();
    EXPECT_EQ(application->appearRequests, 1);
    EXPECT_EQ(application->disappearRequests, 1);
    EXPECT_EQ(detection->shouldReportChange(), true);
    showAndHide();
    EXPECT_THAT(happened, ElementsAre("Cart/Screen appear auto", "Cart appeared",
                                      "Cart/Screen disappear auto", "Cart disappeared"));
    capture.expectLines({on, on});
}

TEST_F(Detection, AfterDisableAutodetectionHandlersStillRunAndNothingIsReported) {
    detection->enableSwizzle();
    detection->disableAutodetection();
    showAndHide();
    EXPECT_THAT(happened, ElementsAre("Cart appeared", "Cart disappeared"));
    EXPECT_EQ(detection->shouldReportChange(), false);
    capture.expectLines({on, off});
}

TEST_F(Detection, EnableAutodetectionSwitchesOnAgainWithoutAnotherInterception) {
    detection->enableSwizzle();
    detection->disableAutodetection();
    detection->enableAutodetection();
    application->appearance.didAppear(cart(), false);
    EXPECT_THAT(happened, ElementsAre("Cart/Screen appear auto", "Cart appeared"));
    EXPECT_EQ(application->appearRequests, 1);
    capture.expectLines({on, off, on});
}

TEST_F(Detection, SwitchingOffBeforeAnyInterceptionIsNoInterception) {
    detection->disableAutodetection();
    EXPECT_EQ(detection->shouldReportChange(), std::nullopt);
    detection->enableSwizzle();
    EXPECT_EQ(application->appearRequests, 1);
    application->appearance.didAppear(cart(), false);
    EXPECT_THAT(happened, ElementsAre("Cart/Screen appear auto", "Cart appeared"));
    capture.expectLines({off, on});
}

TEST_F(Detection, AHandlerThatSwitchesTheDetectionOffEndsTheReportsAfterItsOwn) {
    detection->enableSwizzle();
    application->appearance.didAppear(cart([this] { detection->disableAutodetection(); }), false);
    application->appearance.didDisappear(cart(), false);
    EXPECT_THAT(happened, ElementsAre("Cart/Screen appear auto", "Cart appeared", "Cart disappeared"));
    capture.expectLines({on, off});
}

TEST_F(Detection, AReportThatThrowsKeepsTheHandlerFromNothing) {
    detection->enableSwizzle();
    whileReporting = [] { throw std::runtime_error("a bug"); };
    showAndHide();
    EXPECT_THAT(happened, ElementsAre("Cart/Screen appear auto", "Cart appeared",
                                      "Cart/Screen disappear auto", "Cart disappeared"));
    capture.expectLines({on});
}

TEST_F(Detection, WhatAHandlerThrowsReachesTheAppAfterItsScreenWasReported) {
    detection->enableSwizzle();
    EXPECT_THROW(
        application->appearance.didAppear(cart([] { throw std::runtime_error("the app's bug"); }), false),
        std::runtime_error);
    EXPECT_THAT(happened, ElementsAre("Cart/Screen appear auto", "Cart appeared"));
    capture.expectLines({on});
}

TEST_F(Detection, OnceItIsGoneControllersAreAsTheyWere) {
    detection->enableSwizzle();
    detection.reset();
    showAndHide();
    EXPECT_THAT(happened, ElementsAre("Cart appeared", "Cart disappeared"));
    capture.expectLines({on});
}

TEST_F(Detection, ItMayGoWhileItReports) {
    detection->enableSwizzle();
    whileReporting = [this] { detection.reset(); };
    showAndHide();
    EXPECT_THAT(happened, ElementsAre("Cart/Screen appear auto", "Cart appeared", "Cart disappeared"));
    capture.expectLines({on});
}

/// Which of the two hooks the application has.
struct FailedInterception : Detection, testing::WithParamInterface<std::pair<bool, bool>> {
    FailedInterception() {
        application->hasAppearHook = GetParam().first;
        application->hasDisappearHook = GetParam().second;
    }
};

TEST_P(FailedInterception, IsLoggedAndLeavesDetectionOffAndTheControllersUnchanged) {
    detection->enableSwizzle();
    EXPECT_EQ(detection->shouldReportChange(), std::nullopt);
    // Nor does anything that is left of it come alive.
    detection->enableAutodetection();
    EXPECT_EQ(detection->shouldReportChange(), std::nullopt);
    showAndHide();
    EXPECT_THAT(happened, ElementsAre("Cart appeared", "Cart disappeared"));
    capture.expectLines({cancelled, on});
}

TEST_P(FailedInterception, IsTriedAgainWhenDetectionIsNextSwitchedOn) {
    detection->enableSwizzle();
    application->hasAppearHook = application->hasDisappearHook = true;
    detection->enableSwizzle();
    showAndHide();
    EXPECT_THAT(happened, ElementsAre("Cart/Screen appear auto", "Cart appeared",
                                      "Cart/Screen disappear auto", "Cart disappeared"));
    capture.expectLines({cancelled, on});
}

INSTANTIATE_TEST_SUITE_P(Hooks, FailedInterception,
                         testing::Values(std::pair(false, false), std::pair(true, false),
                                         std::pair(false, true)));

}  // namespace
}  // namespace mireth
