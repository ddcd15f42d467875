// What a layer tree looks like, pixel by pixel, and what it asks of the context.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <numbers>

#include "tests/unit/Platform/LayerPictures.hpp"

namespace mireth::platform {
namespace {

using testing::ElementsAre;
using tests::callsOf;
using tests::draw;
using tests::makeBox;
using tests::makeRoot;
using tests::pixel;
using tests::text;

constexpr std::uint32_t clear = 0;

TEST(LayerRendering, RootLeavesOutItsOwnPlace) {
    const auto root = makeBox({100, 200, 8, 8}, tests::red);
    root->transform.transform = Transform3D::fromAffine(AffineTransform::scale(3, 3));
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 0, 0), text(tests::red));
    EXPECT_EQ(pixel(image, 7, 7), text(tests::red));
    EXPECT_EQ(pixel(image, 8, 7), text(clear));
}

TEST(LayerRendering, BoundsOriginScrollsTheSublayers) {
    const auto root = makeRoot();
    root->geometry.bounds = {0, 100, 20, 20};
    root->addSublayer(makeBox({2, 104, 4, 4}, tests::red));
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 2, 4), text(tests::red));
    EXPECT_EQ(pixel(image, 2, 3), text(clear));
    EXPECT_EQ(pixel(image, 5, 8), text(clear));
}

TEST(LayerRendering, LaterSublayersLieInFront) {
    const auto root = makeRoot();
    root->addSublayer(makeBox({0, 0, 10, 10}, tests::red));
    root->addSublayer(makeBox({0, 0, 10, 10}, tests::green));
    EXPECT_EQ(pixel(draw(*root), 5, 5), text(tests::green));
}

TEST(LayerRendering, HigherZPositionLiesInFrontAndEqualOnesKeepTheirOrder) {
    const auto root = makeRoot();
    const auto high = makeBox({0, 0, 10, 10}, tests::red);
    high->geometry.zPosition = 1;
    root->addSublayer(high);
    root->addSublayer(makeBox({0, 0, 20, 10}, tests::green));
    root->addSublayer(makeBox({0, 0, 15, 10}, tests::blue));
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 5, 5), text(tests::red));
    EXPECT_EQ(pixel(image, 12, 5), text(tests::blue));
    EXPECT_EQ(pixel(image, 17, 5), text(tests::green));
}

TEST(LayerRendering, ZPositionThatIsNoNumberCountsAsZero) {
    const auto root = makeRoot();
    const auto low = makeBox({0, 0, 10, 10}, tests::red);
    low->geometry.zPosition = -1;
    const auto odd = makeBox({0, 0, 10, 10}, tests::green);
    odd->geometry.zPosition = std::numeric_limits<double>::quiet_NaN();
    root->addSublayer(odd);
    root->addSublayer(low);
    EXPECT_EQ(pixel(draw(*root), 5, 5), text(tests::green));
}

TEST(LayerRendering, HiddenLayersAreNotDrawnWithWhatTheyHold) {
    const auto root = makeRoot();
    const auto hidden = makeBox({0, 0, 10, 10}, tests::red);
    hidden->addSublayer(makeBox({0, 0, 5, 5}, tests::green));
    hidden->appearance.hidden = true;
    root->addSublayer(hidden);
    EXPECT_EQ(pixel(draw(*root), 2, 2), text(clear));
}

TEST(LayerRendering, GroupOpacityFadesALayerAsOnePicture) {
    const auto root = makeRoot();
    const auto faded = makeBox({0, 0, 10, 10}, tests::red);
    faded->addSublayer(makeBox({0, 0, 5, 10}, tests::green));
    faded->appearance.opacity = 0.5;
    root->addSublayer(faded);
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 2, 5), "#80008000");
    EXPECT_EQ(pixel(image, 7, 5), "#80800000");
}

