// How a window brings touches to its recognisers and views.
#include <limits>
#include <stdexcept>

#include "TouchJournal.hpp"

namespace mireth::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using State = GestureRecognizer::State;

using TouchDelivery = TouchedWindow;

TEST_F(TouchDelivery, RecognisersAreToldInTheirOrderBeforeTheView) {
    addRecognizer("R");
    addRecognizer("S");
    send(1, TouchPhase::began);
    send(1, TouchPhase::moved);
    send(1, TouchPhase::stationary);
    send(1, TouchPhase::ended);
    EXPECT_THAT(take(), ElementsAre("R began 1", "S began 1", "V began 1", "R moved 1", "S moved 1",
                                    "V moved 1", "R ended 1", "S ended 1", "V ended 1"));
}

TEST_F(TouchDelivery, ACancelledTouchIsCancelledForAll) {
    addRecognizer("R");
    send(1, TouchPhase::began);
    send(1, TouchPhase::cancelled);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R cancelled 1", "V cancelled 1"));
}

TEST_F(TouchDelivery, SeveralTouchesOfOnePhaseComeInOneCall) {
    addRecognizer("R");
    const auto other = addView("W");
    send({touch(1, TouchPhase::began), touch(2, TouchPhase::began, other), touch(3, TouchPhase::began)});
    EXPECT_THAT(take(), ElementsAre("R began 1 2 3", "V began 1 3", "W began 2"));
    send({touch(1, TouchPhase::ended), touch(2, TouchPhase::moved, other), touch(3, TouchPhase::moved),
          touch(4, TouchPhase::began)});
    EXPECT_THAT(take(), ElementsAre("R began 4", "R moved 2 3", "R ended 1", "V began 4", "W moved 2",
                                    "V moved 3", "V ended 1"));
}

TEST_F(TouchDelivery, ATouchStaysWithTheViewItBeganIn) {
    const auto other = addView("W");
    send(1, TouchPhase::began);
    send({touch(1, TouchPhase::ended, other)});
    EXPECT_THAT(take(), ElementsAre("V began 1", "V ended 1"));
}

TEST_F(TouchDelivery, ATouchAtNoUsableTimeOrPlaceIsIgnoredWithOneLine) {
    addRecognizer("R");
    testing::internal::CaptureStderr();
    for (const double odd :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity(), 9.3e15, -9.3e15}) {
        const auto numbersOf = [](Touch& touch) -> std::vector<double*> {
            return {&touch.timestamp, &touch.locationInWindow.x, &touch.locationInWindow.y};
        };
        for (std::size_t i = 0; i < 3; ++i) {
            Touch began = touch(1, TouchPhase::began);
            *numbersOf(began)[i] = odd;
            send({began});
            send(1, TouchPhase::ended);
        }
    }
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "M-VEX: touches at no usable time or place are ignored\n");
    tap(2);
    EXPECT_THAT(take(), ElementsAre("R began 2", "V began 2", "R ended 2", "V ended 2"));
}

TEST_F(TouchDelivery, ATouchThatEndsAtNoUsableTimeIsCancelledSoThatNobodyWaitsForItsEnd) {
    const auto recognizer = addRecognizer("R");
    setStateOn(TouchPhase::began, State::began, recognizer);
    send(1, TouchPhase::began);
    Touch moved = touch(1, TouchPhase::moved);
    Touch ended = touch(1, TouchPhase::ended);
    moved.timestamp = ended.timestamp = std::numeric_limits<double>::quiet_NaN();
    testing::internal::CaptureStderr();
    send({moved});
    send({ended, touch(2, TouchPhase::began)});
    send(2, TouchPhase::ended);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R began 2", "R cancelled 1", "V began 2",
                                    "V cancelled 1", "R ended 2", "V ended 2"));
    EXPECT_EQ(recognizer->state(), State::possible);
}

TEST_F(TouchDelivery, ATouchWhoseViewIsGoneStillReachesTheRecognisers) {
    addRecognizer("R");
    send(1, TouchPhase::began);
    view->removeFromSuperview();
    view.reset();
    send(1, TouchPhase::ended);
    send(2, TouchPhase::began);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R ended 1", "R began 2"));
}

