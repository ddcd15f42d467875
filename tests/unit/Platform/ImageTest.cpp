// Bitmaps shared by reference.
#include "MirethVex/Platform/Image.hpp"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace mireth::platform {
namespace {

TEST(Image, WithoutABitmapHasNoSizeAndNoPixels) {
    const Image image;
    EXPECT_FALSE(image.hasBitmap());
    EXPECT_EQ(image.size(), (Size{0, 0}));
    EXPECT_TRUE(image.pixels().empty());
}

TEST(Image, SizeIsInPoints) {
    const Image image(6, 3, std::vector<std::uint32_t>(18), 3.0);
    EXPECT_EQ(image.pixelWidth(), 6U);
    EXPECT_EQ(image.pixelHeight(), 3U);
    EXPECT_EQ(image.size(), (Size{2, 1}));
}

TEST(Image, CopiesShareTheirBitmap) {
    const Image image = Image::filled(2, 2, 0xFF112233U);
    const Image copy = image;  // NOLINT(performance-unnecessary-copy-initialization): the copy is the test
    EXPECT_TRUE(copy.isSameBitmap(image));
    EXPECT_EQ(copy.pixels().data(), image.pixels().data());
    EXPECT_FALSE(Image::filled(2, 2, 0xFF112233U).isSameBitmap(image));
}

TEST(Image, FilledHasOneColour) {
    const Image image = Image::filled(3, 2, 0x80402010U);
    ASSERT_EQ(image.pixels().size(), 6U);
    for (const std::uint32_t word : image.pixels()) {
        EXPECT_EQ(word, 0x80402010U);
    }
}

TEST(Image, WithoutAreaHasNoBitmap) {
    EXPECT_FALSE(Image::filled(0, 5, 1).hasBitmap());
    EXPECT_EQ(Image(5, 0, {}).size(), (Size{0, 0}));
}

TEST(Image, SharesMemoryOfAnotherKindAndKeepsIt) {
    auto words = std::make_shared<std::vector<std::uint32_t>>(std::initializer_list<std::uint32_t>{1, 2});
    const std::weak_ptr<std::vector<std::uint32_t>> memory = words;
    auto image = Image::sharing(2, 1, std::shared_ptr<const std::uint32_t>(words, words->data()), 2);
    words = nullptr;
    const Image copy = std::exchange(image, Image());
    ASSERT_FALSE(memory.expired());
    EXPECT_EQ(copy.pixels().data(), memory.lock()->data());
    EXPECT_EQ(copy.pixels().size(), 2U);
    EXPECT_EQ(copy.size(), (Size{1, 0.5}));
    image = copy;
    EXPECT_TRUE(image.isSameBitmap(copy));
}

TEST(Image, SharingNothingHasNoBitmap) {
    const auto word = std::make_shared<const std::uint32_t>(1);
    EXPECT_FALSE(Image::sharing(2, 1, nullptr).hasBitmap());
    EXPECT_EQ(Image::sharing(2, 1, nullptr).pixelWidth(), 0U);
    EXPECT_FALSE(Image::sharing(0, 1, word).hasBitmap());
    EXPECT_TRUE(Image::sharing(0, 1, word).pixels().empty());
}

TEST(Image, SenselessScaleIsOne) {
    EXPECT_EQ(Image::filled(2, 2, 0, 0).size(), (Size{2, 2}));
    EXPECT_EQ(Image::filled(2, 2, 0, -3).size(), (Size{2, 2}));
    EXPECT_EQ(Image::filled(2, 2, 0, std::numeric_limits<double>::quiet_NaN()).size(), (Size{2, 2}));
}

TEST(ImageDeathTest, PixelsThatDoNotMatchTheSizeAreAProgrammingError) {
    EXPECT_DEATH(Image(2, 2, std::vector<std::uint32_t>(3)), "do not match");
    constexpr std::size_t huge = std::numeric_limits<std::size_t>::max() / 2;
    EXPECT_DEATH(Image(huge, 3, {}), "do not fit into memory");
}

}  // namespace
}  // namespace mireth::platform
