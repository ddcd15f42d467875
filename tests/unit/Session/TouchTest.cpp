// Touches on the recorded window, through the whole library.
#include <gmock/gmock.h>

#include "support/Finger.hpp"
#include "support/PostedLines.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::Finger;
using test::SessionHost;
using testing::AnyOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// The app: one view that answers every touch, so that no tap is a dead one.
class Answering final : public platform::View {
  public:
    void touchesEnded(const std::vector<platform::Touch>& touches,
                      const platform::TouchEvent& event) override {
        View::touchesEnded(touches, event);
        ++answers_;
        mutableLayer().geometry.zPosition = answers_;
    }

  private:
    int answers_ = 0;
};

std::shared_ptr<platform::Window> answeringWindow() {
    auto window = std::make_shared<platform::Window>(Size{390, 844}, 3.0);
    const auto view = std::make_shared<Answering>();
    view->setFrame(window->bounds());
    window->addSubview(view);
    return window;
}

struct Touches : testing::Test {
    SessionHost host{{}, {}, SessionHost::postEveryLine};
    Finger finger{(host.window = answeringWindow())};

    /// Also past the first frame: what comes before it has no place in the video.
    void startSession() {
        host.startSession();
        host.advance(0.5);
    }
    void tap(int tapCount = 1) { tap(finger, tapCount); }
    void tap(Finger& on, int tapCount = 1) {
        const auto uptime = host.phone().services().clock->uptimeSeconds();
        on.tap({195, 422}, uptime, tapCount);
    }
    std::vector<std::string> found() const { return host.service.interactionsAndSignals(); }
};

TEST_F(Touches, ATapIsOneEventOfTheTimelineWithTheTouchsOwnTime) {
    startSession();
    finger.tap({195, 422}, 1000.75);
    host.advance(10);
    ASSERT_EQ(host.service.chunks.size(), 1U);
    EXPECT_EQ(
        host.service.chunks[0].timeline.at(3).dump(),
        R"({"timestamp":1000750,"type":"UserInteraction","eventDetails":{"interactionId":"Tap","target":)"
        R"({"xNormalizedTo1":0.5,"yNormalizedTo1":0.5,"xOriginalPx":585,"yOriginalPx":1266}},)"
        R"("chunkNumber":0})");
    EXPECT_THAT(found(), ElementsAre("Tap"));
}

TEST_F(Touches, FourQuickTapsAreATapAndARageTapInThisOrder) {
    startSession();
    for (int tapCount = 1; tapCount <= 5; ++tapCount) {
        tap(tapCount);
    }
    host.advance(10);
    EXPECT_THAT(found(), ElementsAre("Tap", "RageTap"));
}

TEST_F(Touches, OutsideASessionNobodyListens) {
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.phone().queue().drain();
    EXPECT_THAT(host.window->gestureRecognizers(), IsEmpty());
    startSession();
    EXPECT_THAT(host.window->gestureRecognizers(), SizeIs(1));
    (void)host.stop();
    host.phone().queue().drain();
    EXPECT_THAT(host.window->gestureRecognizers(), IsEmpty());
    (void)host.capture.take();
    tap();
    EXPECT_THAT(host.errors(), IsEmpty());
}

TEST_F(Touches, WhilePausedTheyAreRefusedWithALineThatIsPosted) {
    startSession();
    ASSERT_EQ(host.core.pauseRecording(), SessionPauseResult::success);
    tap();
    host.capture.expectLines(
        {test::errorLine(LogTag::signal, "Could not record event - event callback is nil")});
    ASSERT_EQ(host.core.resumeRecording(), SessionResumeResult::success);
    tap();
    host.advance(10);
    EXPECT_THAT(found(), ElementsAre("Tap"));
    EXPECT_THAT(test::postedLines(host.service.logBodies),
                ElementsAre("SIGNAL Could not record event - event callback is nil"));
}

TEST_F(Touches, TwoSessionsInARowHaveEachTheirOwn) {
    startSession();
    tap();
    (void)host.stop();
    ASSERT_EQ(host.start().kind, SessionStartResult::Kind::success);
    host.advance(0.5);
    tap(4);
    host.advance(10);
    ASSERT_EQ(host.service.chunks.size(), 2U);
    EXPECT_EQ(host.service.chunks[1].info["sessionId"], "S2");
    EXPECT_THAT(found(), ElementsAre("Tap", "RageTap"));
}

