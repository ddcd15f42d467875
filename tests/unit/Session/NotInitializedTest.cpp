#include <gmock/gmock.h>

#include "MirethVex/MirethVex.hpp"
#include "PublicSide/MirethSRAccess.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::errorLine;
using testing::ElementsAre;

/// The public class over a core of the test's own.
struct NotInitialized : testing::Test {
    test::SessionHost host;
    MirethSR library =
        MirethSRAccess::make(std::make_unique<MirethSRCore>(host.capture.log(), host.phone().services()));
};

TEST_F(NotInitialized, StartAnswersNotInitializedAndLogsWhy) {
    EXPECT_EQ(host.await(library.startRecording()),
              SessionStartResult::of(SessionStartResult::Kind::notInitialized));
    host.capture.expectLines({errorLine(LogTag::lifecycle,
                                        "Unable to start recording. Orchestrator is nil "
                                        "[\"errorDetails\": \"initializeProject has not succeeded.\"]")});
}

TEST_F(NotInitialized, StopAnswersNotInitialized) {
    EXPECT_EQ(host.await(library.stopRecording()).kind, SessionCloseResult::Kind::notInitialized);
}

TEST_F(NotInitialized, PauseAnswersNotInitialized) {
    EXPECT_EQ(library.pauseRecording(), SessionPauseResult::notInitialized);
}

TEST_F(NotInitialized, ResumeAnswersNotInitialized) {
    EXPECT_EQ(library.resumeRecording(), SessionResumeResult::notInitialized);
}

TEST_F(NotInitialized, LogErrorIsRefusedWithItsLine) {
    library.logError("x");
    host.capture.expectLines({errorLine(LogTag::signal, "Can't log error. Not initialized.")});
}

TEST_F(NotInitialized, AppearanceIsRefusedWithItsLine) {
    library.reportScreenAppeared("Home");
    host.capture.expectLines({errorLine(LogTag::signal, "Can't record screen appearance. Not initialized.")});
}

TEST_F(NotInitialized, DisappearanceIsRefusedWithItsLine) {
    library.reportScreenDisappeared("Home");
    host.capture.expectLines(
        {errorLine(LogTag::signal, "Can't record screen disappearance. Not initialized.")});
}

TEST_F(NotInitialized, ScreenChangeIsRefusedWithItsLine) {
    library.reportScreenChange({{"Home"}}, ScreenChangeType::appear, ScreenDetectionType::manual);
    host.capture.expectLines({errorLine(LogTag::signal, "Can't record screen change. Not initialized.")});
}

TEST_F(NotInitialized, ThereIsNoActiveSession) {
    EXPECT_FALSE(library.hasActiveSession());
}

TEST_F(NotInitialized, AllowedTagsAreEmptyAndCanBeReplaced) {
    EXPECT_TRUE(library.allowedLoggingTags().empty());
    library.setAllowedLoggingTags({LogTag::network, LogTag::signal});
    EXPECT_EQ(library.allowedLoggingTags(), (std::set{LogTag::network, LogTag::signal}));
}

TEST_F(NotInitialized, ResetEmptiesTheAllowedTagsButKeepsListeners) {
    std::vector<std::string> heard;
    library.addLogListener([&heard](LogTag, LogLevel, const std::string& line) { heard.push_back(line); });
    library.setAllowedLoggingTags({LogTag::network});
    library.reset();
    EXPECT_TRUE(library.allowedLoggingTags().empty());
    library.logError("x");
    EXPECT_THAT(heard, ElementsAre("Can't log error. Not initialized."));
    (void)host.capture.take();
}

TEST_F(NotInitialized, ResetDropsARunningSessionWithoutClosingIt) {
    ASSERT_EQ(library.initializeProject("b", "p", host.window), InitializationResult::success);
    ASSERT_EQ(host.await(library.startRecording(VexConfiguration(false, false))).kind,
              SessionStartResult::Kind::success);
    EXPECT_TRUE(library.hasActiveSession());
    library.reset();
    EXPECT_FALSE(library.hasActiveSession());
    EXPECT_TRUE(library.allowedLoggingTags().empty());
    host.advance(30);
    EXPECT_EQ(host.service.closed, 0);
    EXPECT_TRUE(host.service.chunks.empty());
    (void)host.capture.take();
}

TEST_F(NotInitialized, AStartThatFailsInsideAnswersFail) {
    // A phone whose random source throws: the library answers, the host goes on.
    struct Throwing final : platform::RandomSource {
        double uniformReal(double, double) override { throw std::runtime_error("no entropy"); }
        std::int64_t uniformBelow(std::int64_t) override { return 99; }
        std::string uuid() override { return "6F9619FF-8B86-D011-B42D-00C04FC964FF"; }
    };
    auto services = host.phone().services();
    services.random = std::make_shared<Throwing>();
    MirethSR broken = MirethSRAccess::make(std::make_unique<MirethSRCore>(host.capture.log(), services));
    ASSERT_EQ(broken.initializeProject("b", "p", host.window), InitializationResult::success);
    EXPECT_EQ(host.await(broken.startRecording(VexConfiguration(false, false))).kind,
              SessionStartResult::Kind::fail);
    EXPECT_FALSE(broken.hasActiveSession());
    (void)host.capture.take();
}

TEST(InstallPlatformServices, AMissingServiceIsRefused) {
    EXPECT_FALSE(MirethSR::installPlatformServices({}));
}

}  // namespace
}  // namespace mireth
