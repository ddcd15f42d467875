// What becomes of an error that a part of the library throws: a line, and each call's own answer.
#include "PublicSide/Guarded.hpp"
#include "PublicSide/MirethSRAccess.hpp"

#include <gmock/gmock.h>

#include <stdexcept>

#include "MirethVex/MirethVex.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using testing::IsEmpty;

/// Throws out of every call, unless it is asked for the state.
class Throwing final : public Orchestrator {
  public:
    using Orchestrator::Orchestrator;
    Task<SessionStartResult> startRecording(VexConfiguration) override { throw std::runtime_error("a bug"); }
    Task<SessionCloseResult> stopRecording() override { throw std::runtime_error("a bug"); }
    SessionPauseResult pauseRecording() override { throw std::runtime_error("a bug"); }
    SessionResumeResult resumeRecording() override { throw 42; }
    void recordLogError(const LogErrorData&) override { throw std::runtime_error("a bug"); }
    void recordScreenChange(const std::vector<ScreenHierarchyElement>&, ScreenChangeType,
                            ScreenDetectionType) override {
        throw std::runtime_error("a bug");
    }
};

struct GuardedCalls : testing::Test {
    test::SessionHost host{{}, {}, test::SessionHost::postEveryLine};
    bool canBeMade = true;
    MirethSR library = MirethSRAccess::make(std::make_unique<MirethSRCore>(
        host.capture.log(), host.phone().services(),
        [this](MirethLog& log, Orchestrator::Collaborators parts, Executor executor,
               CurrentTimeProvider clock) -> std::shared_ptr<Orchestrator> {
            if (!canBeMade) {
                throw std::runtime_error("a bug");
            }
            return std::make_shared<Throwing>(log, std::move(parts), std::move(executor), std::move(clock));
        }));

    InitializationResult initialize() { return library.initializeProject("b", "p", host.window); }
    void SetUp() override { ASSERT_EQ(initialize(), InitializationResult::success); }
    void expectCaught() {
        host.capture.expectLines(
            {test::errorLine(LogTag::lifecycle, "An unexpected error was caught at the public interface.")});
    }
    void TearDown() override {
        host.phone().queue().drain();
        EXPECT_THAT(host.service.logBodies, IsEmpty()) << "the line stays in the app";
        host.capture.expectLines({});
    }
};

TEST_F(GuardedCalls, InitializeProjectAnswersThatThereIsNoWindow) {
    canBeMade = false;
    EXPECT_EQ(initialize(), InitializationResult::cannotGetKeyWindow);
    expectCaught();
}

TEST_F(GuardedCalls, StartAnswersFailWithoutAReason) {
    EXPECT_EQ(host.await(library.startRecording()), SessionStartResult::fail(std::nullopt));
    expectCaught();
}

TEST_F(GuardedCalls, StopAnswersFailWithoutAReason) {
    EXPECT_EQ(host.await(library.stopRecording()), SessionCloseResult::fail(std::nullopt));
    expectCaught();
}

TEST_F(GuardedCalls, PauseAnswersNotStarted) {
    EXPECT_EQ(library.pauseRecording(), SessionPauseResult::notStarted);
    expectCaught();
}

TEST_F(GuardedCalls, ResumeAnswersNotStartedAlsoForWhatIsNoException) {
    EXPECT_EQ(library.resumeRecording(), SessionResumeResult::notStarted);
    expectCaught();
}

TEST_F(GuardedCalls, ReportsEndInTheLine) {
    library.logError("x");
    expectCaught();
    library.reportScreenAppeared("Home");
    expectCaught();
    library.reportScreenDisappeared("Home");
    expectCaught();
    library.reportScreenChange({{"Home"}}, ScreenChangeType::appear, ScreenDetectionType::manual);
    expectCaught();
}

TEST_F(GuardedCalls, AScreenThatIsDetectedEndsInTheLineAndItsHandlerRuns) {
    // Switched on by a start of the real orchestrator's; here straight.
    bool heard = false;
    struct Screen final : platform::ViewController {
        explicit Screen(bool& heardFlag) : ViewController("Screen"), heard(heardFlag) {}
        void viewDidAppear(bool) override { heard = true; }
        bool& heard;
    };
    MirethSRCore core(
        host.capture.log(), host.phone().services(),
        [](MirethLog& log, Orchestrator::Collaborators parts, Executor executor, CurrentTimeProvider clock) {
            parts.appearanceDetection->enableSwizzle();
            return std::make_shared<Throwing>(log, std::move(parts), std::move(executor), std::move(clock));
        });
    ASSERT_EQ(core.initializeProject("b", "p", host.window), InitializationResult::success);
    host.phone().application().appearance().didAppear(std::make_shared<Screen>(heard), false);
    EXPECT_TRUE(heard);
    expectCaught();
}

TEST_F(GuardedCalls, AnyOtherCallGivesTheAnswerThatItWasGiven) {
    MirethSRCore& core = host.core;
    EXPECT_EQ(guarded(core, 7, []() -> int { throw std::runtime_error("a bug"); }), 7);
    expectCaught();
    EXPECT_EQ(guarded(core, 7, [] { return 8; }), 8);
}

}  // namespace
}  // namespace mireth
