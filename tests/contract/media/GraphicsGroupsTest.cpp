// Groups and masks, and arguments that make no sense.
#include <gtest/gtest.h>

#include <limits>

#include "tests/contract/media/GraphicsContract.hpp"

namespace mireth::platform {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(GraphicsGroups);

namespace {

using tests::colorOf;
using tests::pixel;
using tests::text;

constexpr std::uint32_t clear = 0;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

TEST_P(GraphicsGroups, GroupFadesAsOnePicture) {
    const Image image = draw([](GraphicsContext& context) {
        context.beginGroup();
        context.fillRoundedRect({0, 0, 20, 20}, {}, colorOf(tests::red));
        context.fillRoundedRect({0, 0, 10, 20}, {}, colorOf(tests::green));
        context.endGroup(0.5);
    });
    EXPECT_EQ(pixel(image, 5, 5), "#80008000");
    EXPECT_EQ(pixel(image, 15, 5), "#80800000");
}

TEST_P(GraphicsGroups, GroupsNestAndKeepTransformAndClip) {
    const Image image = draw([](GraphicsContext& context) {
        context.concatenate(AffineTransform::translation(5, 5));
        context.clipToRoundedRect({0, 0, 10, 10}, {});
        context.beginGroup();
        context.beginGroup();
        context.fillRoundedRect({-5, -5, 20, 20}, {}, colorOf(tests::white));
        context.endGroup(0.5);
        context.endGroup(0.5);
        context.fillRoundedRect({0, 0, 1, 1}, {}, colorOf(tests::red));
    });
    EXPECT_EQ(pixel(image, 10, 10), "#40404040");
    EXPECT_EQ(pixel(image, 4, 4), text(clear));
    EXPECT_EQ(pixel(image, 15, 15), text(clear));
    EXPECT_EQ(pixel(image, 5, 5), text(tests::red));
}

TEST_P(GraphicsGroups, MaskedGroupIsCutByTheMasksAlpha) {
    const Image image = draw([](GraphicsContext& context) {
        context.beginGroup();
        context.fillRoundedRect({0, 0, 20, 20}, {}, colorOf(tests::red));
        context.endGroupMasked(1, [](GraphicsContext& mask) {
            mask.fillRoundedRect({0, 0, 10, 20}, {}, colorOf(tests::black));
            mask.fillRoundedRect({10, 0, 5, 20}, {}, {1, 1, 1, 0.5});
        });
    });
    EXPECT_EQ(pixel(image, 5, 5), text(tests::red));
    EXPECT_EQ(pixel(image, 12, 5), "#80800000");
    EXPECT_EQ(pixel(image, 17, 5), text(clear));
}

TEST_P(GraphicsGroups, MaskedGroupFadesAndMayHoldGroupsOfItsOwn) {
    const Image image = draw([](GraphicsContext& context) {
        context.beginGroup();
        context.fillRoundedRect({0, 0, 20, 20}, {}, colorOf(tests::white));
        context.endGroupMasked(0.5, [](GraphicsContext& mask) {
            mask.beginGroup();
            mask.fillRoundedRect({0, 0, 10, 20}, {}, colorOf(tests::white));
            mask.endGroup(0.5);
        });
        context.fillRoundedRect({0, 0, 2, 2}, {}, colorOf(tests::blue));
    });
    EXPECT_EQ(pixel(image, 5, 5), "#40404040");
    EXPECT_EQ(pixel(image, 15, 5), text(clear));
    EXPECT_EQ(pixel(image, 1, 1), text(tests::blue));
}

TEST_P(GraphicsGroups, MaskThatDrawsNothingHidesTheGroup) {
    const Image image = draw([](GraphicsContext& context) {
        context.beginGroup();
        context.fillRoundedRect({0, 0, 20, 20}, {}, colorOf(tests::red));
        context.endGroupMasked(1, [](GraphicsContext&) {});
        context.beginGroup();
        context.fillRoundedRect({0, 0, 20, 20}, {}, colorOf(tests::red));
        context.endGroupMasked(1, nullptr);
    });
    EXPECT_EQ(pixel(image, 5, 5), text(clear));
}

TEST_P(GraphicsGroups, CallsWithoutTheirCounterpartDoNoHarm) {
    const Image image = draw([](GraphicsContext& context) {
        context.restoreState();
        context.endGroup(1);
        context.endGroupMasked(1, [](GraphicsContext&) {});
        context.beginGroup();
        context.restoreState();
        context.saveState();
        context.fillRoundedRect({0, 0, 5, 5}, {}, colorOf(tests::red));
        context.endGroupMasked(1, [](GraphicsContext& mask) {
            mask.endGroup(1);
            mask.saveState();
            mask.beginGroup();
            mask.restoreState();
            mask.endGroup(1);
            mask.fillRoundedRect({0, 0, 20, 20}, {}, colorOf(tests::black));
        });
        context.saveState();
        context.beginGroup();
    });
    EXPECT_EQ(pixel(image, 2, 2), text(tests::red));
}

TEST_P(GraphicsGroups, TransformWithoutAreaHidesWhatFollowsUntilItsStateEnds) {
    const Image image = draw([](GraphicsContext& context) {
        for (const double odd : {0.0, noNumber, infinity, 1e-300}) {
            context.saveState();
            context.concatenate(AffineTransform::scale(odd, 1));
            context.fillRoundedRect({0, 0, 20, 20}, {}, colorOf(tests::red));
            context.beginGroup();
            context.concatenate(AffineTransform::scale(2, 2));
            context.fillRoundedRect({0, 0, 20, 20}, {}, colorOf(tests::red));
            context.endGroup(1);
            context.restoreState();
        }
        context.fillRoundedRect({0, 0, 2, 2}, {}, colorOf(tests::green));
    });
    EXPECT_EQ(pixel(image, 10, 10), text(clear));
    EXPECT_EQ(pixel(image, 1, 1), text(tests::green));
}

TEST_P(GraphicsGroups, SenselessArgumentsDoNoHarm) {
    const Image image = draw([](GraphicsContext& context) {
        for (const double odd : {noNumber, infinity, -infinity, -5.0, 1e300, -1e300, 1e-300}) {
            const Rect rect{odd, odd, odd, odd};
            const Rect wide{0, 0, odd, 5};
            const CornerRadii radii{odd, odd, odd, odd};
            for (const Rect& each : {rect, wide}) {
                context.saveState();
                context.fillRoundedRect(each, radii, {odd, odd, odd, 0});
                context.strokeInsideRoundedRect(each, radii, odd, {odd, odd, odd, 0});
                context.drawShadow(each, radii, {0, 0, 0, 0}, odd);
                context.drawImage(tests::fourColors(), {0, 0, 1, 1}, rect, Interpolation::linear);
                context.drawImage(tests::fourColors(), each, {10, 10, 5, 5}, Interpolation::nearest);
                context.clipToRoundedRect(each, radii);
                context.restoreState();
            }
            context.strokeLine({odd, 0}, {0, odd}, odd, {0, 0, 0, 0});
            context.beginGroup();
            context.endGroup(odd);
        }
        context.fillRoundedRect({0, 0, 2, 2}, {}, colorOf(tests::green));
    });
    EXPECT_EQ(pixel(image, 1, 1), text(tests::green));
}

}  // namespace
}  // namespace mireth::platform
