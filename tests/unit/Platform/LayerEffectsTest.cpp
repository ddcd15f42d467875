// Masks and shadows of layers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

TEST(LayerEffects, SublayersOverflowUnlessMaskedToBounds) {
    const auto root = makeRoot();
    const auto box = makeBox({4, 4, 8, 8}, tests::red);
    box->addSublayer(makeBox({-4, -4, 16, 16}, tests::green));
    root->addSublayer(box);
    EXPECT_EQ(pixel(draw(*root), 1, 1), text(tests::green));
    box->appearance.masksToBounds = true;
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 1, 1), text(clear));
    EXPECT_EQ(pixel(image, 4, 4), text(tests::green));
    EXPECT_EQ(pixel(image, 12, 8), text(clear));
}

TEST(LayerEffects, MaskingToBoundsFollowsTheRoundedCorners) {
    const auto root = makeRoot();
    const auto box = makeBox({0, 0, 20, 20}, clear);
    box->appearance.masksToBounds = true;
    box->appearance.cornerRadius = 8;
    box->addSublayer(makeBox({0, 0, 20, 20}, tests::green));
    root->addSublayer(box);
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 0, 0), text(clear));
    EXPECT_EQ(pixel(image, 10, 10), text(tests::green));
}

TEST(LayerEffects, MaskCutsByItsAlphaAndNotByItsColour) {
    const auto root = makeRoot();
    const auto box = makeBox({0, 0, 20, 20}, tests::red);
    const auto mask = makeBox({5, 0, 10, 20}, tests::black);
    box->appearance.mask = mask;
    root->addSublayer(box);
    Image image = draw(*root);
    EXPECT_EQ(pixel(image, 4, 10), text(clear));
    EXPECT_EQ(pixel(image, 5, 10), text(tests::red));
    EXPECT_EQ(pixel(image, 15, 10), text(clear));
    mask->appearance.opacity = 0.5;
    EXPECT_EQ(pixel(draw(*root), 10, 10), "#80800000");
    mask->appearance.hidden = true;
    EXPECT_EQ(pixel(draw(*root), 10, 10), text(clear));
}

TEST(LayerEffects, MaskMayBeATree) {
    const auto root = makeRoot();
    const auto box = makeBox({0, 0, 20, 20}, clear);
    box->addSublayer(makeBox({0, 0, 20, 20}, tests::red));
    const auto mask = makeBox({0, 0, 20, 20}, clear);
    mask->addSublayer(makeBox({0, 0, 4, 20}, tests::white));
    const auto nested = makeBox({10, 0, 4, 20}, tests::white);
    nested->appearance.mask = makeBox({0, 0, 4, 10}, tests::white);
    mask->addSublayer(nested);
    box->appearance.mask = mask;
    root->addSublayer(box);
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 2, 15), text(tests::red));
    EXPECT_EQ(pixel(image, 7, 5), text(clear));
    EXPECT_EQ(pixel(image, 12, 5), text(tests::red));
    EXPECT_EQ(pixel(image, 12, 15), text(clear));
}

TEST(LayerEffects, MaskedLayerFadesAlso) {
    const auto box = makeBox({0, 0, 20, 20}, tests::red);
    box->appearance.mask = makeBox({0, 0, 10, 20}, tests::white);
    box->appearance.opacity = 0.5;
    const Image image = draw(*box);
    EXPECT_EQ(pixel(image, 5, 5), "#80800000");
    EXPECT_EQ(pixel(image, 15, 5), text(clear));
}

TEST(LayerEffects, ShadowLiesUnderTheLayerAtItsOffset) {
    const auto root = makeRoot();
    const auto box = makeBox({2, 2, 8, 8}, tests::red);
    box->appearance.shadowOpacity = 1;
    box->appearance.shadowOffset = {6, 6};
    box->appearance.shadowRadius = 0;
    root->addSublayer(box);
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 5, 5), text(tests::red));
    EXPECT_EQ(pixel(image, 12, 12), text(tests::black));
    EXPECT_EQ(pixel(image, 3, 14), text(clear));
}

TEST(LayerEffects, ShadowIsSoftAndAsStrongAsItsOpacity) {
    const auto root = makeRoot();
    const auto box = makeBox({6, 6, 8, 8}, clear);
    box->appearance.backgroundColor = Color{1, 0, 0, 0.001};
    box->appearance.shadowOpacity = 0.5;
    box->appearance.shadowOffset = {0, 0};
    box->appearance.shadowRadius = 2;
    root->addSublayer(box);
    const Image image = draw(*root);
    const int inside = tests::channel(image, 10, 10, 24);
    const int edge = tests::channel(image, 6, 10, 24);
    const int outside = tests::channel(image, 3, 10, 24);
    EXPECT_GT(inside, edge);
    EXPECT_GT(edge, outside);
    EXPECT_GT(outside, 0);
    EXPECT_LE(inside, 128);
    EXPECT_GT(inside, 90);
}

TEST(LayerEffects, ShadowPathStandsInForTheOutline) {
    const auto root = makeRoot();
    const auto box = makeBox({0, 0, 4, 4}, clear);
    box->appearance.shadowOpacity = 1;
    box->appearance.shadowOffset = {0, 0};
    box->appearance.shadowRadius = 0;
    box->appearance.shadowPath = ShadowPath{{10, 10, 5, 5}, 0};
    root->addSublayer(box);
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 12, 12), text(tests::black));
    EXPECT_EQ(pixel(image, 2, 2), text(clear));
}

TEST(LayerEffects, NothingCastsAShadowThatShowsNothingOrIsMaskedToBounds) {
    const auto box = makeBox({0, 0, 4, 4}, clear);
    box->appearance.shadowOpacity = 1;
    EXPECT_THAT(callsOf(*box), ElementsAre());
    box->appearance.backgroundColor = tests::colorOf(tests::red);
    EXPECT_THAT(callsOf(*box), ElementsAre("shadow", "fill"));
    box->appearance.masksToBounds = true;
    EXPECT_THAT(callsOf(*box), ElementsAre("fill"));
}

TEST(LayerEffects, PiecesAreDrawnFromTheShadowUpToTheBorder) {
    const auto box = makeBox({0, 0, 20, 20}, tests::white);
    box->appearance.shadowOpacity = 1;
    box->appearance.borderWidth = 1;
    box->appearance.borderColor = tests::colorOf(tests::blue);
    box->content.contents = tests::fourColors();
    box->addSublayer(makeBox({0, 0, 5, 5}, tests::red));
    EXPECT_THAT(callsOf(*box), ElementsAre("shadow", "fill", "image", "fill", "border"));
}

TEST(LayerEffects, GroupedExtentHoldsShadowsAndOverflowingSublayers) {
    const auto root = makeRoot();
    const auto faded = makeBox({8, 8, 2, 2}, tests::red);
    faded->appearance.opacity = 0.5;
    faded->appearance.shadowOpacity = 1;
    faded->appearance.shadowRadius = 0;
    faded->appearance.shadowOffset = {8, 8};
    faded->addSublayer(makeBox({-8, -8, 3, 3}, tests::green));
    root->addSublayer(faded);
    const Image image = draw(*root);
    EXPECT_EQ(pixel(image, 1, 1), "#80008000");
    EXPECT_EQ(pixel(image, 9, 9), "#80800000");
    EXPECT_EQ(pixel(image, 17, 17), "#80000000");
}

}  // namespace
}  // namespace mireth::platform