TEST_F(Touches, AWindowThatIsReplacedKeepsNoRecogniser) {
    startSession();
    (void)host.stop();
    const auto oldWindow = std::exchange(host.window, answeringWindow());
    startSession();
    EXPECT_THAT(oldWindow->gestureRecognizers(), IsEmpty());
    EXPECT_THAT(host.window->gestureRecognizers(), SizeIs(1));
    tap();
    Finger onTheNewOne(host.window);
    tap(onTheNewOne, 4);
    host.advance(10);
    EXPECT_THAT(found(), ElementsAre("RageTap"));
}

TEST_F(Touches, AResetTakesTheRecogniserOutOfTheWindow) {
    startSession();
    host.core.reset();
    tap();
    host.phone().queue().drain();
    EXPECT_THAT(host.window->gestureRecognizers(), IsEmpty());
    EXPECT_THAT(host.errors(), IsEmpty());
}

TEST_F(Touches, AWindowThatIsGoneIsNoError) {
    startSession();
    Finger late(host.window);
    host.phone().application().setKeyWindow(nullptr);
    host.window.reset();
    host.core.reset();
    host.phone().queue().drain();
    late.tap({1, 1});
    EXPECT_THAT(host.errors(), IsEmpty());
}

/// What a host may call from a log listener, and on which line.
struct Meddling {
    std::string name;
    std::function<void(SessionHost&)> call;

    friend std::ostream& operator<<(std::ostream& out, const Meddling& meddling) {
        return out << meddling.name;
    }
};

struct MeddlingListener : Touches, testing::WithParamInterface<std::tuple<const char*, Meddling>> {};

TEST_P(MeddlingListener, DoesNoHarm) {
    const auto& [line, meddling] = GetParam();
    host.capture.log().setAllowedTags({allLogTags.begin(), allLogTags.end()});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    int meddled = 0;
    bool isOver = false;
    host.core.addLogListener([&](LogTag, LogLevel, const std::string& text) {
        if (!isOver && meddled < 3 && text.starts_with(line)) {
            ++meddled;
            meddling.call(host);
        }
    });
    (void)host.core.startRecording(VexConfiguration(false, false));
    host.advance(1);
    for (int tapCount = 1; tapCount <= 4; ++tapCount) {
        tap(tapCount);
    }
    (void)host.core.pauseRecording();
    tap();
    (void)host.core.stopRecording();
    host.advance(1);
    EXPECT_GT(meddled, 0);
    isOver = true;

    // Whatever state that has left it in, the library still works.
    (void)host.stop();
    host.service.chunks.clear();
    startSession();
    EXPECT_THAT(host.window->gestureRecognizers(), SizeIs(1));
    tap();
    host.advance(10);
    EXPECT_THAT(found(), ElementsAre("Tap"));
    (void)host.stop();
    host.phone().queue().drain();
    EXPECT_THAT(host.window->gestureRecognizers(), IsEmpty());
    // Of taps while paused or while nothing records, and of those whose judge is gone; and of the posting of
    // such lines when a fresh project knows no data centre yet.
    EXPECT_THAT(host.errorMessages(),
                Each(AnyOf("Could not record event - event callback is nil",
                           "Error during analysis: ViewAnalyzer was deallocated before completion.",
                           "Unexpected error while posting log")));
}

INSTANTIATE_TEST_SUITE_P(
    Touches, MeddlingListener,
    testing::Combine(
        testing::Values("Gesture Recognisers Attached.", "Gesture Recognisers Removed.", "Single Tap.",
                        "Quadruple Tap.", "Recorded event", "Could not record event"),
        testing::Values(Meddling{"Reset", [](SessionHost& host) { host.core.reset(); }},
                        Meddling{"Stop", [](SessionHost& host) { (void)host.core.stopRecording(); }},
                        Meddling{"StopAndStart",
                                 [](SessionHost& host) {
                                     (void)host.core.stopRecording();
                                     (void)host.core.startRecording(VexConfiguration(false, false));
                                 }},
                        Meddling{"Pause", [](SessionHost& host) { (void)host.core.pauseRecording(); }},
                        Meddling{"ResetAndInitialize",
                                 [](SessionHost& host) {
                                     host.core.reset();
                                     (void)host.initialize();
                                 }},
                        Meddling{"LogError", [](SessionHost& host) { host.core.logError("e"); }},
                        Meddling{"Touch", [](SessionHost& host) { Finger(host.window, 7).tap({1, 1}); }})),
    [](const auto& parameter) {
        std::string name;
        for (const char character :
             std::string(std::get<0>(parameter.param)) + std::get<1>(parameter.param).name) {
            if (std::isalnum(static_cast<unsigned char>(character)) != 0) {
                name += character;
            }
        }
        return name;
    });

}  // namespace
}  // namespace mireth
