// Images and patterns, and drawing into memory of the caller's.
#include <gtest/gtest.h>

#include <limits>
#include <span>
#include <vector>

#include "tests/contract/media/GraphicsContract.hpp"

namespace mireth::platform {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(GraphicsImages);

namespace {

using tests::channel;
using tests::colorOf;
using tests::pixel;
using tests::text;

constexpr std::uint32_t clear = 0;

TEST_P(GraphicsImages, PatternRepeatsFromTheOrigin) {
    const Image image = draw(
        [](GraphicsContext& context) { context.fillRectWithPattern({3, 3, 9, 9}, tests::fourColors(1)); });
    EXPECT_EQ(pixel(image, 2, 2), text(clear));
    EXPECT_EQ(pixel(image, 3, 3), text(tests::white));
    EXPECT_EQ(pixel(image, 4, 4), text(tests::red));
    EXPECT_EQ(pixel(image, 11, 10), text(tests::green));
    EXPECT_EQ(pixel(image, 10, 11), text(tests::blue));
}

TEST_P(GraphicsImages, ImageIsDrawnUpright) {
    const Image image = draw([](GraphicsContext& context) {
        context.drawImage(tests::fourColors(1), {0, 0, 1, 1}, {0, 0, 20, 20}, Interpolation::nearest);
    });
    EXPECT_EQ(pixel(image, 9, 9), text(tests::red));
    EXPECT_EQ(pixel(image, 10, 9), text(tests::green));
    EXPECT_EQ(pixel(image, 9, 10), text(tests::blue));
    EXPECT_EQ(pixel(image, 10, 10), text(tests::white));
}

TEST_P(GraphicsImages, ImagePartIsNotBlendedWithWhatLiesBesideIt) {
    const Image image = draw([](GraphicsContext& context) {
        context.drawImage(tests::fourColors(1), {0.5, 0, 0.5, 0.5}, {2, 2, 16, 16}, Interpolation::linear);
    });
    EXPECT_EQ(pixel(image, 2, 2), text(tests::green));
    EXPECT_EQ(pixel(image, 17, 17), text(tests::green));
    EXPECT_EQ(pixel(image, 1, 2), text(clear));
    EXPECT_EQ(pixel(image, 18, 17), text(clear));
}

TEST_P(GraphicsImages, LinearInterpolationBlendsWithinThePart) {
    const Image image = draw([](GraphicsContext& context) {
        context.drawImage(Image(2, 1, {tests::black, tests::white}), {0, 0, 1, 1}, {0, 0, 20, 20},
                          Interpolation::linear);
    });
    EXPECT_EQ(pixel(image, 0, 10), text(tests::black));
    EXPECT_EQ(pixel(image, 19, 10), text(tests::white));
    EXPECT_NEAR(channel(image, 10, 10, 8), 0x80, 0x10);
}

TEST_P(GraphicsImages, ScreenScaledIntoAFrameKeepsItsColourAndLeavesTheMarginsBlack) {
    const Image screen = Image::filled(390, 844, tests::white);
    const Image image = draw(
        [&](GraphicsContext& context) {
            context.clearRect({0, 0, 250, 500});
            context.drawImage(screen, {0, 0, 1, 1}, {9.478, 0, 231.043, 500}, Interpolation::linear);
        },
        {250, 500});
    EXPECT_EQ(pixel(image, 8, 250), text(clear));
    EXPECT_EQ(pixel(image, 10, 0), text(tests::white));
    EXPECT_EQ(pixel(image, 239, 499), text(tests::white));
    EXPECT_EQ(pixel(image, 241, 250), text(clear));
}

TEST_P(GraphicsImages, FineStripesScaledDownTurnGrey) {
    std::vector<std::uint32_t> pixels(400U * 400U);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = i % 2 == 0 ? tests::black : tests::white;
    }
    const Image stripes(400, 400, std::move(pixels));
    for (const double side : {200.0, 130.0, 100.0, 40.0}) {
        const Image image = draw(
            [&](GraphicsContext& context) {
                context.drawImage(stripes, {0, 0, 1, 1}, {0, 0, side, side}, Interpolation::linear);
            },
            {side, side});
        const auto middle = static_cast<std::size_t>(side / 2);
        // Three stripes to a pixel hold one or two white ones.
        EXPECT_NEAR(channel(image, middle, middle, 8), 0x80, 0x30) << side;
    }
}

TEST_P(GraphicsImages, ImageWithoutBitmapDrawsNothing) {
    const Image image = draw([](GraphicsContext& context) {
        context.drawImage(Image(), {0, 0, 1, 1}, {0, 0, 20, 20}, Interpolation::linear);
        context.fillRectWithPattern({0, 0, 20, 20}, Image());
    });
    EXPECT_EQ(pixel(image, 10, 10), text(clear));
}

TEST_P(GraphicsImages, BitmapContextDrawsIntoTheCallersRowsOnly) {
    constexpr std::size_t bytesPerRow = 32;
    std::vector<std::uint32_t> words(8 * 4, 0x12345678U);
    const auto bytes = std::as_writable_bytes(std::span(words));
    {
        const auto context = graphics->makeBitmapContext({bytes, 6, 4, bytesPerRow});
        ASSERT_NE(context, nullptr);
        context->clearRect({0, 0, 100, 100});
        context->fillRoundedRect({0, 0, 1, 1}, {}, colorOf(tests::red));
        context->fillRoundedRect({5, 3, 1, 1}, {}, {0, 0, 1, 0.5});
    }
    EXPECT_EQ(words[0], tests::red);
    EXPECT_EQ(words[1], 0U);
    EXPECT_EQ(words[3 * 8 + 5], 0x80000080U);
    for (std::size_t row = 0; row < 4; ++row) {
        EXPECT_EQ(words[row * 8 + 6], 0x12345678U) << row;
        EXPECT_EQ(words[row * 8 + 7], 0x12345678U) << row;
    }
}

TEST_P(GraphicsImages, BitmapThatDoesNotFitTogetherIsRefused) {
    std::vector<std::uint32_t> words(16);
    const auto bytes = std::as_writable_bytes(std::span(words));
    EXPECT_NE(graphics->makeBitmapContext({bytes, 4, 4, 16}), nullptr);
    EXPECT_EQ(graphics->makeBitmapContext({bytes, 4, 4, 12}), nullptr);
    EXPECT_EQ(graphics->makeBitmapContext({bytes, 4, 5, 16}), nullptr);
    EXPECT_EQ(graphics->makeBitmapContext({bytes, 5, 4, 16}), nullptr);
    EXPECT_EQ(graphics->makeBitmapContext({bytes, 0, 4, 16}), nullptr);
    EXPECT_EQ(graphics->makeBitmapContext({bytes, 4, 0, 16}), nullptr);
    EXPECT_EQ(graphics->makeBitmapContext({{}, 4, 4, 16}), nullptr);
    constexpr std::size_t huge = std::numeric_limits<std::size_t>::max();
    EXPECT_EQ(graphics->makeBitmapContext({bytes, 4, 2, huge - 3}), nullptr);
    EXPECT_EQ(graphics->makeBitmapContext({bytes, huge, huge, huge}), nullptr);
}

}  // namespace
}  // namespace mireth::platform
