// Image views and their tints.
#include "MirethVex/Platform/ImageView.hpp"

#include <gtest/gtest.h>

namespace mireth::platform {
namespace {

TEST(ImageView, ImageBecomesTheLayersContents) {
    ImageView view;
    const Image image = Image::filled(4, 4, 0xFF00FF00U, 2.0);
    view.setImage(image);
    EXPECT_TRUE(view.layer().content.contents.isSameBitmap(image));
    EXPECT_EQ(view.layer().geometry.contentsScale, 2.0);
    view.setImage(Image());
    EXPECT_FALSE(view.layer().content.contents.hasBitmap());
}

TEST(ImageView, UsesItsTintOnlyForAnImage) {
    ImageView view;
    view.setTint(Color{1, 0, 0, 1});
    EXPECT_FALSE(view.usesTintForImage());
    view.setImage(Image::filled(1, 1, 0xFF00FF00U));
    EXPECT_TRUE(view.usesTintForImage());
    view.setTint(std::nullopt);
    EXPECT_FALSE(view.usesTintForImage());
}

TEST(ImageView, TintedImageHasTheTintsColourAndTheImagesAlpha) {
    ImageView view;
    view.setImage(Image(3, 1, {0xFF00FF00U, 0x80408000U, 0x00000000U}, 3.0));
    view.setTint(Color{1, 0, 0, 1});
    const Image& tinted = view.tintedImage();
    ASSERT_EQ(tinted.pixels().size(), 3U);
    EXPECT_EQ(tinted.pixels()[0], 0xFFFF0000U);
    EXPECT_EQ(tinted.pixels()[1], 0x80800000U);
    EXPECT_EQ(tinted.pixels()[2], 0x00000000U);
    EXPECT_EQ(tinted.scale(), 3.0);
}

TEST(ImageView, TranslucentTintThinsTheImage) {
    ImageView view;
    view.setImage(Image::filled(1, 1, 0xFFFFFFFFU));
    view.setTint(Color{0, 0, 1, 0.5});
    EXPECT_EQ(view.tintedImage().pixels()[0], 0x80000080U);
}

TEST(ImageView, TintedImageIsKeptUntilSomethingChanges) {
    ImageView view;
    view.setImage(Image::filled(1, 1, 0xFFFFFFFFU));
    view.setTint(Color{0, 0, 1, 1});
    const Image first = view.tintedImage();
    EXPECT_TRUE(view.tintedImage().isSameBitmap(first));
    view.setTint(Color{0, 1, 0, 1});
    EXPECT_EQ(view.tintedImage().pixels()[0], 0xFF00FF00U);
    view.setImage(Image::filled(2, 1, 0xFFFFFFFFU));
    EXPECT_EQ(view.tintedImage().pixelWidth(), 2U);
}

TEST(ImageView, WithoutATintTheImageIsItsOwn) {
    ImageView view;
    view.setImage(Image::filled(1, 1, 0xFF123456U));
    EXPECT_TRUE(view.tintedImage().isSameBitmap(view.image()));
}

}  // namespace
}  // namespace mireth::platform