TEST(LayerRendering, WithoutGroupOpacityEachLayerFadesByItself) {
    const auto root = makeRoot();
    const auto faded = makeBox({0, 0, 10, 10}, tests::red);
    faded->addSublayer(makeBox({0, 0, 5, 10}, tests::green));
    faded->appearance.opacity = 0.5;
    faded->appearance.allowsGroupOpacity = false;
    root->addSublayer(faded);
    const Image image = draw(*root);
    // Half of green over half of red.
    EXPECT_EQ(tests::channel(image, 2, 5, 24), 0xC0);
    EXPECT_NEAR(tests::channel(image, 2, 5, 16), 0x40, 1);
    EXPECT_NEAR(tests::channel(image, 2, 5, 8), 0x80, 1);
}

TEST(LayerRendering, OpacitiesMultiplyDownTheTree) {
    const auto root = makeRoot();
    const auto outer = makeBox({0, 0, 10, 10}, clear);
    const auto inner = makeBox({0, 0, 10, 10}, tests::white);
    outer->appearance.opacity = 0.5;
    inner->appearance.opacity = 0.5;
    outer->addSublayer(inner);
    root->addSublayer(outer);
    EXPECT_EQ(pixel(draw(*root), 5, 5), "#40404040");
}

TEST(LayerRendering, BackOfASingleSidedLayerIsNotDrawn) {
    const auto root = makeRoot();
    const auto card = makeBox({0, 0, 10, 10}, tests::red);
    // Half a turn about the vertical axis.
    card->transform.transform.m[0][0] = -1;
    card->transform.transform.m[2][2] = -1;
    root->addSublayer(card);
    EXPECT_EQ(pixel(draw(*root), 5, 5), text(tests::red));
    card->appearance.isDoubleSided = false;
    EXPECT_EQ(pixel(draw(*root), 5, 5), text(clear));
}

TEST(LayerRendering, TurnedTwiceALayerShowsItsFront) {
    const auto root = makeRoot();
    const auto outer = makeBox({0, 0, 10, 10}, clear);
    const auto inner = makeBox({0, 0, 10, 10}, tests::red);
    for (const auto& layer : {outer, inner}) {
        layer->transform.transform.m[0][0] = -1;
        layer->transform.transform.m[2][2] = -1;
    }
    inner->appearance.isDoubleSided = false;
    outer->addSublayer(inner);
    root->addSublayer(outer);
    EXPECT_EQ(pixel(draw(*root), 5, 5), text(tests::red));
}

TEST(LayerRendering, CornerRadiusRoundsOnlyTheMaskedCorners) {
    const auto root = makeRoot();
    const auto box = makeBox({0, 0, 20, 20}, tests::red);
    box->appearance.cornerRadius = 8;
    box->appearance.maskedCorners = topLeftCorner | bottomRightCorner;
    root->addSublayer(box);
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 0, 0), text(clear));
    EXPECT_EQ(pixel(image, 19, 0), text(tests::red));
    EXPECT_EQ(pixel(image, 0, 19), text(tests::red));
    EXPECT_EQ(pixel(image, 19, 19), text(clear));
    EXPECT_EQ(pixel(image, 10, 0), text(tests::red));
}

TEST(LayerRendering, BorderLiesInsideTheBoundsAndAboveEverything) {
    const auto root = makeRoot();
    const auto box = makeBox({2, 2, 12, 12}, tests::red);
    box->appearance.borderWidth = 2;
    box->appearance.borderColor = tests::colorOf(tests::blue);
    box->addSublayer(makeBox({0, 0, 12, 12}, tests::green));
    root->addSublayer(box);
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 1, 8), text(clear));
    EXPECT_EQ(pixel(image, 2, 8), text(tests::blue));
    EXPECT_EQ(pixel(image, 3, 8), text(tests::blue));
    EXPECT_EQ(pixel(image, 4, 8), text(tests::green));
    EXPECT_EQ(pixel(image, 13, 8), text(tests::blue));
    EXPECT_EQ(pixel(image, 14, 8), text(clear));
}

