// What every image renderer makes.
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "tests/contract/media/GraphicsContract.hpp"

namespace mireth::platform {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ImageRendererImages);

namespace {

using tests::colorOf;
using tests::pixel;
using tests::text;

void drawNothing(GraphicsContext& /*context*/) {}

TEST_P(ImageRendererImages, OpaqueImageStartsBlackAndKeepsNoAlpha) {
    const auto renderer = graphics->makeImageRenderer({4, 4}, {1.0, true});
    EXPECT_EQ(pixel(renderer->image(drawNothing), 2, 2), text(tests::black));
    const Image image = renderer->image([](GraphicsContext& context) {
        context.fillRoundedRect({0, 0, 2, 4}, {}, {1, 1, 1, 0.5});
        context.clearRect({0, 0, 1, 4});
    });
    EXPECT_EQ(pixel(image, 0, 0), text(tests::black));
    EXPECT_EQ(pixel(image, 1, 0), "#ff808080");
    EXPECT_EQ(pixel(image, 3, 3), text(tests::black));
}

TEST_P(ImageRendererImages, OtherImagesStartTransparent) {
    const auto renderer = graphics->makeImageRenderer({4, 4}, {});
    EXPECT_EQ(pixel(renderer->image(drawNothing), 2, 2), "#00000000");
    EXPECT_EQ(pixel(renderer->image(nullptr), 2, 2), "#00000000");
}

TEST_P(ImageRendererImages, ScaleIsPixelsPerPoint) {
    const Image image =
        graphics->makeImageRenderer({10, 5}, {3.0, false})->image([](GraphicsContext& context) {
            context.fillRoundedRect({1, 1, 1, 1}, {}, colorOf(tests::red));
        });
    EXPECT_EQ(image.pixelWidth(), 30U);
    EXPECT_EQ(image.pixelHeight(), 15U);
    EXPECT_EQ(image.scale(), 3.0);
    EXPECT_EQ(image.size(), (Size{10, 5}));
    EXPECT_EQ(pixel(image, 3, 3), text(tests::red));
    EXPECT_EQ(pixel(image, 5, 5), text(tests::red));
    EXPECT_EQ(pixel(image, 6, 5), "#00000000");
}

TEST_P(ImageRendererImages, FractionsOfAPixelAreRoundedUp) {
    const Image image = graphics->makeImageRenderer({10.1, 0.5}, {})->image(drawNothing);
    EXPECT_EQ(image.pixelWidth(), 11U);
    EXPECT_EQ(image.pixelHeight(), 1U);
    // 0.1 x 30 is a little more than 3 in floats.
    EXPECT_EQ(graphics->makeImageRenderer({0.1, 1}, {30.0, false})->image(drawNothing).pixelWidth(), 3U);
}

TEST_P(ImageRendererImages, EachImageStartsBlankAndKeepsItsOwnPixels) {
    const auto renderer = graphics->makeImageRenderer({4, 4}, {1.0, true});
    const Image first = renderer->image([](GraphicsContext& context) {
        context.concatenate(AffineTransform::scale(2, 2));
        context.clipToRoundedRect({0, 0, 1, 1}, {});
        context.fillRoundedRect({0, 0, 4, 4}, {}, colorOf(tests::red));
    });
    const Image second = renderer->image(
        [](GraphicsContext& context) { context.fillRoundedRect({3, 3, 1, 1}, {}, colorOf(tests::blue)); });
    EXPECT_EQ(pixel(first, 0, 0), text(tests::red));
    EXPECT_EQ(pixel(first, 3, 3), text(tests::black));
    EXPECT_EQ(pixel(second, 0, 0), text(tests::black));
    EXPECT_EQ(pixel(second, 3, 3), text(tests::blue));
}

TEST_P(ImageRendererImages, UnfinishedGroupsDoNotReachTheNextImage) {
    const auto renderer = graphics->makeImageRenderer({4, 4}, {});
    renderer->image([](GraphicsContext& context) {
        context.beginGroup();
        context.fillRoundedRect({0, 0, 4, 4}, {}, colorOf(tests::red));
    });
    EXPECT_EQ(pixel(renderer->image(drawNothing), 1, 1), "#00000000");
}

TEST_P(ImageRendererImages, ActionsThatThrowLeaveTheRendererUsable) {
    const auto renderer = graphics->makeImageRenderer({4, 4}, {});
    EXPECT_THROW(renderer->image([](GraphicsContext& context) {
        context.beginGroup();
        context.fillRoundedRect({0, 0, 4, 4}, {}, colorOf(tests::red));
        throw std::runtime_error("no picture today");
    }),
                 std::runtime_error);
    EXPECT_EQ(pixel(renderer->image(drawNothing), 1, 1), "#00000000");
}

TEST_P(ImageRendererImages, SizesThatCannotBeHadGiveAnImageWithoutBitmap) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
    for (const double odd : {0.0, -1.0, 1e6, 1e300, infinity, noNumber}) {
        EXPECT_FALSE(graphics->makeImageRenderer({odd, 10}, {})->image(drawNothing).hasBitmap()) << odd;
        EXPECT_FALSE(graphics->makeImageRenderer({10, odd}, {})->image(drawNothing).hasBitmap()) << odd;
        EXPECT_FALSE(graphics->makeImageRenderer({10, 10}, {odd, true})->image(drawNothing).hasBitmap())
            << odd;
    }
}

}  // namespace
}  // namespace mireth::platform
