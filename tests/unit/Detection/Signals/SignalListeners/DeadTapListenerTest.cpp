#include "PrivateSide/Detection/Signals/SignalListeners/DeadTapListener.hpp"

#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "MirethVex/Platform/TextViews.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "support/Finger.hpp"
#include "support/LogCapture.hpp"
#include "support/ManualMainQueue.hpp"

namespace mireth {
namespace {

using platform::Seconds;
using platform::View;
using test::errorLine;
using testing::ElementsAre;
using testing::IsEmpty;

const auto analyzerWasGone =
    errorLine(LogTag::signal, "Error during analysis: ViewAnalyzer was deallocated before completion.");

struct Heard {
    std::int64_t timestamp;
    Target target;
    bool operator==(const Heard&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Heard& heard) {
    return out << heard.timestamp << " (" << heard.target.x << ", " << heard.target.y << ")";
}

/// The listener over a real recogniser on a window with a button and a label, on a slow device.
struct DeadTap : testing::Test {
    test::LogCapture capture{{LogTag::signal}};
    std::shared_ptr<test::ManualMainQueue> queue = std::make_shared<test::ManualMainQueue>();
    std::shared_ptr<platform::Window> window = std::make_shared<platform::Window>(Size{390, 844});
    std::shared_ptr<View> button = std::make_shared<View>();
    std::shared_ptr<platform::Label> label = std::make_shared<platform::Label>();
    std::shared_ptr<GestureRecognizerObserver> observer = std::make_shared<GestureRecognizerObserver>();
    MirethGestureRecognizer recognizer{capture.log(), observer};
    std::shared_ptr<ViewAnalyzer> analyzer =
        std::make_shared<ViewAnalyzer>(capture.log(), ViewContentComparator(window), LayerComparator(window),
                                       queue, DevicePerformanceEvaluator(0));
    std::optional<DeadTapListener> listener{std::in_place, capture.log(), recognizer, analyzer};
    test::Finger finger{window};
    std::vector<Heard> heard;
    AnyCancellable subscription =
        listener->signalData().sink([this](const std::optional<DeadTapSignalData>& signal) {
            if (signal) {
                heard.push_back({signal->timestamp(), signal->target()});
            }
        });

    DeadTap() {
        button->setFrame({20, 40, 64, 32});
        button->mutableLayer().appearance.backgroundColor = Color{0, 0, 1, 1};
        label->content.text = "Total: 1";
        window->addSubview(button);
        window->addSubview(label);
        window->addGestureRecognizer(observer);
    }

