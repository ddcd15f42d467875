#include "PrivateSide/Detection/Signals/SignalListeners/ErrorTapSignalListener.hpp"

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "support/LogCapture.hpp"

namespace mireth {
namespace {

using platform::TouchPhase;
using testing::ElementsAre;
using testing::IsEmpty;

/// What an error tap says.
struct Heard {
    std::int64_t timestamp;
    Target target;
    std::string message;
    bool operator==(const Heard&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Heard& heard) {
    return out << heard.timestamp << " (" << heard.target.x << ", " << heard.target.y << ") \""
               << heard.message << '"';
}

/// The listener over a real recogniser. The wall clock is set by hand; the uptime clock stands at 7 s.
struct ErrorTap : testing::Test {
    static constexpr std::int64_t tapTime = 1'700'000'000'000;

    test::LogCapture capture{{}};
    std::int64_t wallClock = tapTime;
    std::shared_ptr<GestureRecognizerObserver> touches = std::make_shared<GestureRecognizerObserver>();
    std::optional<MirethGestureRecognizer> recognizer{std::in_place, capture.log(), touches};
    ErrorSignalPublisher publisher;
    std::optional<ErrorTapSignalListener> listener{std::in_place, capture.log(), *recognizer, publisher,
                                                   [this] { return Date::fromTimestampMillis(wallClock); }};
    std::vector<Heard> heard;
    AnyCancellable subscription =
        listener->signalData().sink([this](const std::optional<ErrorTapSignalData>& signal) {
            if (signal) {
                heard.push_back({signal->timestamp(), signal->target(), signal->message()});
            }
        });

