// When a recogniser takes a touch away from the view.
#include "TouchJournal.hpp"

namespace mireth::platform {
namespace {

using testing::ElementsAre;
using State = GestureRecognizer::State;

struct TouchesInView : TouchedWindow {
    std::shared_ptr<Recognizer> recognizer = addRecognizer("R");

    TouchesInView() { recognizer->setCancelsTouchesInView(true); }
};

TEST_F(TouchesInView, BeforeAnythingIsRecognisedTheViewKeepsItsTouches) {
    tap(1);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R ended 1", "V ended 1"));
}

TEST_F(TouchesInView, TheViewIsToldOnceThatItsTouchIsCancelled) {
    setStateOn(TouchPhase::moved, State::changed, recognizer);
    send(1, TouchPhase::began);
    send(1, TouchPhase::moved);
    send(1, TouchPhase::moved);
    send(1, TouchPhase::ended);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R moved 1", "V cancelled 1", "R moved 1",
                                    "R ended 1"));
}

TEST_F(TouchesInView, RecognisedAtTheEndTheViewIsCancelledInsteadOfEnded) {
    setStateOn(TouchPhase::ended, State::ended, recognizer);
    tap(1);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R ended 1", "V cancelled 1"));
}

TEST_F(TouchesInView, ATouchThatTheViewNeverSawIsNotCancelledForIt) {
    setStateOn(TouchPhase::began, State::began, recognizer);
    send(1, TouchPhase::began);
    send(1, TouchPhase::cancelled);
    EXPECT_THAT(take(), ElementsAre("R began 1", "R cancelled 1"));
}

TEST_F(TouchesInView, AllTouchesOfTheRecogniserAreTaken) {
    const auto other = addView("W");
    send({touch(1, TouchPhase::began), touch(2, TouchPhase::began, other)});
    (void)take();
    setStateOn(TouchPhase::moved, State::changed, recognizer);
    send(1, TouchPhase::moved);
    EXPECT_THAT(take(), ElementsAre("R moved 1", "V cancelled 1", "W cancelled 2"));
    send({touch(1, TouchPhase::ended), touch(2, TouchPhase::ended, other)});
    EXPECT_THAT(take(), ElementsAre("R ended 1 2"));
}

TEST_F(TouchesInView, ATouchTheRecogniserHasNotSeenStaysWithItsView) {
    send(1, TouchPhase::began);
    const auto late = addRecognizer("L");
    late->setCancelsTouchesInView(true);
    setStateOn(TouchPhase::began, State::began, late);
    send(2, TouchPhase::began);
    send(1, TouchPhase::ended);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R began 2", "L began 2", "R cancelled 1 2",
                                    "V ended 1"));
}

TEST_F(TouchesInView, ATouchStaysTakenAlsoWhenTheRecogniserIsRemoved) {
    setStateOn(TouchPhase::moved, State::changed, recognizer);
    send(1, TouchPhase::began);
    send(1, TouchPhase::moved);
    window->removeGestureRecognizer(recognizer);
    send(1, TouchPhase::ended);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R moved 1", "V cancelled 1", "R cancelled 1"));
}

TEST_F(TouchesInView, ARecogniserThatLeavesTouchesToTheViewTakesNone) {
    recognizer->setCancelsTouchesInView(false);
    setStateOn(TouchPhase::began, State::began, recognizer);
    tap(1);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R ended 1", "V ended 1"));
}

}  // namespace
}  // namespace mireth::platform
