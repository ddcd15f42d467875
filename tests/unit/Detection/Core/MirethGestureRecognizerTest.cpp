#include "PrivateSide/Detection/Core/MirethGestureRecognizer.hpp"

#include <gmock/gmock.h>

#include <limits>
#include <optional>
#include <string>

#include "support/Finger.hpp"
#include "support/LogCapture.hpp"

namespace mireth {
namespace {

using platform::Touch;
using platform::TouchPhase;
using test::Finger;
using test::infoLine;
using testing::ElementsAre;
using testing::IsEmpty;

struct Recogniser : testing::Test {
    test::LogCapture capture{{}};
    std::shared_ptr<platform::Window> window = std::make_shared<platform::Window>(Size{390, 844});
    std::shared_ptr<platform::View> view = addView();
    std::shared_ptr<GestureRecognizerObserver> observer = std::make_shared<GestureRecognizerObserver>();
    std::optional<MirethGestureRecognizer> recognizer{std::in_place, capture.log(), observer};
    std::vector<GestureEvent> gestures;
    AnyCancellable subscription = recognizer->recognizedGestures().sink(
        [this](const GestureEvent& gesture) { gestures.push_back(gesture); });
    Finger finger{window};

    Recogniser() { window->addGestureRecognizer(observer); }

    std::shared_ptr<platform::View> addView() {
        auto added = std::make_shared<platform::View>();
        added->setFrame({0, 0, 390, 844});
        window->addSubview(added);
        return added;
    }
    void allowLines() { capture.log().setAllowedTags({LogTag::gesture}); }
    GestureEvent tapAt(Point point, std::int64_t millis) const {
        return GestureEvent::tap({point.x, point.y, millis}, view);
    }
    GestureEvent quadrupleTapAt(Point point, std::int64_t millis) const {
        return GestureEvent::quadrupleTap({point.x, point.y, millis}, view);
    }
    static Touch touch(std::uint64_t identity, TouchPhase phase) {
        Touch touch;
        touch.identity = identity;
        touch.phase = phase;
        return touch;
    }
};

TEST_F(Recogniser, ATouchThatBeginsAndEndsInPlaceIsOneTap) {
    finger.tap({10, 20}, 1.25);
    EXPECT_THAT(gestures, ElementsAre(tapAt({10, 20}, 1250)));
}

TEST_F(Recogniser, ATapCarriesTheTimeAndThePlaceOfItsEnd) {
    finger.begin({10, 20}, 1.0);
    finger.endAt({13, 24}, 1.08);
    finger.begin({10, 20}, 2.0, 4);
    finger.endAt({9, 18}, 2.1);
    EXPECT_THAT(gestures, ElementsAre(tapAt({13, 24}, 1080), quadrupleTapAt({9, 18}, 2100)));
}

TEST_F(Recogniser, FourQuickTapsAreATapAndAQuadrupleTap) {
    for (int tap = 1; tap <= 4; ++tap) {
        finger.tap({10, 20}, tap, tap);
    }
    EXPECT_THAT(gestures, ElementsAre(tapAt({10, 20}, 1000), quadrupleTapAt({10, 20}, 4000)));
}

TEST_F(Recogniser, TheSecondThirdAndFifthTapsAndLaterOnesAreNothing) {
    allowLines();
    for (const int tapCount : {2, 3, 5, 6, 8, 40, 0, -1}) {
        finger.tap({10, 20}, 1, tapCount);
    }
    EXPECT_THAT(gestures, IsEmpty());
    capture.expectLines({});
}

TEST_F(Recogniser, TapsAreLoggedWithTheirLocation) {
    allowLines();
    finger.tap({10, 20.5}, 1, 1);
    finger.tap({0.1, 844}, 1, 4);
    capture.expectLines({infoLine(LogTag::gesture, "Single Tap. [\"location\": \"(10.0, 20.5)\"]"),
                         infoLine(LogTag::gesture, "Quadruple Tap. [\"location\": \"(0.1, 844.0)\"]")});
}

TEST_F(Recogniser, ATouchThatMovesIsUndefinedWhateverItsTapCount) {
    allowLines();
    for (const int tapCount : {1, 2, 4}) {
        finger.begin({10, 20}, 1, tapCount);
        finger.moveTo({200, 20});
        finger.moveTo({10, 20});
        finger.end();
    }
    EXPECT_THAT(gestures,
                ElementsAre(GestureEvent::undefined(), GestureEvent::undefined(), GestureEvent::undefined()));
    capture.expectLines({});
}

TEST_F(Recogniser, AMoveOfNoLengthIsAMove) {
    finger.begin({10, 20});
    finger.moveTo({10, 20});
    finger.end();
    EXPECT_THAT(gestures, ElementsAre(GestureEvent::undefined()));
}

TEST_F(Recogniser, ACancelledTouchIsNothingAndNeitherIsItsLateEnd) {
    finger.begin({10, 20});
    finger.cancel();
    finger.end();
    // A toolkit that sends it past the window's own bookkeeping.
    const auto ended = touch(1, TouchPhase::ended);
    observer->touchesEnded({ended}, {1, {ended}});
    EXPECT_THAT(gestures, IsEmpty());
}

TEST_F(Recogniser, ATouchNeverSeenToBeginIsNothing) {
    const auto moved = touch(9, TouchPhase::moved);
    const auto ended = touch(9, TouchPhase::ended);
    const auto cancelled = touch(9, TouchPhase::cancelled);
    observer->touchesMoved({moved}, {1, {moved}});
    observer->touchesEnded({ended}, {1, {ended}});
    observer->touchesCancelled({cancelled}, {1, {cancelled}});
    EXPECT_THAT(gestures, IsEmpty());
}

TEST_F(Recogniser, ABeginReplacesWhatWasSeenOfTheSameTouch) {
    const auto began = touch(9, TouchPhase::began);
    const auto moved = touch(9, TouchPhase::moved);
    const auto ended = touch(9, TouchPhase::ended);
    observer->touchesBegan({began}, {1, {began}});
    observer->touchesMoved({moved}, {1, {moved}});
    observer->touchesBegan({began}, {1, {began}});
    observer->touchesEnded({ended}, {1, {ended}});
    EXPECT_THAT(gestures, ElementsAre(GestureEvent::tap({0, 0, 0}, {})));
}

TEST_F(Recogniser, ATouchEndsOnce) {
    finger.tap({10, 20});
    const auto ended = touch(1, TouchPhase::ended);
    observer->touchesEnded({ended}, {1, {ended}});
    EXPECT_EQ(gestures.size(), 1U);
}

TEST_F(Recogniser, SeveralFingersAreEachJudgedByThemselves) {
    Finger first(window, 1);
    Finger second(window, 2);
    Finger third(window, 3);
    first.begin({1, 1}, 1);
    second.begin({2, 2}, 2);
    second.moveTo({3, 2});
    third.begin({3, 3}, 3, 4);
    first.end();
    third.cancel();
    second.end();
    EXPECT_THAT(gestures, ElementsAre(tapAt({1, 1}, 1000), GestureEvent::undefined()));
}

TEST_F(Recogniser, TouchesOfOneEventAreHandledInTheirOrder) {
    const std::vector<Touch> began{touch(1, TouchPhase::began), touch(2, TouchPhase::began)};
    std::vector<Touch> ended{touch(2, TouchPhase::ended), touch(1, TouchPhase::ended)};
    ended[0].timestamp = 2;
    ended[1].timestamp = 1;
    window->sendEvent({1, began});
    window->sendEvent({2, ended});
    EXPECT_THAT(gestures,
                ElementsAre(GestureEvent::tap({0, 0, 2000}, {}), GestureEvent::tap({0, 0, 1000}, {})));
}

TEST_F(Recogniser, ATapOnAViewThatIsGoneCarriesNoView) {
    finger.begin({10, 20});
    view->removeFromSuperview();
    view.reset();
    finger.end();
    EXPECT_THAT(gestures, ElementsAre(GestureEvent::tap({10, 20, 1000}, {})));
}

TEST_F(Recogniser, EventTimesAreCutOffToWholeMilliseconds) {
    finger.tap({}, 1.9999);
    finger.tap({}, -1.9999);
    finger.tap({}, 9.2e15);
    EXPECT_THAT(gestures,
                ElementsAre(tapAt({}, 1999), tapAt({}, -1999), tapAt({}, 9'200'000'000'000'000'000)));
}

TEST_F(Recogniser, RemovedFromTheWindowInTheMiddleOfATouchItForgetsIt) {
    finger.begin({10, 20});
    window->removeGestureRecognizer(observer);
    finger.end();
    window->addGestureRecognizer(observer);
    const auto ended = touch(1, TouchPhase::ended);
    observer->touchesEnded({ended}, {1, {ended}});
    EXPECT_THAT(gestures, IsEmpty());
}

TEST_F(Recogniser, OnceItIsGoneNothingMoreIsHeard) {
    finger.begin({10, 20});
    recognizer.reset();
    finger.end();
    EXPECT_THAT(gestures, IsEmpty());
}

TEST_F(Recogniser, ASubscriberMayDropItAndTheOtherTouchesOfTheEventAreNothing) {
    std::vector<std::string> heard;
    const auto dropping = recognizer->recognizedGestures().sink([&](const GestureEvent& gesture) {
        heard.emplace_back(gesture.key());
        recognizer.reset();
    });
    window->sendEvent({1, {touch(1, TouchPhase::began), touch(2, TouchPhase::began)}});
    window->sendEvent({1, {touch(1, TouchPhase::ended), touch(2, TouchPhase::ended)}});
    EXPECT_THAT(heard, ElementsAre("SingleTap"));
}

TEST_F(Recogniser, ALogListenerMayDropIt) {
    allowLines();
    capture.log().addLogListener([this](LogTag, LogLevel, const std::string&) { recognizer.reset(); });
    finger.tap({10, 20});
    EXPECT_FALSE(recognizer.has_value());
    capture.expectLines({infoLine(LogTag::gesture, "Single Tap. [\"location\": \"(10.0, 20.0)\"]")});
}

TEST_F(Recogniser, ATouchSentByASubscriberComesAfterTheOneItHears) {
    Finger other(window, 2);
    const auto sending = recognizer->recognizedGestures().sink([&](const GestureEvent& gesture) {
        if (gesture.getTouchData()->eventTime == 1000) {
            other.tap({5, 5}, 2);
        }
    });
    const auto last = recognizer->recognizedGestures().sink(
        [this](const GestureEvent& gesture) { gestures.push_back(gesture); });
    finger.tap({10, 20}, 1);
    EXPECT_THAT(gestures, ElementsAre(tapAt({10, 20}, 1000), tapAt({10, 20}, 1000), tapAt({5, 5}, 2000),
                                      tapAt({5, 5}, 2000)));
}

TEST_F(Recogniser, WritesItsMemoryUseLines) {
    capture.log().setAllowedTags({LogTag::memoryUse});
    {
        const MirethGestureRecognizer other(capture.log(), std::make_shared<GestureRecognizerObserver>());
    }
    capture.expectLines({infoLine(LogTag::memoryUse, "MirethGestureRecognizer: Succesfully initialized"),
                         infoLine(LogTag::memoryUse, "MirethGestureRecognizer: Succesfully deinitialized")});
    capture.log().setAllowedTags({});
}

struct RecogniserDeathTest : Recogniser, testing::WithParamInterface<double> {};

TEST_P(RecogniserDeathTest, ATimeThatIsNotFiniteOrDoesNotFitIsFatal) {
    // Past the window, which lets no such touch in.
    const auto tap = [this](int count) {
        Touch end = touch(1, TouchPhase::ended);
        end.timestamp = GetParam();
        end.tapCount = count;
        recognizer->gestureRecognizer()->touchesBegan({touch(1, TouchPhase::began)}, {});
        recognizer->gestureRecognizer()->touchesEnded({end}, {});
    };
    EXPECT_DEATH(tap(1), "Fatal error: The timestamp of a touch");
    EXPECT_DEATH(tap(4), "Fatal error: The timestamp of a touch");
    // Where no time is asked for nothing is wrong with it.
    tap(2);
    EXPECT_THAT(gestures, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Times, RecogniserDeathTest,
                         testing::Values(std::numeric_limits<double>::quiet_NaN(),
                                         std::numeric_limits<double>::infinity(),
                                         -std::numeric_limits<double>::infinity(), 9.3e15, -9.3e15));

}  // namespace
}  // namespace mireth
