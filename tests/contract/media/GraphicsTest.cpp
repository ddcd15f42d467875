// Shapes, clips, transforms and shadows, pixel by pixel.
#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <numbers>

#include "tests/contract/media/GraphicsContract.hpp"

namespace mireth::platform {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(GraphicsShapes);

namespace {

using tests::channel;
using tests::colorOf;
using tests::pixel;
using tests::text;

constexpr std::uint32_t clear = 0;
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST_P(GraphicsShapes, FillsExactlyTheRectangle) {
    const Image image = draw(
        [](GraphicsContext& context) { context.fillRoundedRect({2, 3, 4, 5}, {}, colorOf(tests::red)); });
    EXPECT_EQ(pixel(image, 2, 3), text(tests::red));
    EXPECT_EQ(pixel(image, 5, 7), text(tests::red));
    EXPECT_EQ(pixel(image, 1, 3), text(clear));
    EXPECT_EQ(pixel(image, 6, 7), text(clear));
    EXPECT_EQ(pixel(image, 5, 8), text(clear));
}

TEST_P(GraphicsShapes, TranslucentColoursAreComposedPremultiplied) {
    const Image image = draw([](GraphicsContext& context) {
        context.fillRoundedRect({0, 0, 10, 20}, {}, {1, 0, 0, 0.5});
        context.fillRoundedRect({5, 0, 5, 20}, {}, {0, 0, 1, 0.5});
    });
    EXPECT_EQ(pixel(image, 2, 2), "#80800000");
    EXPECT_NEAR(channel(image, 7, 2, 24), 0xC0, 1);
    EXPECT_NEAR(channel(image, 7, 2, 16), 0x40, 1);
    EXPECT_NEAR(channel(image, 7, 2, 0), 0x80, 1);
}

TEST_P(GraphicsShapes, EachCornerHasItsOwnRadius) {
    const Image image = draw([](GraphicsContext& context) {
        context.fillRoundedRect({0, 0, 20, 20}, {8, 0, 0, 0}, colorOf(tests::red));
        context.fillRoundedRect({0, 0, 20, 20}, {0, 8, 8, 8}, colorOf(tests::blue));
    });
    EXPECT_EQ(pixel(image, 0, 0), text(tests::blue));
    EXPECT_EQ(pixel(image, 19, 0), text(tests::red));
    EXPECT_EQ(pixel(image, 19, 19), text(tests::red));
    EXPECT_EQ(pixel(image, 0, 19), text(tests::red));
}

TEST_P(GraphicsShapes, RadiiLargerThanHalfASideMakeAPill) {
    const Image image = draw([](GraphicsContext& context) {
        context.fillRoundedRect({0, 0, 20, 10}, {100, 100, 100, 100}, colorOf(tests::red));
    });
    EXPECT_EQ(pixel(image, 0, 0), text(clear));
    EXPECT_EQ(pixel(image, 10, 0), text(tests::red));
    EXPECT_EQ(pixel(image, 19, 9), text(clear));
}

TEST_P(GraphicsShapes, ClipsNestAndEndWithTheirState) {
    const Image image = draw([](GraphicsContext& context) {
        context.saveState();
        context.clipToRoundedRect({0, 0, 10, 10}, {});
        context.saveState();
        context.clipToRoundedRect({5, 5, 10, 10}, {});
        context.fillRoundedRect({0, 0, 20, 20}, {}, colorOf(tests::red));
        context.restoreState();
        context.fillRoundedRect({0, 0, 20, 2}, {}, colorOf(tests::green));
        context.restoreState();
        context.fillRoundedRect({15, 15, 5, 5}, {}, colorOf(tests::blue));
    });
    EXPECT_EQ(pixel(image, 7, 7), text(tests::red));
    EXPECT_EQ(pixel(image, 3, 7), text(clear));
    EXPECT_EQ(pixel(image, 12, 12), text(clear));
    EXPECT_EQ(pixel(image, 9, 1), text(tests::green));
    EXPECT_EQ(pixel(image, 11, 1), text(clear));
    EXPECT_EQ(pixel(image, 17, 17), text(tests::blue));
}

TEST_P(GraphicsShapes, EmptyClipHidesEverythingUntilItsStateEnds) {
    const Image image = draw([](GraphicsContext& context) {
        context.saveState();
        context.clipToRoundedRect({5, 5, 0, 0}, {});
        context.fillRoundedRect({0, 0, 20, 20}, {}, colorOf(tests::red));
        context.restoreState();
        context.fillRoundedRect({0, 0, 2, 2}, {}, colorOf(tests::green));
    });
    EXPECT_EQ(pixel(image, 10, 10), text(clear));
    EXPECT_EQ(pixel(image, 1, 1), text(tests::green));
}

TEST_P(GraphicsShapes, LaterTransformsActFirst) {
    const Image image = draw([](GraphicsContext& context) {
        context.concatenate(AffineTransform::translation(10, 0));
        context.concatenate(AffineTransform::scale(2, 2));
        context.fillRoundedRect({1, 1, 2, 2}, {}, colorOf(tests::red));
    });
    EXPECT_EQ(pixel(image, 12, 2), text(tests::red));
    EXPECT_EQ(pixel(image, 15, 5), text(tests::red));
    EXPECT_EQ(pixel(image, 11, 2), text(clear));
    EXPECT_EQ(pixel(image, 16, 5), text(clear));
}

TEST_P(GraphicsShapes, RotationIsClockwise) {
    const Image image = draw([](GraphicsContext& context) {
        context.concatenate(AffineTransform::translation(10, 10));
        context.concatenate(AffineTransform::rotation(std::numbers::pi / 2));
        context.fillRoundedRect({0, 0, 8, 2}, {}, colorOf(tests::red));
    });
    EXPECT_EQ(pixel(image, 9, 16), text(tests::red));
    EXPECT_EQ(pixel(image, 16, 9), text(clear));
}

TEST_P(GraphicsShapes, BorderLiesInside) {
    const Image image = draw([](GraphicsContext& context) {
        context.strokeInsideRoundedRect({2, 2, 12, 12}, {}, 3, colorOf(tests::red));
    });
    EXPECT_EQ(pixel(image, 1, 8), text(clear));
    EXPECT_EQ(pixel(image, 2, 8), text(tests::red));
    EXPECT_EQ(pixel(image, 4, 8), text(tests::red));
    EXPECT_EQ(pixel(image, 5, 8), text(clear));
    EXPECT_EQ(pixel(image, 13, 13), text(tests::red));
    EXPECT_EQ(pixel(image, 14, 8), text(clear));
}

TEST_P(GraphicsShapes, BorderWiderThanHalfASideFills) {
    const Image image = draw([](GraphicsContext& context) {
        context.strokeInsideRoundedRect({2, 2, 6, 6}, {}, 100, colorOf(tests::red));
    });
    EXPECT_EQ(pixel(image, 5, 5), text(tests::red));
    EXPECT_EQ(pixel(image, 8, 8), text(clear));
}

TEST_P(GraphicsShapes, LineIsAsWideAsAsked) {
    const Image image =
        draw([](GraphicsContext& context) { context.strokeLine({0, 10}, {15, 10}, 4, colorOf(tests::red)); });
    EXPECT_EQ(pixel(image, 5, 8), text(tests::red));
    EXPECT_EQ(pixel(image, 5, 11), text(tests::red));
    EXPECT_EQ(pixel(image, 5, 7), text(clear));
    EXPECT_EQ(pixel(image, 5, 12), text(clear));
    EXPECT_EQ(pixel(image, 15, 10), text(clear));
}

TEST_P(GraphicsShapes, ShadowSpreadsLikeAGaussian) {
    const Image image =
        draw([](GraphicsContext& context) { context.drawShadow({0, 0, 50, 100}, {}, {0, 0, 0, 1}, 10); },
             {100, 100});
    // The blurred edge of a half plane: the normal distribution at 0, 1 and 2 standard deviations.
    EXPECT_NEAR((channel(image, 49, 50, 24) + channel(image, 50, 50, 24)) / 2, 128, 4);
    EXPECT_NEAR(channel(image, 60, 50, 24), 255 * 0.147, 5);
    EXPECT_NEAR(channel(image, 70, 50, 24), 255 * 0.020, 3);
    EXPECT_EQ(channel(image, 95, 50, 24), 0);
}

TEST_P(GraphicsShapes, NarrowShadowIsLikeAWideOneMadeSmaller) {
    const Image image =
        draw([](GraphicsContext& context) { context.drawShadow({0, 0, 50, 100}, {}, {0, 0, 0, 1}, 3); },
             {100, 100});
    EXPECT_NEAR((channel(image, 49, 50, 24) + channel(image, 50, 50, 24)) / 2, 128, 4);
    EXPECT_NEAR(channel(image, 53, 50, 24), 255 * 0.122, 6);
    EXPECT_EQ(channel(image, 62, 50, 24), 0);
}

TEST_P(GraphicsShapes, ShadowFollowsTheTransformsSize) {
    const Image image = draw(
        [](GraphicsContext& context) {
            context.concatenate(AffineTransform::scale(2, 2));
            context.drawShadow({0, 0, 25, 50}, {}, {0, 0, 0, 1}, 5);
        },
        {100, 100});
    EXPECT_NEAR(channel(image, 60, 50, 24), 255 * 0.147, 5);
}

TEST_P(GraphicsShapes, ShadowOfAnyRadiusTakesBoundedTime) {
    const auto begin = std::chrono::steady_clock::now();
    for (const double radius : {1e2, 1e4, 1e9, 1e300, infinity}) {
        draw(
            [&](GraphicsContext& context) {
                context.drawShadow({10, 10, 300, 700}, {}, {0, 0, 0, 1}, radius);
                context.drawShadow({-1e9, -1e9, 2e9, 2e9}, {}, {0, 0, 0, 1}, radius);
            },
            {390, 844});
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    EXPECT_LT(took.count(), 10.0);
}

TEST_P(GraphicsShapes, ClearedRectangleIsTransparent) {
    const Image image = draw([](GraphicsContext& context) {
        context.fillRoundedRect({0, 0, 20, 20}, {}, colorOf(tests::red));
        context.clearRect({5, 5, 10, 10});
        context.fillRoundedRect({7, 7, 2, 2}, {}, {0, 0, 1, 0.5});
    });
    EXPECT_EQ(pixel(image, 4, 4), text(tests::red));
    EXPECT_EQ(pixel(image, 5, 5), text(clear));
    EXPECT_EQ(pixel(image, 7, 7), "#80000080");
}

}  // namespace
}  // namespace mireth::platform
