#include "PrivateSide/Collection/Timeline/TimelineTransformer.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <variant>

#include "PrivateSide/Collection/Timeline/SignalData.hpp"

namespace mireth {
namespace {

const TimelineTransformer transformer(DimensionConverter{3});

/// The whole frame is the window.
ScalingMetadata filling() {
    return {{0, 0, 0, 0}, {390, 780}, {250, 500}, {250, 500}};
}

TEST(TimelineTransformer, ASignalKeepsItsTimeAndBecomesItsKeyAndTarget) {
    const auto event = transformer.transform(RageTapSignalData(123, {150, 260}), filling());
    ASSERT_TRUE(event.has_value());
    EXPECT_EQ(event->name, EventName::signalCaptured);
    EXPECT_EQ(event->timestamp, 123);
    const auto& details = std::get<SignalCapturedDetails>(event->details.value());
    EXPECT_EQ(details.signalId, "RageTap");
    EXPECT_EQ(details.errorMessage, std::nullopt);
    EXPECT_EQ(details.target.xOriginalPx, 450.0F);
    EXPECT_EQ(details.target.yOriginalPx, 780.0F);
}

TEST(TimelineTransformer, OnlyAnErrorTapCarriesAMessage) {
    const auto messageOf = [](const EventData& data) {
        return std::get<SignalCapturedDetails>(transformer.transform(data, filling())->details.value())
            .errorMessage;
    };
    EXPECT_EQ(messageOf(ErrorTapSignalData(1, {}, "oh")), "oh");
    EXPECT_EQ(messageOf(ErrorTapSignalData(1, {}, "")), "");
    EXPECT_EQ(messageOf(DeadTapSignalData(1, {})), std::nullopt);
}

TEST(TimelineTransformer, AnInteractionKeepsItsTimeAndBecomesItsKeyAndTarget) {
    const auto event = transformer.transform(TapInteractionData(7, {195, 390}), filling());
    ASSERT_TRUE(event.has_value());
    EXPECT_EQ(event->name, EventName::userInteraction);
    EXPECT_EQ(event->timestamp, 7);
    const auto& details = std::get<InteractionCapturedDetails>(event->details.value());
    EXPECT_EQ(details.interactionId, "Tap");
    EXPECT_EQ(details.target, (EventTarget{0.5F, 0.5F, 585, 1170}));
}

TEST(TimelineTransformer, DataThatAreNeitherYieldNone) {
    struct Other final : EventData {
        EventType type() const override { return SessionInteractionType::tap; }
        std::int64_t timestamp() const override { return 0; }
    };
    EXPECT_EQ(transformer.transform(Other(), filling()), std::nullopt);
}

EventTarget place(Target target, const ScalingMetadata& scaling) {
    return transformer.createEventTarget(target, scaling);
}

TEST(TimelineTransformer, TheCornersOfAFilledFrameAreZeroAndOne) {
    EXPECT_EQ(place({0, 0}, filling()), (EventTarget{0, 0, 0, 0}));
    EXPECT_EQ(place({390, 780}, filling()), (EventTarget{1, 1, 1170, 2340}));
}

TEST(TimelineTransformer, MarginsMoveThePointIntoTheFrame) {
    // 375 x 812 in 250 x 500: scaled by 500/812, margins left and right.
    const double scale = 500.0 / 812.0;
    const double width = 375 * scale;
    const double left = (250 - width) / 2;
    const ScalingMetadata scaling{{left, 0, left, 0}, {375, 812}, {width, 500}, {250, 500}};
    const auto corner = place({0, 0}, scaling);
    EXPECT_FLOAT_EQ(corner.xNormalizedTo1, static_cast<float>(left / 250));
    EXPECT_FLOAT_EQ(corner.yNormalizedTo1, 0);
    const auto middle = place({187.5F, 406}, scaling);
    EXPECT_FLOAT_EQ(middle.xNormalizedTo1, 0.5F);
    EXPECT_FLOAT_EQ(middle.yNormalizedTo1, 0.5F);
}

TEST(TimelineTransformer, TopMarginMovesThePointDown) {
    const ScalingMetadata scaling{{0, 125, 0, 125}, {500, 500}, {250, 250}, {250, 500}};
    EXPECT_EQ(place({0, 0}, scaling).yNormalizedTo1, 0.25F);
    EXPECT_EQ(place({500, 500}, scaling).yNormalizedTo1, 0.75F);
}

TEST(TimelineTransformer, APointOutsideTheFrameIsNotClamped) {
    const auto outside = place({-39, 858}, filling());
    EXPECT_LT(outside.xNormalizedTo1, 0);
    EXPECT_GT(outside.yNormalizedTo1, 1);
}

TEST(TimelineTransformer, CalculatesIn64BitsAndNarrowsAtTheEnd) {
    const float x = 0.1F;
    const double expected = static_cast<double>(x) * 250 / 390 / 250;
    EXPECT_EQ(place({x, 0}, filling()).xNormalizedTo1, static_cast<float>(expected));
}

TEST(TimelineTransformer, AZeroSizeYieldsInfinitiesOrNotANumber) {
    const auto nowhere = place({1, 1}, ScalingMetadata::zero());
    EXPECT_TRUE(std::isnan(nowhere.xNormalizedTo1));
    ScalingMetadata flat = filling();
    flat.targetFrameSize = {0, 0};
    EXPECT_TRUE(std::isinf(place({1, 1}, flat).yNormalizedTo1));
}

TEST(DimensionConverter, MultipliesByTheScreenScale) {
    const DimensionConverter converter{3};
    EXPECT_EQ(converter.convertToPixel(390.0), 1170.0);
    EXPECT_EQ(converter.convertToPixel(0.5F), 1.5F);
}

}  // namespace
}  // namespace mireth
