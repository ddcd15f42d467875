#include "PrivateSide/Detection/Interactions/TapInteractionListener.hpp"

#include <gtest/gtest.h>

#include "support/Finger.hpp"
#include "support/LogCapture.hpp"

namespace mireth {
namespace {

using test::Finger;
using test::infoLine;

struct TapInteraction : testing::Test {
    test::LogCapture capture{{}};
    std::shared_ptr<platform::Window> window = std::make_shared<platform::Window>(Size{390, 844});
    std::shared_ptr<GestureRecognizerObserver> observer = std::make_shared<GestureRecognizerObserver>();
    MirethGestureRecognizer recognizer{capture.log(), observer};
    std::optional<TapInteractionListener> listener{std::in_place, capture.log(), recognizer};
    std::vector<std::optional<TapInteractionData>> heard;
    AnyCancellable subscription = listener->interactionData().sink(
        [this](const std::optional<TapInteractionData>& data) { heard.push_back(data); });
    Finger finger{window};

    TapInteraction() { window->addGestureRecognizer(observer); }
};

TEST_F(TapInteraction, ThereIsNoneBeforeTheFirstTap) {
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_FALSE(heard[0].has_value());
}

TEST_F(TapInteraction, ASingleTapIsPublishedOnceWithItsTimeAndPlace) {
    finger.tap({10.1, 20}, 1.5);
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_EQ(heard[1]->timestamp(), 1500);
    EXPECT_EQ(heard[1]->target(), (Target{10.1F, 20}));
    EXPECT_EQ(heard[1]->type(), EventType(SessionInteractionType::tap));
}

TEST_F(TapInteraction, NothingElseIsATap) {
    for (const int tapCount : {2, 3, 4, 5}) {
        finger.tap({10, 20}, 1, tapCount);
    }
    finger.begin({10, 20});
    finger.moveTo({11, 20});
    finger.end();
    finger.begin({10, 20});
    finger.cancel();
    EXPECT_EQ(heard.size(), 1U);
}

TEST_F(TapInteraction, TwoEqualTapsAreTwo) {
    finger.tap({10, 20}, 1);
    finger.tap({10, 20}, 1);
    EXPECT_EQ(heard.size(), 3U);
}

TEST_F(TapInteraction, ANewSubscriberFirstGetsTheLastTap) {
    finger.tap({10, 20}, 2);
    std::optional<std::int64_t> first;
    const auto late = listener->interactionData().sink(
        [&](const std::optional<TapInteractionData>& data) { first = data->timestamp(); });
    EXPECT_EQ(first, 2000);
}

TEST_F(TapInteraction, WhoHearsOfATapMayDropTheListener) {
    const auto dropping = listener->interactionData().sink([this](const auto& data) {
        if (data) {
            listener.reset();
        }
    });
    finger.tap({10, 20}, 1);
    finger.tap({10, 20}, 2);
    EXPECT_EQ(heard.size(), 2U);
}

TEST_F(TapInteraction, TheListenerWritesItsMemoryUseLines) {
    capture.log().setAllowedTags({LogTag::memoryUse});
    listener.reset();
    listener.emplace(capture.log(), recognizer);
    capture.expectLines({infoLine(LogTag::memoryUse, "TapInteractionListener: Succesfully deinitialized"),
                         infoLine(LogTag::memoryUse, "TapInteractionListener: Succesfully initialized")});
    capture.log().setAllowedTags({});
}

}  // namespace
}  // namespace mireth
