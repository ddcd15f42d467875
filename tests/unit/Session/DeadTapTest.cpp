// Dead taps, through the whole library: a session on a device of average speed, and what may end it while a
// tap waits to be judged.
#include <gmock/gmock.h>

#include "support/Finger.hpp"
#include "support/PostedLines.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto analyzerWasGone = "Error during analysis: ViewAnalyzer was deallocated before completion.";

struct DeadTaps : testing::Test {
    test::SessionHost host{{}, {}, test::SessionHost::postEveryLine};
    test::Finger finger{host.window};

    /// Half a second in, past the first frame, a tap; nothing answers it.
    void startAndTap() {
        host.startSession();
        host.advance(0.5);
        finger.tap({195, 422}, 1000.75);
        (void)host.capture.take();
    }
    std::vector<std::string> found() const { return host.service.interactionsAndSignals(); }
};

TEST_F(DeadTaps, AreEventsOfTheTimelineWithTheTouchsOwnTime) {
    startAndTap();
    host.advance(9.5);
    ASSERT_EQ(host.service.chunks.size(), 1U);
    EXPECT_EQ(host.service.chunks[0].timeline.at(4).dump(),
              R"({"timestamp":1000750,"type":"SignalCaptured","eventDetails":{"signalId":"DeadTap","target":)"
              R"({"xNormalizedTo1":0.5,"yNormalizedTo1":0.5,"xOriginalPx":585,"yOriginalPx":1266}},)"
              R"("chunkNumber":0})");
    EXPECT_THAT(found(), ElementsAre("Tap", "DeadTap"));
}

TEST_F(DeadTaps, AreJudgedAfterOneAndAHalfSecondsAndNotBefore) {
    startAndTap();
    host.advance(1.375);
    (void)host.stop();
    EXPECT_THAT(found(), ElementsAre("Tap"));
}

TEST_F(DeadTaps, ChangeBeforeTheWaitIsOverSavesTheTap) {
    startAndTap();
    host.advance(1.375);
    host.window->addSubview(std::make_shared<platform::View>());
    host.advance(8.125);
    EXPECT_THAT(found(), ElementsAre("Tap"));
}

TEST_F(DeadTaps, FoundAfterTheSessionEndedAreRefusedWithALine) {
    startAndTap();
    (void)host.stop();
    host.advance(2);
    EXPECT_THAT(host.errors(), ElementsAre("Could not record event - event callback is nil"));
    EXPECT_THAT(found(), ElementsAre("Tap"));
}

TEST_F(DeadTaps, OfOneSessionAreNotRecordedInTheNext) {
    startAndTap();
    ASSERT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
    ASSERT_EQ(host.start().kind, SessionStartResult::Kind::success);
    host.advance(0.5);
    finger.tap({10, 10}, 1001);
    host.advance(9.5);
    ASSERT_EQ(host.service.chunks.size(), 2U);
    EXPECT_THAT(found(), ElementsAre("Tap", "Tap", "DeadTap"));
    EXPECT_EQ(host.service.chunks[1].timeline.at(4)["timestamp"], 1001000);
    EXPECT_THAT(host.errors(), IsEmpty());
}

TEST_F(DeadTaps, ResetWhileTheyAreWaitedForLeavesALineForEach) {
    startAndTap();
    finger.tap({10, 10}, 1001);
    host.core.reset();
    (void)host.capture.take();
    host.advance(2);
    EXPECT_THAT(host.errors(), ElementsAre(analyzerWasGone, analyzerWasGone));
}

TEST_F(DeadTaps, ViewThatResetsTheLibraryWhileItIsLookedAtDoesNoHarm) {
    class Meddling final : public platform::View {
      public:
        const std::vector<std::shared_ptr<View>>& subviews() const override {
            if (meddle) {
                std::exchange(meddle, nullptr)();
            }
            return View::subviews();
        }
        mutable std::function<void()> meddle;
    };
    const auto view = std::make_shared<Meddling>();
    host.window->addSubview(view);
    host.startSession();
    host.advance(0.5);
    (void)host.capture.take();
    finger.begin({195, 422}, 1000.75);
    view->meddle = [this] { host.core.reset(); };
    finger.end();
    EXPECT_EQ(host.state(), "none");
    host.advance(2);
    EXPECT_THAT(host.errors(), ElementsAre(analyzerWasGone));
}

TEST_F(DeadTaps, ViewThatThrowsCostsItsTapTheJudgementAndTheSessionNothing) {
    class Breaking final : public platform::View {
      public:
        std::shared_ptr<const platform::Layer> presentationLayer() const override {
            if (isBroken) {
                throw std::runtime_error("widget is gone");
            }
            return nullptr;
        }
        bool isBroken = false;
    };
    const auto view = std::make_shared<Breaking>();
    host.window->addSubview(view);
    host.startSession();
    host.advance(0.5);
    (void)host.capture.take();
    view->isBroken = true;
    finger.tap({195, 422}, 1000.75);
    host.capture.expectLines({test::errorLine(LogTag::signal, "Error during analysis: widget is gone")});
    view->isBroken = false;
    finger.tap({195, 422}, 1001);
    host.advance(9.5);
    EXPECT_THAT(found(), ElementsAre("Tap", "Tap", "DeadTap"));
    EXPECT_THAT(host.errors(), IsEmpty());
    EXPECT_THAT(test::postedLines(host.service.logBodies),
                ElementsAre("SIGNAL Error during analysis: widget is gone"));
}

}  // namespace
}  // namespace mireth
