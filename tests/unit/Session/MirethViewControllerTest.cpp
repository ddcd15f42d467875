// A host's controller that reports itself.
#include "MirethVex/PublicSide/MirethViewController.hpp"
#include "PublicSide/MirethSRAccess.hpp"

#include <gmock/gmock.h>

#include "support/HookedApplication.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::errorLine;
using test::infoLine;
using testing::ElementsAre;

/// A host's own, with something to do when it appears.
class CartController final : public MirethViewController {
  public:
    CartController(MirethSR& library, int& appeared)
        : MirethViewController("Cart", library), appeared_(appeared) {}
    void viewDidAppear(bool animated) override {
        MirethViewController::viewDidAppear(animated);
        ++appeared_;
    }

  private:
    int& appeared_;
};

const std::string appeared =
    R"(Recorded event ["eventName": "ScreenChange", "details": "appear (auto): Cart"])";
const std::string disappeared =
    R"(Recorded event ["eventName": "ScreenChange", "details": "disappear (auto): Cart"])";

struct ReportingController : testing::Test {
    test::SessionHost host{{}, {LogTag::signal}};
    std::shared_ptr<test::HookedApplication> application = std::make_shared<test::HookedApplication>();
    MirethSR library = MirethSRAccess::make(std::make_unique<MirethSRCore>(host.capture.log(), services()));
    int appearances = 0;

    platform::PlatformServices services() const {
        auto result = host.phone().services();
        result.application = application;
        return result;
    }
    void start(bool automaticNavigationTracking) {
        ASSERT_EQ(library.initializeProject("b1", "p1", host.window), InitializationResult::success);
        ASSERT_EQ(
            host.await(library.startRecording(VexConfiguration(false, automaticNavigationTracking))).kind,
            SessionStartResult::Kind::success);
        (void)host.capture.take();
    }
    void showAndHide() {
        const auto cart = std::make_shared<CartController>(library, appearances);
        application->appearance.didAppear(cart, true);
        application->appearance.didDisappear(cart, true);
    }
};

TEST_F(ReportingController, ReportsItsClassNameAsAScreenThatWasDetected) {
    start(false);
    showAndHide();
    EXPECT_THAT(host.texts(LogLevel::info), ElementsAre(appeared, disappeared));
    EXPECT_EQ(appearances, 1);
}

/// A host's own, without a name of its own.
class CheckoutController final : public MirethViewController {
  public:
    explicit CheckoutController(MirethSR& library) : MirethViewController({}, library) {}
};

TEST_F(ReportingController, WithoutANameIsReportedUnderItsClass) {
    start(true);
    application->appearance.didAppear(std::make_shared<CheckoutController>(library), false);
    const std::string line =
        R"(Recorded event ["eventName": "ScreenChange", "details": "appear (auto): CheckoutController"])";
    EXPECT_THAT(host.texts(LogLevel::info), ElementsAre(line, line)) << "as detected, and by itself";
}

TEST_F(ReportingController, IsReportedTwiceWhileAutomaticDetectionIsOn) {
    start(true);
    showAndHide();
    EXPECT_THAT(host.texts(LogLevel::info), ElementsAre(appeared, appeared, disappeared, disappeared));
    EXPECT_EQ(appearances, 1);
}

TEST_F(ReportingController, IsRefusedWithoutAProject) {
    showAndHide();
    const auto refused = errorLine(LogTag::signal, "Can't record screen change. Not initialized.");
    host.capture.expectLines({refused, refused});
    EXPECT_EQ(appearances, 1);
}

TEST_F(ReportingController, IsRefusedWithoutASession) {
    ASSERT_EQ(library.initializeProject("b1", "p1", host.window), InitializationResult::success);
    showAndHide();
    const auto refused =
        errorLine(LogTag::signal, "Can't record screen disappearance without starting the session first");
    host.capture.expectLines({refused, refused});
}

TEST_F(ReportingController, GoesOnReportingWhereNoInterceptionCanBeHad) {
    application->hasDisappearHook = false;
    ASSERT_EQ(library.initializeProject("b1", "p1", host.window), InitializationResult::success);
    ASSERT_EQ(host.await(library.startRecording(VexConfiguration(false, true))).kind,
              SessionStartResult::Kind::success);
    EXPECT_THAT(host.errors(),
                ElementsAre("Cancelling: Unable to turn automatic screen appearance detection ON."));
    showAndHide();
    EXPECT_THAT(host.texts(LogLevel::info), ElementsAre(appeared, disappeared));
}

TEST_F(ReportingController, ByDefaultAsksForTheSharedLibraryOnlyWhenItReports) {
    const auto cart = std::make_shared<MirethViewController>("Cart");
    // The shared instance is not made yet.
    ASSERT_TRUE(MirethSR::installPlatformServices(services()));
    (void)host.phone().systemLog().takeRecords();
    application->appearance.didAppear(cart, false);
    const auto records = host.phone().systemLog().takeRecords();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].message, "Can't record screen change. Not initialized.");
}

}  // namespace
}  // namespace mireth
