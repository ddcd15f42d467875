#include "PrivateSide/Detection/Core/GestureEvent.hpp"

#include <gtest/gtest.h>

namespace mireth {
namespace {

struct GestureEvents : testing::Test {
    std::shared_ptr<platform::View> view = std::make_shared<platform::View>();
    TouchData data{1.5, 2.5, 3};
};

TEST_F(GestureEvents, HaveTheirKeysAndTexts) {
    EXPECT_EQ(GestureEvent::tap(data, view).key(), "SingleTap");
    EXPECT_EQ(GestureEvent::quadrupleTap(data, view).key(), "QuadrupleTap");
    EXPECT_EQ(GestureEvent::undefined().key(), "Undefined");
    EXPECT_EQ(GestureEvent::swipeLeft().key(), "SwipeLeft");
    EXPECT_EQ(GestureEvent::swipeRight().key(), "SwipeRight");
    EXPECT_EQ(GestureEvent::tap(data, view).debugInfo(), "Single Tap Detected");
    EXPECT_EQ(GestureEvent::quadrupleTap(data, view).debugInfo(), "Quadruple Tap Detected");
    EXPECT_EQ(GestureEvent::undefined().debugInfo(), "Undefined");
    EXPECT_EQ(GestureEvent::swipeLeft().debugInfo(), "Swipe Left Detected");
    EXPECT_EQ(GestureEvent::swipeRight().debugInfo(), "Swipe Right Detected");
}

TEST_F(GestureEvents, OnlyTapsCarryTheirTouchAndItsView) {
    for (const auto& event : {GestureEvent::tap(data, view), GestureEvent::quadrupleTap(data, view)}) {
        EXPECT_EQ(event.getTouchData(), data);
        EXPECT_EQ(event.getTargetView(), view);
    }
    for (const auto& event :
         {GestureEvent::undefined(), GestureEvent::swipeLeft(), GestureEvent::swipeRight()}) {
        EXPECT_EQ(event.getTouchData(), std::nullopt);
        EXPECT_EQ(event.getTargetView(), nullptr);
    }
}

TEST_F(GestureEvents, DoNotOwnTheirView) {
    const auto event = GestureEvent::tap(data, view);
    const std::weak_ptr<platform::View> watched = view;
    view.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(event.getTargetView(), nullptr);
    EXPECT_EQ(event.getTouchData(), data);
}

TEST_F(GestureEvents, PredicatesAreTrueForTheirOwnCaseAlone) {
    const auto answers = [](const GestureEvent& event) {
        return std::array{event.isTap(), event.isSingleTap(), event.isQuadrupleTap()};
    };
    EXPECT_EQ(answers(GestureEvent::tap(data, view)), (std::array{true, true, false}));
    EXPECT_EQ(answers(GestureEvent::quadrupleTap(data, view)), (std::array{false, false, true}));
    for (const auto& event :
         {GestureEvent::undefined(), GestureEvent::swipeLeft(), GestureEvent::swipeRight()}) {
        EXPECT_EQ(answers(event), (std::array{false, false, false}));
    }
}

TEST_F(GestureEvents, AreEqualWhenCaseTouchAndViewAre) {
    const auto event = GestureEvent::tap(data, view);
    EXPECT_EQ(event, GestureEvent::tap(data, view));
    EXPECT_NE(event, GestureEvent::quadrupleTap(data, view));
    EXPECT_NE(event, GestureEvent::tap(data, {}));
    EXPECT_NE(event, GestureEvent::tap(data, std::make_shared<platform::View>()));
    EXPECT_NE(event, GestureEvent::tap({1.5, 2.5, 4}, view));
    EXPECT_NE(event, GestureEvent::tap({1.5, 2, 3}, view));
    EXPECT_NE(event, GestureEvent::tap({1, 2.5, 3}, view));
    EXPECT_EQ(GestureEvent::undefined(), GestureEvent::undefined());
    EXPECT_NE(GestureEvent::swipeLeft(), GestureEvent::swipeRight());
}

}  // namespace
}  // namespace mireth
