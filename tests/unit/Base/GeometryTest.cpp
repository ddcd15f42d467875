#include "MirethVex/Base/Geometry.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <optional>

namespace mireth {
namespace {

TEST(Rect, ContainsItsTopLeftEdgesButNotTheOtherTwo) {
    const Rect rect{10, 20, 30, 40};
    EXPECT_TRUE(rect.contains({10, 20}));
    EXPECT_TRUE(rect.contains({39.999, 59.999}));
    EXPECT_FALSE(rect.contains({40, 20}));
    EXPECT_FALSE(rect.contains({10, 60}));
    EXPECT_FALSE(rect.contains({9.999, 20}));
}

TEST(AffineTransform, ConcatenatingAppliesThisOneFirst) {
    const auto both = AffineTransform::scale(2, 3).concatenating(AffineTransform::translation(10, 20));
    EXPECT_EQ(both.apply({1, 1}), (Point{12, 23}));
}

TEST(AffineTransform, RotationTurnsClockwiseOnScreen) {
    const Point turned = AffineTransform::rotation(std::numbers::pi / 2).apply({1, 0});
    EXPECT_NEAR(turned.x, 0, 1e-12);
    EXPECT_NEAR(turned.y, 1, 1e-12);
}

TEST(AffineTransform, InvertedUndoesIt) {
    const AffineTransform transform{2, 1, -1, 3, 10, 20};
    const auto inverse = transform.inverted();
    ASSERT_TRUE(inverse.has_value());
    const Point back = inverse->apply(transform.apply({5, 7}));
    EXPECT_NEAR(back.x, 5, 1e-12);
    EXPECT_NEAR(back.y, 7, 1e-12);
    EXPECT_EQ(AffineTransform::translation(0.1, 0.2).inverted(), AffineTransform::translation(-0.1, -0.2));
}

TEST(AffineTransform, WhatSqueezesThePlaneHasNoInverse) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(AffineTransform::scale(0, 1).inverted(), std::nullopt);
    EXPECT_EQ((AffineTransform{1, 2, 2, 4, 0, 0}).inverted(), std::nullopt);
    EXPECT_EQ(AffineTransform::scale(infinity, 1).inverted(), std::nullopt);
    EXPECT_EQ(AffineTransform::translation(std::nan(""), 0).inverted(), std::nullopt);
}

TEST(AffineTransform, BoundingBoxHoldsTheWholeImage) {
    const Rect box = AffineTransform::rotation(std::numbers::pi / 4).boundingBox({0, 0, 1, 1});
    EXPECT_NEAR(box.x, -std::numbers::sqrt2 / 2, 1e-12);
    EXPECT_NEAR(box.y, 0, 1e-12);
    EXPECT_NEAR(box.width, std::numbers::sqrt2, 1e-12);
    EXPECT_NEAR(box.height, std::numbers::sqrt2, 1e-12);
}

TEST(Transform3D, KeepsThePlaneOfAnAffineTransform) {
    const AffineTransform affine{1, 2, 3, 4, 5, 6};
    EXPECT_EQ(Transform3D::fromAffine(affine).affine(), affine);
    EXPECT_TRUE(Transform3D::identity().isIdentity());
    EXPECT_FALSE(Transform3D::fromAffine(affine).isIdentity());
}

}  // namespace
}  // namespace mireth
