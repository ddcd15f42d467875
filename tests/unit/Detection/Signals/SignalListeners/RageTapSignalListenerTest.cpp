#include "PrivateSide/Detection/Signals/SignalListeners/RageTapSignalListener.hpp"

#include <gtest/gtest.h>

#include "MirethVex/Platform/TapCounter.hpp"
#include "support/Finger.hpp"
#include "support/LogCapture.hpp"

namespace mireth {
namespace {

using test::Finger;
using test::infoLine;

struct RageTap : testing::Test {
    test::LogCapture capture{{}};
    std::shared_ptr<platform::Window> window = std::make_shared<platform::Window>(Size{390, 844});
    std::shared_ptr<GestureRecognizerObserver> observer = std::make_shared<GestureRecognizerObserver>();
    MirethGestureRecognizer recognizer{capture.log(), observer};
    std::optional<RageTapSignalListener> listener{std::in_place, capture.log(), recognizer};
    std::vector<std::optional<RageTapSignalData>> heard;
    AnyCancellable subscription = listener->signalData().sink(
        [this](const std::optional<RageTapSignalData>& data) { heard.push_back(data); });
    Finger finger{window};
    platform::TapCounter counter{0.35, 40};

    RageTap() { window->addGestureRecognizer(observer); }

    /// A tap of 80 ms, counted as a phone counts it.
    void tap(Point point, double seconds) {
        finger.begin(point, seconds, counter.countOf(point, seconds));
        finger.end(seconds + 0.08);
        counter.touchEnded(finger.touch());
    }
    void run(int taps, double interval) {
        for (int index = 0; index < taps; ++index) {
            tap({10, 20}, 100 + index * interval);
        }
    }
};

TEST_F(RageTap, ThereIsNoneBeforeTheFirst) {
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_FALSE(heard[0].has_value());
}

TEST_F(RageTap, TheFourthTapOfARunIsPublishedOnceWithItsTimeAndPlace) {
    run(4, 0.15);
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_EQ(heard[1]->timestamp(), 100530);
    EXPECT_EQ(heard[1]->target(), (Target{10, 20}));
    EXPECT_EQ(heard[1]->type(), EventType(SessionSignalType::rageTap));
}

TEST_F(RageTap, ThreeTapsAreNone) {
    run(3, 0.15);
    EXPECT_EQ(heard.size(), 1U);
}

TEST_F(RageTap, FifthTapOfARunReportsNothing) {
    run(5, 0.15);
    EXPECT_EQ(heard.size(), 2U);
}

TEST_F(RageTap, ARunOfEightIsOneRageTap) {
    run(8, 0.15);
    EXPECT_EQ(heard.size(), 2U);
}

TEST_F(RageTap, FourSlowTapsAreNone) {
    run(4, 0.43);
    EXPECT_EQ(heard.size(), 1U);
}

TEST_F(RageTap, EachRunHasItsOwn) {
    run(4, 0.15);
    for (int index = 0; index < 4; ++index) {
        tap({10, 20}, 200 + index * 0.15);
    }
    EXPECT_EQ(heard.size(), 3U);
}

TEST_F(RageTap, AFourthTapThatMovesIsNone) {
    run(3, 0.15);
    finger.begin({10, 20}, 100.45, counter.countOf({10, 20}, 100.45));
    finger.moveTo({10, 21});
    finger.end();
    EXPECT_EQ(finger.touch().tapCount, 4);
    EXPECT_EQ(heard.size(), 1U);
}

TEST_F(RageTap, WhoHearsOfItMayDropTheListener) {
    const auto dropping = listener->signalData().sink([this](const auto& data) {
        if (data) {
            listener.reset();
        }
    });
    finger.tap({10, 20}, 1, 4);
    finger.tap({10, 20}, 2, 4);
    EXPECT_EQ(heard.size(), 2U);
}

TEST_F(RageTap, TheListenerWritesItsMemoryUseLines) {
    capture.log().setAllowedTags({LogTag::memoryUse});
    listener.reset();
    listener.emplace(capture.log(), recognizer);
    capture.expectLines({infoLine(LogTag::memoryUse, "RageTapSignalListener: Succesfully deinitialized"),
                         infoLine(LogTag::memoryUse, "RageTapSignalListener: Succesfully initialized")});
    capture.log().setAllowedTags({});
}

}  // namespace
}  // namespace mireth
