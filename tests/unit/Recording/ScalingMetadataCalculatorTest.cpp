// How images are fitted into the video frame.
#include "PrivateSide/Recording/ScalingMetadataCalculator.hpp"

#include <gtest/gtest.h>

namespace mireth {
namespace {

constexpr Size frame{250, 500};

ScalingMetadata fit(Size image, Size target = frame) {
    return ScalingMetadataCalculator::calculateScalingMetadata(image, target);
}

TEST(ScalingMetadataCalculator, NarrowImageGetsMarginsLeftAndRight) {
    const ScalingMetadata metadata = fit({375, 812});
    EXPECT_NEAR(metadata.scaledSize.width, 230.911, 0.001);
    EXPECT_DOUBLE_EQ(metadata.scaledSize.height, 500);
    EXPECT_NEAR(metadata.margin.left, 9.544, 0.001);
    EXPECT_EQ(metadata.margin.right, metadata.margin.left);
    EXPECT_EQ(metadata.margin.top, 0);
    EXPECT_EQ(metadata.margin.bottom, 0);
    EXPECT_EQ(metadata.originalSize, (Size{375, 812}));
    EXPECT_EQ(metadata.targetFrameSize, frame);
}

TEST(ScalingMetadataCalculator, WideImageGetsMarginsAboveAndBelow) {
    const ScalingMetadata metadata = fit({844, 390});
    EXPECT_DOUBLE_EQ(metadata.scaledSize.width, 250);
    EXPECT_NEAR(metadata.scaledSize.height, 115.521, 0.001) << "not rounded";
    EXPECT_NEAR(metadata.margin.top, 192.239, 0.001);
    EXPECT_EQ(metadata.margin.bottom, metadata.margin.top);
    EXPECT_EQ(metadata.margin.left, 0);
}

TEST(ScalingMetadataCalculator, ImageOfTheFramesShapeGetsNoMargins) {
    EXPECT_EQ(fit({125, 250}).margin, Margin());
    EXPECT_EQ(fit({125, 250}).scaledSize, frame) << "small images grow";
}

TEST(ScalingMetadataCalculator, ImageWithoutWidthOrHeightIsAllZero) {
    EXPECT_EQ(fit({0, 812}), ScalingMetadata::zero());
    EXPECT_EQ(fit({375, 0}), ScalingMetadata::zero());
}

TEST(ScalingMetadataCalculator, MetadataIsComparedFieldByField) {
    const ScalingMetadata one = fit({375, 812});
    ScalingMetadata other = one;
    EXPECT_EQ(one, other);
    other.margin.bottom += 1;
    EXPECT_NE(one, other);
    other = one;
    other.targetFrameSize.width += 1;
    EXPECT_NE(one, other);
}

}  // namespace
}  // namespace mireth
