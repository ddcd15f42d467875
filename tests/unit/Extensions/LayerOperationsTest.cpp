// Mask blocks, and letting go of what a copy holds.
#include "PrivateSide/Extensions/CALayerExtensions/LayerOperations.hpp"

#include <gtest/gtest.h>

#include "PrivateSide/Extensions/CALayerExtensions/MaskColors.hpp"

namespace mireth {
namespace {

using platform::Image;
using platform::Layer;

TEST(LayerOperations, MaskIsAGreyBlockWithRoundCorners) {
    Layer layer;
    applyMask(layer);
    ASSERT_TRUE(layer.appearance.backgroundColor);
    EXPECT_DOUBLE_EQ(layer.appearance.backgroundColor->red, 0.7372549019607844);
    EXPECT_EQ(*layer.appearance.backgroundColor, Color::gray(188.0 / 255.0));
    EXPECT_EQ(layer.appearance.cornerRadius, 4.0);
    EXPECT_DOUBLE_EQ(imageMaskBackgroundColor.green, 0.8823529411764706);
}

TEST(LayerOperations, FlushingLetsGoOfPicturesAndMasksAtEveryLevel) {
    const auto mask = std::make_shared<Layer>();
    const auto root = std::make_shared<Layer>();
    const auto child = std::make_shared<Layer>();
    child->content.contents = Image::filled(1, 1, 1);
    child->appearance.mask = mask;
    child->appearance.backgroundColor = Color{1, 1, 1, 1};
    child->geometry.bounds = {0, 0, 5, 5};
    root->content.contents = Image::filled(1, 1, 1);
    root->addSublayer(child);

    flushLayerTree(*root);
    EXPECT_FALSE(root->content.contents.hasBitmap());
    EXPECT_FALSE(child->content.contents.hasBitmap());
    EXPECT_FALSE(child->appearance.backgroundColor);
    EXPECT_EQ(mask.use_count(), 1);
    EXPECT_EQ(child->geometry.bounds, (Rect{0, 0, 5, 5})) << "geometry holds nothing";
}

TEST(LayerOperations, ContentAndAppearanceAreFlushedApart) {
    Layer layer;
    layer.content.contents = Image::filled(1, 1, 1);
    layer.appearance.cornerRadius = 3;
    flushContent(layer);
    EXPECT_FALSE(layer.content.contents.hasBitmap());
    EXPECT_EQ(layer.appearance.cornerRadius, 3);
    flushAppearance(layer);
    EXPECT_EQ(layer.appearance.cornerRadius, 0);
}

}  // namespace
}  // namespace mireth