TEST(LayerRendering, SublayerTransformActsAboutTheAnchorOfTheLayer) {
    const auto root = makeRoot();
    root->transform.sublayerTransform = Transform3D::fromAffine(AffineTransform::scale(2, 2));
    root->addSublayer(makeBox({8, 8, 4, 4}, tests::red));
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 6, 6), text(tests::red));
    EXPECT_EQ(pixel(image, 13, 13), text(tests::red));
    EXPECT_EQ(pixel(image, 5, 6), text(clear));
    EXPECT_EQ(pixel(image, 14, 13), text(clear));
}

TEST(LayerRendering, TransformTurnsALayerAboutItsAnchor) {
    const auto root = makeRoot();
    const auto bar = makeBox({0, 8, 20, 4}, tests::red);
    bar->transform.transform = Transform3D::fromAffine(AffineTransform::rotation(std::numbers::pi / 2));
    root->addSublayer(bar);
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 10, 1), text(tests::red));
    EXPECT_EQ(pixel(image, 10, 18), text(tests::red));
    EXPECT_EQ(pixel(image, 1, 10), text(clear));
}

TEST(LayerRendering, FlippedGeometryPlacesSublayersFromTheBottomAndKeepsPicturesUpright) {
    const auto root = makeRoot();
    root->rendering.isGeometryFlipped = true;
    const auto picture = makeBox({0, 0, 10, 10}, clear);
    picture->content.contents = tests::fourColors(5);
    root->addSublayer(picture);
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 2, 2), text(clear));
    EXPECT_EQ(pixel(image, 2, 12), text(tests::red));
    EXPECT_EQ(pixel(image, 2, 17), text(tests::blue));
}

TEST(LayerRendering, SquashedLayersAndWhatTheyHoldAreNotDrawn) {
    const auto root = makeRoot();
    const auto flat = makeBox({0, 0, 20, 20}, tests::red);
    flat->addSublayer(makeBox({0, 0, 20, 20}, tests::green));
    flat->transform.transform = Transform3D::fromAffine(AffineTransform::scale(0, 1));
    root->addSublayer(flat);
    root->addSublayer(makeBox({0, 0, 2, 2}, tests::blue));
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 10, 10), text(clear));
    EXPECT_EQ(pixel(image, 1, 1), text(tests::blue));
}

TEST(LayerRendering, PlainLayersNeedNoGroup) {
    const auto root = makeBox({0, 0, 20, 20}, tests::white);
    for (int i = 0; i < 3; ++i) {
        root->addSublayer(makeBox({0, 0, 5, 5}, tests::red));
    }
    EXPECT_THAT(callsOf(*root), ElementsAre("fill", "fill", "fill", "fill"));
}

TEST(LayerRendering, SingleFadedPieceNeedsNoGroup) {
    const auto root = makeRoot();
    const auto faded = makeBox({0, 0, 5, 5}, tests::red);
    faded->appearance.opacity = 0.5;
    root->addSublayer(faded);
    EXPECT_THAT(callsOf(*root), ElementsAre("fill"));
}

TEST(LayerRendering, FadedPicturesAndOverlapsAreGroupedWithinTheirExtent) {
    const auto root = makeRoot();
    const auto faded = makeBox({0, 0, 5, 5}, tests::red);
    faded->appearance.opacity = 0.5;
    faded->addSublayer(makeBox({0, 0, 2, 2}, tests::green));
    root->addSublayer(faded);
    EXPECT_THAT(callsOf(*root), ElementsAre("clip", "group", "fill", "fill", "end"));
    const auto picture = makeRoot();
    picture->content.contents = tests::fourColors();
    picture->appearance.opacity = 0.5;
    EXPECT_THAT(callsOf(*picture), ElementsAre("group", "image", "end"));
}

}  // namespace
}  // namespace mireth::platform
