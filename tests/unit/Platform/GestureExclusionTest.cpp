// Which recognisers may go on together.
#include <stdexcept>

#include "TouchJournal.hpp"

namespace mireth::platform {
namespace {

using testing::ElementsAre;
using State = GestureRecognizer::State;

struct GestureExclusion : TouchedWindow {
    std::shared_ptr<Recognizer> first = addRecognizer("R");
    std::shared_ptr<Recognizer> second = addRecognizer("S");

    struct Delegate final : GestureRecognizerDelegate {
        bool shouldRecognizeSimultaneouslyWith(GestureRecognizer& recognizer,
                                               GestureRecognizer& other) override {
            asked.emplace_back(&recognizer, &other);
            if (throws) {
                throw std::runtime_error("no idea");
            }
            return answer;
        }
        bool answer = true;
        bool throws = false;
        std::vector<std::pair<GestureRecognizer*, GestureRecognizer*>> asked;
    };
};

TEST_F(GestureExclusion, RecognisersThatHaveRecognisedNothingGoOnTogether) {
    tap(1);
    EXPECT_THAT(take(),
                ElementsAre("R began 1", "S began 1", "V began 1", "R ended 1", "S ended 1", "V ended 1"));
}

TEST_F(GestureExclusion, TheFirstToRecogniseStopsTheOthersUntilAllFingersAreUp) {
    setStateOn(TouchPhase::moved, State::changed, second);
    send(1, TouchPhase::began);
    send(1, TouchPhase::moved);
    send(2, TouchPhase::began);
    EXPECT_EQ(first->state(), State::failed);
    send(2, TouchPhase::ended);
    EXPECT_THAT(take(),
                ElementsAre("R began 1", "S began 1", "V began 1", "R moved 1", "S moved 1", "V moved 1",
                            "R cancelled 1", "S began 2", "V began 2", "S ended 2", "V ended 2"));
    send(1, TouchPhase::ended);
    EXPECT_THAT(take(), ElementsAre("S ended 1", "V ended 1"));
    EXPECT_EQ(first->state(), State::possible);
    tap(3);
    EXPECT_THAT(take(),
                ElementsAre("R began 3", "S began 3", "V began 3", "R ended 3", "S ended 3", "V ended 3"));
}

TEST_F(GestureExclusion, OneThatHasSeenNothingYetIsStoppedWithoutAWord) {
    setStateOn(TouchPhase::began, State::began, first);
    tap(1);
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1", "R ended 1", "V ended 1"));
}

TEST_F(GestureExclusion, TheDelegateOfEitherMayAllowBoth) {
    setStateOn(TouchPhase::began, State::began, first);
    for (const auto& allowing : {first, second}) {
        Delegate delegate;
        allowing->setDelegate(&delegate);
        tap(1);
        EXPECT_THAT(take(), ElementsAre("R began 1", "S began 1", "V began 1", "R ended 1", "S ended 1",
                                        "V ended 1"));
        ASSERT_FALSE(delegate.asked.empty());
        const auto& other = allowing == first ? second : first;
        EXPECT_EQ(delegate.asked.front(), std::pair(static_cast<GestureRecognizer*>(allowing.get()),
                                                    static_cast<GestureRecognizer*>(other.get())));
        allowing->setDelegate(nullptr);
    }
}

TEST_F(GestureExclusion, OnlyWhenBothRefuseIsOneStopped) {
    setStateOn(TouchPhase::began, State::began, first);
    Delegate refusing;
    refusing.answer = false;
    Delegate allowing;
    first->setDelegate(&refusing);
    second->setDelegate(&allowing);
    tap(1);
    EXPECT_THAT(take(),
                ElementsAre("R began 1", "S began 1", "V began 1", "R ended 1", "S ended 1", "V ended 1"));
    second->setDelegate(&refusing);
    tap(2);
    EXPECT_THAT(take(), ElementsAre("R began 2", "V began 2", "R ended 2", "V ended 2"));
}

TEST_F(GestureExclusion, WhatADelegateThrowsCountsAsANo) {
    setStateOn(TouchPhase::began, State::began, first);
    Delegate throwing;
    throwing.throws = true;
    second->setDelegate(&throwing);
    testing::internal::CaptureStderr();
    send(1, TouchPhase::began);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "M-VEX: a gesture recogniser's delegate threw: no idea\n");
    EXPECT_THAT(take(), ElementsAre("R began 1", "V began 1"));
}

TEST_F(GestureExclusion, OneThatFailsByItselfHearsNoMoreAndStopsNobody) {
    setStateOn(TouchPhase::began, State::failed, first);
    tap(1);
    EXPECT_THAT(take(), ElementsAre("R began 1", "S began 1", "V began 1", "S ended 1", "V ended 1"));
}

TEST_F(GestureExclusion, OneThatIsDisabledOrRemovedStopsNobody) {
    setStateOn(TouchPhase::began, State::began, first);
    Delegate allowing;
    second->setDelegate(&allowing);
    send(1, TouchPhase::began);
    second->setDelegate(nullptr);
    first->setEnabled(false);
    send(1, TouchPhase::moved);
    window->removeGestureRecognizer(first);
    send(1, TouchPhase::ended);
    EXPECT_THAT(take(), ElementsAre("R began 1", "S began 1", "V began 1", "R cancelled 1", "S moved 1",
                                    "V moved 1", "S ended 1", "V ended 1"));
}

}  // namespace
}  // namespace mireth::platform