TEST_F(TouchDelivery, ATouchThatWasNeverSeenToBeginIsIgnored) {
    addRecognizer("R");
    send(1, TouchPhase::moved);
    send(1, TouchPhase::ended);
    send(2, TouchPhase::cancelled);
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(TouchDelivery, ATouchEndsOnce) {
    addRecognizer("R");
    tap(1);
    send(1, TouchPhase::ended);
    send(1, TouchPhase::cancelled);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R ended 1", "V ended 1"));
}

TEST_F(TouchDelivery, ATouchThatBeginsAgainHasLostItsEndAndIsCancelledFirst) {
    addRecognizer("R");
    send(1, TouchPhase::began);
    send(1, TouchPhase::began);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R cancelled 1", "V cancelled 1", "R began 1",
                                    "V began 1"));
    send(1, TouchPhase::ended);
    EXPECT_THAT(take(), ElementsAre("R ended 1", "V ended 1"));
}

TEST_F(TouchDelivery, StatesAreBackToPossibleWhenTheLastFingerIsUp) {
    const auto recognizer = addRecognizer("R");
    setStateOn(TouchPhase::began, State::began, recognizer);
    send(1, TouchPhase::began);
    send(2, TouchPhase::began);
    send(1, TouchPhase::ended);
    EXPECT_EQ(recognizer->state(), State::began);
    send(2, TouchPhase::cancelled);
    EXPECT_EQ(recognizer->state(), State::possible);
}

TEST_F(TouchDelivery, TheStateOfTheEndIsSeenUntilTheViewsHaveBeenTold) {
    const auto recognizer = addRecognizer("R");
    setStateOn(TouchPhase::ended, State::ended, recognizer);
    std::optional<State> seen;
    view->reaction = [&](TouchPhase) { seen = recognizer->state(); };
    tap(1);
    EXPECT_EQ(seen, State::ended);
    EXPECT_EQ(recognizer->state(), State::possible);
}

TEST_F(TouchDelivery, ARecogniserAddedDuringATouchHearsOfTheNextOne) {
    const auto late = std::make_shared<Recognizer>(journal, "L");
    const auto recognizer = addRecognizer("R");
    recognizer->reaction = [&](TouchPhase) { window->addGestureRecognizer(late); };
    tap(1);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R ended 1", "V ended 1"));
    send(2, TouchPhase::began);
    EXPECT_THAT(take(), ElementsAre("R began 2", "L began 2", "V began 2"));
}

TEST_F(TouchDelivery, ARecogniserIsAddedOnceAndNullIsNot) {
    const auto recognizer = addRecognizer("R");
    window->addGestureRecognizer(recognizer);
    window->addGestureRecognizer(nullptr);
    window->removeGestureRecognizer(nullptr);
    EXPECT_THAT(window->gestureRecognizers(), ElementsAre(recognizer));
}

TEST_F(TouchDelivery, ARemovedRecogniserHearsThatItsTouchesAreCancelledAndNoMore) {
    const auto recognizer = addRecognizer("R");
    recognizer->setState(State::began);
    send({touch(1, TouchPhase::began), touch(2, TouchPhase::began)});
    send(2, TouchPhase::ended);
    (void)take();
    window->removeGestureRecognizer(window->gestureRecognizers().front());
    EXPECT_THAT(take(), ElementsAre("R cancelled 1"));
    EXPECT_EQ(recognizer->state(), State::possible);
    window->removeGestureRecognizer(recognizer);
    send(1, TouchPhase::ended);
    EXPECT_THAT(take(), ElementsAre("V ended 1"));
}

TEST_F(TouchDelivery, ARecogniserMayRemoveItselfAndOthersWhileItIsTold) {
    auto recognizer = addRecognizer("R");
    auto later = addRecognizer("S");
    recognizer->reaction = [&](TouchPhase phase) {
        if (phase == TouchPhase::ended) {
            recognizer->reaction = nullptr;
            for (auto* gone : {&recognizer, &later}) {
                window->removeGestureRecognizer(*gone);
                gone->reset();
            }
        }
    };
    tap(1);
    EXPECT_THAT(take(), ElementsAre("R began 1", "S began 1", "V began 1", "R ended 1", "S cancelled 1",
                                    "V ended 1"));
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
}