    void tap(double seconds = 7) { finger.tap({30, 50}, seconds); }
    void wait(double seconds = 2.0) const { queue->advance(Seconds(seconds)); }
    /// What the app does in answer to the one tap of the test; true when that tap is then dead.
    bool isDeadAfter(const std::function<void()>& reaction) {
        heard.clear();
        tap();
        reaction();
        wait();
        return heard == std::vector{deadTapAt(7)};
    }
    static Heard deadTapAt(std::int64_t seconds) { return {seconds * 1000, {30, 50}}; }
};

TEST_F(DeadTap, ATapThatChangesNothingYieldsOneAfterTheWaitAndNoMore) {
    tap();
    wait(1.875);
    EXPECT_THAT(heard, IsEmpty());
    wait(0.125);
    EXPECT_THAT(heard, ElementsAre(deadTapAt(7)));
    wait(60);
    EXPECT_EQ(heard.size(), 1U);
}

TEST_F(DeadTap, TheDataNameTheSignal) {
    std::optional<EventType> type;
    const auto other = listener->signalData().dropFirst().sink(
        [&type](const std::optional<DeadTapSignalData>& signal) { type = signal->type(); });
    tap();
    wait();
    EXPECT_EQ(type, EventType(SessionSignalType::deadTap));
}

TEST_F(DeadTap, TheWaitIsAsLongAsSuitsTheDevice) {
    for (const auto& [mebibytes, seconds] : {std::pair{2999U, 2.0}, {3000U, 1.5}, {6000U, 1.0}}) {
        const auto other = std::make_shared<ViewAnalyzer>(
            capture.log(), ViewContentComparator(window), LayerComparator(window), queue,
            DevicePerformanceEvaluator(std::uint64_t{mebibytes} << 20U));
        listener.emplace(capture.log(), recognizer, other);
        int signals = 0;
        const auto counting = listener->signalData().sink(
            [&signals](const std::optional<DeadTapSignalData>& signal) { signals += signal ? 1 : 0; });
        tap();
        wait(seconds - 0.125);
        EXPECT_EQ(signals, 0) << seconds;
        wait(0.125);
        EXPECT_EQ(signals, 1) << seconds;
    }
}

TEST_F(DeadTap, AFrameThatMovesBy4Point9IsDeadAndBy5IsNot) {
    // The anchor point alone: the position, compared exactly, stays.
    double& anchor = button->mutableLayer().geometry.anchorPoint.x;
    EXPECT_TRUE(isDeadAfter([&] { anchor = 0.5 - 4.9 / 64; }));
    anchor = 0.5;
    EXPECT_FALSE(isDeadAfter([&] { anchor = 0.5 - 5.0 / 64; }));
}

TEST_F(DeadTap, AViewThatIsMovedByItsPositionIsAliveHoweverLittle) {
    EXPECT_FALSE(isDeadAfter([&] { button->setFrame({20.5, 40, 64, 32}); }));
}

TEST_F(DeadTap, ScrollingBy4Point9IsDeadAndBy5IsNot) {
    Rect& bounds = button->mutableLayer().geometry.bounds;
    EXPECT_TRUE(isDeadAfter([&] { bounds.y = 4.9; }));
    bounds.y = 0;
    EXPECT_FALSE(isDeadAfter([&] { bounds.y = 5.0; }));
}

TEST_F(DeadTap, AColourThatChangesInItsAlphaOnlyIsDead) {
    EXPECT_TRUE(isDeadAfter([&] { button->mutableLayer().appearance.backgroundColor->alpha = 0.5; }));
    EXPECT_FALSE(isDeadAfter([&] { button->mutableLayer().appearance.backgroundColor->red = 0.5; }));
}

TEST_F(DeadTap, ALabelWhoseTextChangesIsAlive) {
    EXPECT_FALSE(isDeadAfter([&] { label->content.text = "Total: 2"; }));
}

TEST_F(DeadTap, AViewThatComesOrGoesIsAlive) {
    const auto added = std::make_shared<View>();
    EXPECT_FALSE(isDeadAfter([&] { window->addSubview(added); }));
    EXPECT_FALSE(isDeadAfter([&] { added->removeFromSuperview(); }));
}

TEST_F(DeadTap, AnAnimationThatHasReturnedIsDeadAndOneThatStillRunsIsNot) {
    const auto animated = std::make_shared<platform::Layer>(button->layer());
    animated->appearance.cornerRadius = 9;
    EXPECT_FALSE(isDeadAfter([&] { button->setPresentationLayer(animated); }));
    button->setPresentationLayer(nullptr);
    EXPECT_TRUE(isDeadAfter([&] {
        button->setPresentationLayer(animated);
        wait(1.5);
        button->setPresentationLayer(nullptr);
    }));
}

TEST_F(DeadTap, AReactionAfterTheWaitComesTooLate) {
    tap();
    queue->postAfter(Seconds(2.125), [this] { label->content.text = "late"; });
    wait(3);
    EXPECT_THAT(heard, ElementsAre(deadTapAt(7)));
}

TEST_F(DeadTap, SeveralTapsInFlightAreJudgedEachOnItsOwn) {
    tap(1);
    wait(0.5);
    tap(2);
    label->content.text = "answers the second, and is seen by the first";
    wait(0.5);
    tap(3);
    wait(1);
    EXPECT_THAT(heard, IsEmpty());
    wait(1);
    EXPECT_THAT(heard, ElementsAre(deadTapAt(3)));
}

TEST_F(DeadTap, TapsInFlightThatAreAllDeadAreHeardInTheirOrder) {
    for (int second = 1; second <= 10; ++second) {
        tap(second);
        wait(0.125);
    }
    wait(2);
    ASSERT_EQ(heard.size(), 10U);
    EXPECT_EQ(heard.front(), deadTapAt(1));
    EXPECT_EQ(heard.back(), deadTapAt(10));
}

TEST_F(DeadTap, OtherGesturesAreNotWaitedFor) {
    for (int count = 2; count <= 5; ++count) {
        finger.tap({30, 50}, 7, count);
    }
    finger.begin({30, 50});
    finger.moveTo({30, 51});
    finger.end();
    finger.begin({30, 50});
    finger.cancel();
    wait();
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(DeadTap, AnAnalyzerThatIsGoneBeforeTheWaitEndsIsLoggedForEachTap) {
    tap();
    tap();
    analyzer.reset();
    listener.reset();
    wait();
    EXPECT_THAT(heard, IsEmpty());
    capture.expectLines({analyzerWasGone, analyzerWasGone});
}

TEST_F(DeadTap, TheResultForAListenerThatIsGoneIsDroppedSilently) {
    tap();
    listener.reset();
    wait();
    EXPECT_THAT(heard, IsEmpty());
    tap();
    wait();
    EXPECT_THAT(heard, IsEmpty()) << "nor does it hear of new taps";
}

/// Does what the test says whenever it is asked for its subviews.
class Scripted final : public View {
  public:
    const std::vector<std::shared_ptr<View>>& subviews() const override {
        if (onSubviews) {
            onSubviews();
        }
        return View::subviews();
    }
    std::function<void()> onSubviews;
};

TEST_F(DeadTap, ViewsThatThrowYieldALineAndNoSignal) {
    const auto scripted = std::make_shared<Scripted>();
    window->addSubview(scripted);
    const auto breakDown = [] { throw std::runtime_error("widget is gone"); };
    const auto line = errorLine(LogTag::signal, "Error during analysis: widget is gone");
    finger.begin({30, 50}, 7);
    scripted->onSubviews = breakDown;
    finger.end();
    capture.expectLines({line});
    scripted->onSubviews = nullptr;
    tap();
    scripted->onSubviews = breakDown;
    wait();
    capture.expectLines({line});
    EXPECT_THAT(heard, IsEmpty());
    scripted->onSubviews = nullptr;
    EXPECT_TRUE(isDeadAfter([] {})) << "the next one is not affected";
}

TEST_F(DeadTap, AWindowThatIsGoneYieldsNothing) {
    tap();
    window.reset();
    wait();
    tap();
    wait();
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(DeadTap, WhatHearsTheSignalMayDropTheListener) {
    const auto other = listener->signalData().dropFirst().sink(
        [this](const std::optional<DeadTapSignalData>&) { listener.reset(); });
    tap(1);
    tap(2);
    wait();
    EXPECT_THAT(heard, ElementsAre(deadTapAt(1)));
}

TEST_F(DeadTap, WhatHearsTheSignalMayTapAgain) {
    const auto other =
        listener->signalData().dropFirst().sink([this](const std::optional<DeadTapSignalData>& signal) {
            if (signal->timestamp() == 1000) {
                tap(2);
            }
        });
    tap(1);
    wait();
    EXPECT_THAT(heard, ElementsAre(deadTapAt(1)));
    wait();
    EXPECT_THAT(heard, ElementsAre(deadTapAt(1), deadTapAt(2)));
}

TEST_F(DeadTap, ViewsThatAreCapturedMayDropTheListener) {
    const auto scripted = std::make_shared<Scripted>();
    window->addSubview(scripted);
    finger.begin({30, 50});
    scripted->onSubviews = [this] {
        listener.reset();
        analyzer.reset();
    };
    finger.end();
    wait();
    EXPECT_THAT(heard, IsEmpty());
    capture.expectLines({analyzerWasGone});
}

}  // namespace
}  // namespace mireth