    platform::Touch touch(TouchPhase phase, Point at, int tapCount) const {
        platform::Touch touch;
        touch.identity = 1;
        touch.phase = phase;
        touch.locationInWindow = at;
        touch.tapCount = tapCount;
        touch.timestamp = 7;
        return touch;
    }
    void tap(Point at = {10, 20}, int tapCount = 1) const {
        const auto began = touch(TouchPhase::began, at, tapCount);
        touches->touchesBegan({began}, {7, {began}});
        const auto ended = touch(TouchPhase::ended, at, tapCount);
        touches->touchesEnded({ended}, {7, {ended}});
    }
    void swipe(Point at) const {
        const auto began = touch(TouchPhase::began, at, 1);
        touches->touchesBegan({began}, {7, {began}});
        const auto moved = touch(TouchPhase::moved, {at.x + 1, at.y}, 1);
        touches->touchesMoved({moved}, {7, {moved}});
        const auto ended = touch(TouchPhase::ended, {at.x + 1, at.y}, 1);
        touches->touchesEnded({ended}, {7, {ended}});
    }
    void cancel(Point at) const {
        const auto began = touch(TouchPhase::began, at, 1);
        touches->touchesBegan({began}, {7, {began}});
        const auto cancelled = touch(TouchPhase::cancelled, at, 1);
        touches->touchesCancelled({cancelled}, {7, {cancelled}});
    }
    /// An error logged `millis` after `tapTime`.
    void error(std::int64_t millis, std::optional<std::string> message = "e") {
        publisher.notifyLogError({tapTime + millis, std::move(message)});
    }
    static Heard signal(std::int64_t millis, Target target = {10, 20}, std::string message = "e") {
        return {tapTime + millis, target, std::move(message)};
    }
};

using ErrorTapDeathTest = ErrorTap;

TEST_F(ErrorTap, AnErrorBeforeAnyTapYieldsNothing) {
    error(0);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(ErrorTap, AnErrorAfterATapYieldsOneAtTheTapsPlaceAndTheErrorsTimeWithItsMessage) {
    tap();
    error(100, "no money");
    EXPECT_THAT(heard, ElementsAre(signal(100, {10, 20}, "no money")));
}

TEST_F(ErrorTap, AnErrorAtTheInstantOfTheTapPairs) {
    tap();
    error(0);
    EXPECT_THAT(heard, ElementsAre(signal(0)));
}

TEST_F(ErrorTap, TheDataNameTheSignal) {
    tap();
    std::optional<EventType> type;
    const auto other = listener->signalData().dropFirst().sink(
        [&type](const std::optional<ErrorTapSignalData>& signal) { type = signal->type(); });
    error(100);
    EXPECT_EQ(type, EventType(SessionSignalType::errorTap));
}

TEST_F(ErrorTap, AnErrorAfter499MillisecondsPairsAndOneAfter500DoesNot) {
    tap();
    error(500);
    EXPECT_THAT(heard, IsEmpty());
    error(499);
    EXPECT_THAT(heard, ElementsAre(signal(499)));
}

TEST_F(ErrorTap, EveryErrorWithinTheHalfSecondPairsWithTheSameTap) {
    tap();
    error(100, "one");
    error(300, "two");
    error(300, "two");
    EXPECT_THAT(heard, ElementsAre(signal(100, {10, 20}, "one"), signal(300, {10, 20}, "two"),
                                   signal(300, {10, 20}, "two")));
}

TEST_F(ErrorTap, AnErrorThatComesTooLateDoesNotDisarm) {
    tap();
    error(10'000);
    error(400);
    EXPECT_THAT(heard, ElementsAre(signal(400)));
}

TEST_F(ErrorTap, AnErrorWithoutAMessageCarriesTheEmptyOne) {
    tap();
    error(100, std::nullopt);
    EXPECT_THAT(heard, ElementsAre(signal(100, {10, 20}, "")));
}

TEST_F(ErrorTap, OnlyTheLatestTapCounts) {
    tap({10, 20});
    wallClock += 600;
    tap({30, 40});
    error(700);
    EXPECT_THAT(heard, ElementsAre(signal(700, {30, 40})));
}

TEST_F(ErrorTap, ALaterTapTakesThePlaceOfOneThatAnErrorPairedWith) {
    tap({10, 20});
    error(50);
    wallClock += 100;
    tap({30, 40});
    error(150);
    EXPECT_THAT(heard, ElementsAre(signal(50, {10, 20}), signal(150, {30, 40})));
}

TEST_F(ErrorTap, TheSecondThirdFourthAndFifthTapOfARunNeitherArmNorDisarm) {
    for (int count = 2; count <= 5; ++count) {
        tap({1, 1}, count);
    }
    error(0);
    EXPECT_THAT(heard, IsEmpty());
    tap({10, 20});
    for (int count = 2; count <= 5; ++count) {
        wallClock += 100;
        tap({1, 1}, count);
    }
    error(499);
    // The run is 400 ms old, its first tap 500.
    error(500);
    EXPECT_THAT(heard, ElementsAre(signal(499)));
}

TEST_F(ErrorTap, AMovedTouchNeitherArmsNorDisarms) {
    swipe({1, 1});
    error(0);
    EXPECT_THAT(heard, IsEmpty());
    tap();
    wallClock += 100;
    swipe({1, 1});
    error(200);
    EXPECT_THAT(heard, ElementsAre(signal(200)));
}

TEST_F(ErrorTap, ACancelledTouchNeitherArmsNorDisarms) {
    cancel({1, 1});
    error(0);
    EXPECT_THAT(heard, IsEmpty());
    tap();
    wallClock += 100;
    cancel({1, 1});
    error(200);
    EXPECT_THAT(heard, ElementsAre(signal(200)));
}

TEST_F(ErrorTap, AnErrorThatSeemsOlderThanTheTapPairs) {
    tap();
    error(-3'600'000);
    EXPECT_THAT(heard, ElementsAre(signal(-3'600'000)));
}

TEST_F(ErrorTap, TheDistanceIsTakenOnTheWallClockWhateverTheTouchSays) {
    // The touch's own time is 7 s after the device's start.
    tap();
    publisher.notifyLogError({7'100, "e"});
    error(600);
    EXPECT_THAT(heard, ElementsAre(Heard{7'100, {10, 20}, "e"}));
}

TEST_F(ErrorTap, ThePlaceIsNarrowedTo32Bits) {
    tap({0.1, 16'777'217});
    error(1);
    EXPECT_THAT(heard, ElementsAre(signal(1, {0.1F, 16'777'216})));
}

TEST_F(ErrorTap, AnErrorLoggedBeforeTheListenerWasMadeIsNotPaired) {
    tap();
    error(100);
    heard.clear();
    const ErrorTapSignalListener late(capture.log(), *recognizer, publisher,
                                      [] { return Date::fromTimestampMillis(tapTime); });
    int signals = 0;
    const auto other = late.signalData().sink(
        [&signals](const std::optional<ErrorTapSignalData>& signal) { signals += signal ? 1 : 0; });
    tap();
    EXPECT_EQ(signals, 0);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(ErrorTap, AListenerThatIsGoneHearsNothing) {
    tap();
    listener.reset();
    tap();
    error(100);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(ErrorTap, WhatHearsTheSignalMayDropTheListener) {
    tap();
    const auto other = listener->signalData().dropFirst().sink(
        [this](const std::optional<ErrorTapSignalData>&) { listener.reset(); });
    error(100);
    error(200);
    EXPECT_THAT(heard, ElementsAre(signal(100)));
}

TEST_F(ErrorTap, WhatHearsTheSignalMayLogAnotherError) {
    tap();
    const auto other =
        listener->signalData().dropFirst().sink([this](const std::optional<ErrorTapSignalData>& signal) {
            if (signal->message() == "first") {
                error(200, "second");
            }
        });
    error(100, "first");
    EXPECT_THAT(heard, ElementsAre(signal(100, {10, 20}, "first"), signal(200, {10, 20}, "second")));
}

TEST_F(ErrorTap, TheListenerOutlivesTheRecogniser) {
    tap();
    recognizer.reset();
    error(100);
    EXPECT_THAT(heard, ElementsAre(signal(100)));
}

TEST_F(ErrorTapDeathTest, ADistanceThatDoesNotFitEndsTheProcess) {
    tap();
    EXPECT_DEATH(publisher.notifyLogError({std::numeric_limits<std::int64_t>::min(), "e"}),
                 "Fatal error: Subtraction results in an overflow");
}

}  // namespace
}  // namespace mireth
