#include "PrivateSide/Detection/Core/GestureRecognizerObserver.hpp"

#include <gmock/gmock.h>

#include <string>

#include "support/Finger.hpp"

namespace mireth {
namespace {

using platform::Touch;
using platform::TouchEvent;
using platform::TouchPhase;
using test::Finger;
using testing::ElementsAre;
using State = platform::GestureRecognizer::State;

struct Observer : testing::Test {
    std::shared_ptr<GestureRecognizerObserver> observer = std::make_shared<GestureRecognizerObserver>();
    std::shared_ptr<platform::Window> window = std::make_shared<platform::Window>(Size{100, 100});
    std::vector<std::string> heard;
    std::vector<AnyCancellable> subscriptions;

    /// Writes down what comes out of `stream`, and the observer's state at that moment.
    void listen(const std::string& name, const AnyPublisher<GestureRecognizerObserver::Gesture>& stream) {
        subscriptions.push_back(stream.sink([this, name](const GestureRecognizerObserver::Gesture& gesture) {
            heard.push_back(name + " " + std::to_string(gesture.touches.size()) + " of " +
                            std::to_string(gesture.event.touches.size()) + ", state " +
                            std::to_string(static_cast<int>(observer->state())));
        }));
    }
    void listenToAll() {
        listen("began", observer->touchesBegan());
        listen("moved", observer->touchesMoved());
        listen("ended", observer->touchesEnded());
        listen("cancelled", observer->touchesCancelled());
    }
    static Touch touch(std::uint64_t identity, TouchPhase phase) {
        Touch touch;
        touch.identity = identity;
        touch.phase = phase;
        return touch;
    }
};

TEST_F(Observer, IsEnabledAndTakesNothingFromViewsAndIsItsOwnDelegate) {
    EXPECT_TRUE(observer->isEnabled());
    EXPECT_FALSE(observer->cancelsTouchesInView());
    ASSERT_NE(observer->delegate(), nullptr);
    platform::GestureRecognizer other;
    EXPECT_TRUE(observer->delegate()->shouldRecognizeSimultaneouslyWith(*observer, other));
    EXPECT_EQ(observer->state(), State::possible);
}

TEST_F(Observer, EachCallbackSetsItsStateAndSendsOnItsStream) {
    listenToAll();
    const std::vector<Touch> touches{touch(1, TouchPhase::began)};
    const TouchEvent event{1, {touch(1, TouchPhase::began), touch(2, TouchPhase::stationary)}};
    observer->touchesBegan(touches, event);
    observer->touchesMoved(touches, event);
    observer->touchesEnded(touches, event);
    observer->touchesCancelled(touches, event);
    EXPECT_THAT(heard, ElementsAre("began 1 of 2, state 1", "moved 1 of 2, state 2", "ended 1 of 2, state 3",
                                   "cancelled 1 of 2, state 4"));
}

TEST_F(Observer, InAWindowItStartsEverySequenceAtPossible) {
    listenToAll();
    window->addGestureRecognizer(observer);
    Finger(window).tap({1, 1});
    EXPECT_THAT(heard, ElementsAre("began 1 of 1, state 1", "ended 1 of 1, state 3"));
    EXPECT_EQ(observer->state(), State::possible);
}

TEST_F(Observer, TheAppsRecognisersAndViewsKeepTheirTouchesInWhicheverOrder) {
    struct Counting final : platform::GestureRecognizer {
        int ended = 0;
        void touchesEnded(const std::vector<Touch>& touches, const TouchEvent& event) override {
            GestureRecognizer::touchesEnded(touches, event);
            setState(State::ended);
            ++ended;
        }
    };
    struct CountingView final : platform::View {
        int ended = 0;
        void touchesEnded(const std::vector<Touch>&, const TouchEvent&) override { ++ended; }
    };
    const auto before = std::make_shared<Counting>();
    const auto after = std::make_shared<Counting>();
    before->setCancelsTouchesInView(false);
    after->setCancelsTouchesInView(false);
    // Two of the app's own stop each other, so each stands alone beside the observer.
    for (const auto& order : {std::vector<std::shared_ptr<platform::GestureRecognizer>>{before, observer},
                              std::vector<std::shared_ptr<platform::GestureRecognizer>>{observer, after}}) {
        const auto touched = std::make_shared<platform::Window>(Size{100, 100});
        const auto view = std::make_shared<CountingView>();
        view->setFrame({0, 0, 50, 50});
        touched->addSubview(view);
        for (const auto& recognizer : order) {
            touched->addGestureRecognizer(recognizer);
        }
        Finger(touched).tap({1, 1});
        EXPECT_EQ(view->ended, 1);
    }
    EXPECT_EQ(before->ended, 1);
    EXPECT_EQ(after->ended, 1);
}

TEST_F(Observer, ASubscriberMayDropTheObserverWhileItSends) {
    subscriptions.push_back(observer->touchesBegan().sink([this](const GestureRecognizerObserver::Gesture&) {
        window->removeGestureRecognizer(observer);
        observer.reset();
        heard.emplace_back("first");
    }));
    subscriptions.push_back(observer->touchesBegan().sink(
        [this](const GestureRecognizerObserver::Gesture&) { heard.emplace_back("second"); }));
    window->addGestureRecognizer(observer);
    Finger(window).tap({1, 1});
    EXPECT_THAT(heard, ElementsAre("first", "second"));
}

}  // namespace
}  // namespace mireth
