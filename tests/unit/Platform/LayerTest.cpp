// Where a layer lies in its superlayer.
#include "MirethVex/Platform/Layer.hpp"

#include <gtest/gtest.h>

#include <numbers>

namespace mireth::platform {
namespace {

void expectNear(const Rect& actual, const Rect& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
    EXPECT_NEAR(actual.width, expected.width, 1e-9);
    EXPECT_NEAR(actual.height, expected.height, 1e-9);
}

TEST(Layer, FrameFollowsFromBoundsPositionAndAnchor) {
    Layer layer;
    layer.geometry.bounds = {0, 0, 100, 40};
    layer.geometry.position = {200, 100};
    EXPECT_EQ(layer.frame(), (Rect{150, 80, 100, 40}));
    layer.geometry.anchorPoint = {0, 1};
    EXPECT_EQ(layer.frame(), (Rect{200, 60, 100, 40}));
}

TEST(Layer, BoundsOriginDoesNotMoveTheFrame) {
    Layer layer;
    layer.geometry.bounds = {0, 500, 100, 40};
    layer.geometry.position = {50, 20};
    EXPECT_EQ(layer.frame(), (Rect{0, 0, 100, 40}));
    EXPECT_EQ(layer.transformToSuperlayer().apply({10, 510}), (Point{10, 10}));
}

TEST(Layer, SetFrameIsReadBack) {
    Layer layer;
    layer.setFrame({10, 20, 30, 40});
    EXPECT_EQ(layer.frame(), (Rect{10, 20, 30, 40}));
    EXPECT_EQ(layer.geometry.bounds, (Rect{0, 0, 30, 40}));
    EXPECT_EQ(layer.geometry.position, (Point{25, 40}));
}

TEST(Layer, SetFrameKeepsAnchorAndBoundsOrigin) {
    Layer layer;
    layer.geometry.anchorPoint = {0, 0.25};
    layer.geometry.bounds = {7, 9, 1, 1};
    layer.setFrame({10, 20, 30, 40});
    EXPECT_EQ(layer.geometry.bounds, (Rect{7, 9, 30, 40}));
    EXPECT_EQ(layer.geometry.position, (Point{10, 30}));
    EXPECT_EQ(layer.frame(), (Rect{10, 20, 30, 40}));
}

TEST(Layer, SetFrameTakesANegativeSizeFromTheOtherCorner) {
    Layer layer;
    layer.setFrame({40, 60, -30, -40});
    EXPECT_EQ(layer.frame(), (Rect{10, 20, 30, 40}));
}

TEST(Layer, TransformActsAboutTheAnchor) {
    Layer layer;
    layer.setFrame({100, 100, 40, 20});
    layer.transform.transform = Transform3D::fromAffine(AffineTransform::scale(2, 3));
    EXPECT_EQ(layer.frame(), (Rect{80, 80, 80, 60}));
    EXPECT_EQ(layer.transformToSuperlayer().apply({20, 10}), (Point{120, 110}));
    layer.geometry.anchorPoint = {0, 0};
    layer.geometry.position = {100, 100};
    EXPECT_EQ(layer.frame(), (Rect{100, 100, 80, 60}));
}

TEST(Layer, FrameOfATurnedLayerHoldsItsCorners) {
    Layer layer;
    layer.setFrame({0, 0, 100, 20});
    layer.transform.transform = Transform3D::fromAffine(AffineTransform::rotation(std::numbers::pi / 2));
    expectNear(layer.frame(), {40, -40, 20, 100});
    // A quarter turn clockwise takes the left edge to the top.
    const Point corner = layer.transformToSuperlayer().apply({0, 0});
    EXPECT_NEAR(corner.x, 60, 1e-9);
    EXPECT_NEAR(corner.y, -40, 1e-9);
}

TEST(Layer, SetFrameOfATransformedLayerLeavesTheTransformToActOnIt) {
    Layer layer;
    layer.transform.transform = Transform3D::fromAffine(AffineTransform::scale(2, 2));
    layer.setFrame({10, 10, 20, 20});
    EXPECT_EQ(layer.geometry.bounds, (Rect{0, 0, 20, 20}));
    EXPECT_EQ(layer.frame(), (Rect{0, 0, 40, 40}));
    layer.transform.transform = Transform3D::identity();
    EXPECT_EQ(layer.frame(), (Rect{10, 10, 20, 20}));
}

TEST(Layer, NullIsNoSublayer) {
    Layer layer;
    layer.addSublayer(nullptr);
    EXPECT_TRUE(layer.sublayers().empty());
}

}  // namespace
}  // namespace mireth::platform