TEST_F(TouchDelivery, ARecogniserAddedAgainBeginsAfresh) {
    const auto recognizer = addRecognizer("R");
    window->removeGestureRecognizer(recognizer);
    recognizer->setState(State::failed);
    window->addGestureRecognizer(recognizer);
    EXPECT_EQ(recognizer->state(), State::possible);
}

TEST_F(TouchDelivery, ADisabledRecogniserHearsNothing) {
    const auto recognizer = addRecognizer("R");
    recognizer->setEnabled(false);
    tap(1);
    EXPECT_THAT(take(), ElementsAre("V began 1", "V ended 1"));
    recognizer->setEnabled(true);
    tap(2);
    EXPECT_THAT(take(), ElementsAre("R began 2", "V began 2", "R ended 2", "V ended 2"));
}

TEST_F(TouchDelivery, ARecogniserDisabledInTheMiddleOfATouchIsToldThatItIsCancelled) {
    const auto recognizer = addRecognizer("R");
    setStateOn(TouchPhase::began, State::began, recognizer);
    send(1, TouchPhase::began);
    recognizer->setEnabled(false);
    send(1, TouchPhase::moved);
    EXPECT_EQ(recognizer->state(), State::cancelled);
    recognizer->setEnabled(true);
    send(1, TouchPhase::ended);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R cancelled 1", "V moved 1", "V ended 1"));
    EXPECT_EQ(recognizer->state(), State::possible);
}

TEST_F(TouchDelivery, WhatARecogniserThrowsIsReportedAndKeepsNobodyFromTheTouch) {
    addRecognizer("R")->reaction = [](TouchPhase) { throw std::runtime_error("oops"); };
    addRecognizer("S")->reaction = [](TouchPhase) { throw 42; };
    testing::internal::CaptureStderr();
    send(1, TouchPhase::began);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "M-VEX: a gesture recogniser threw: oops\n"
              "M-VEX: a gesture recogniser threw: An error of an unknown kind.\n");
    EXPECT_THAT(take(), ElementsAre("R began 1", "S began 1", "V began 1"));
}

TEST_F(TouchDelivery, WhatAViewThrowsIsReportedAndKeepsNobodyFromTheTouch) {
    const auto other = addView("W");
    view->reaction = [](TouchPhase) { throw std::runtime_error("oops"); };
    testing::internal::CaptureStderr();
    send({touch(1, TouchPhase::began), touch(2, TouchPhase::began, other)});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "M-VEX: a view threw: oops\n");
    view->reaction = nullptr;
    send(1, TouchPhase::ended);
    EXPECT_THAT(take(), ElementsAre("V began 1", "W began 2", "V ended 1"));
}

TEST_F(TouchDelivery, AnEventSentFromWithinADeliveryWaitsForItsTurn) {
    const auto recognizer = addRecognizer("R");
    addRecognizer("S");
    recognizer->reaction = [&](TouchPhase phase) {
        if (phase == TouchPhase::began) {
            send(1, TouchPhase::ended);
            EXPECT_THAT(journal, ElementsAre("R began 1"));
        }
    };
    send(1, TouchPhase::began);
    EXPECT_THAT(take(),
                ElementsAre("R began 1", "S began 1", "V began 1", "R ended 1", "S ended 1", "V ended 1"));
}

TEST_F(TouchDelivery, TheWindowMayBeDroppedWhileItDelivers) {
    const auto recognizer = addRecognizer("R");
    auto* raw = window.get();
    const std::weak_ptr<Window> watched = window;
    Touch began = touch(1, TouchPhase::began);
    view->reaction = [&](TouchPhase) { window.reset(); };
    raw->sendEvent({now, {began}});
    EXPECT_TRUE(watched.expired());
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1"));
}

TEST_F(TouchDelivery, ThoseThatAreNotOverriddenDoNothing) {
    const auto plain = std::make_shared<View>();
    const auto recognizer = std::make_shared<GestureRecognizer>();
    window->addGestureRecognizer(recognizer);
    for (const TouchPhase phase : {TouchPhase::began, TouchPhase::moved, TouchPhase::ended, TouchPhase::began,
                                   TouchPhase::cancelled}) {
        send({touch(1, phase, plain)});
        EXPECT_EQ(recognizer->state(), State::possible);
    }
    EXPECT_THAT(journal, IsEmpty());
}

}  // namespace
}  // namespace mireth::platform
