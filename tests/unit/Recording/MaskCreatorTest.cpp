// The hatched mask picture.
#include "PrivateSide/Recording/MaskCreator.hpp"

#include <gtest/gtest.h>

#include "platforms/linux/media/CairoGraphics.hpp"
#include "tests/support/RecordingGraphics.hpp"

namespace mireth {
namespace {

constexpr std::uint32_t stripe = 0xFFBCBCBCU;
constexpr std::uint32_t background = 0xFFE1E1E1U;

TEST(MaskCreator, ValuesAtConstruction) {
    const MaskCreator creator(std::make_shared<test::RecordingGraphics>(), 3);
    EXPECT_EQ(creator.tileSize(), 36);
    EXPECT_EQ(creator.stripeColor(), Color::gray(188.0 / 255.0));
    EXPECT_EQ(creator.bgColor(), Color::gray(225.0 / 255.0));
    EXPECT_EQ(creator.linesWidth(), 2);
}

TEST(MaskCreator, TileIsThreeStripesOnTheBackground) {
    const auto graphics = std::make_shared<test::RecordingGraphics>();
    MaskCreator creator(graphics, 2);
    EXPECT_TRUE(graphics->renderers.empty()) << "made on first use";
    EXPECT_EQ(creator.getTileImage().pixelWidth(), 24U);
    EXPECT_EQ(creator.getTileImage().pixelHeight(), 24U);
    EXPECT_EQ(graphics->log, (test::DrawLog{"fill 0 0 24 24 radius 0 color 0.882353 0.882353 0.882353 1",
                                            "line 0 12 12 0 width 2 color 0.737255 0.737255 0.737255 1",
                                            "line 0 24 24 0 width 2 color 0.737255 0.737255 0.737255 1",
                                            "line 12 24 24 12 width 2 color 0.737255 0.737255 0.737255 1"}));
    EXPECT_EQ(graphics->renderers.size(), 1U) << "and kept";
}

TEST(MaskCreator, MaskIsThePatternWithABorderInsideItsEdge) {
    const auto graphics = std::make_shared<test::RecordingGraphics>();
    MaskCreator creator(graphics, 1);
    (void)creator.getTileImage();
    graphics->log.clear();
    const auto mask = creator.getMask({100, 200, 60, 40});
    EXPECT_EQ(mask.pixelWidth(), 60U);
    EXPECT_EQ(mask.pixelHeight(), 40U);
    EXPECT_EQ(graphics->log, (test::DrawLog{"pattern 0 0 60 40 tile 12 12",
                                            "border 0 0 60 40 width 2 color 0.737255 0.737255 0.737255 1"}));
}

TEST(MaskCreator, DrawnStripesAreContinuousAndRiseToTheRight) {
    MaskCreator creator(std::make_shared<platform::CairoGraphics>(), 1);
    const auto mask = creator.getMask({0, 0, 60, 48});
    const auto at = [&mask](std::size_t x, std::size_t y) { return mask.pixels()[y * 60 + x]; };
    // The middle of a stripe: x + y is a whole number of half tiles.
    for (std::size_t x = 4; x < 20; ++x) {
        EXPECT_EQ(at(x, 23 - x), stripe) << x;
    }
    for (std::size_t x = 4; x < 20; ++x) {
        EXPECT_EQ(at(x, 26 - x), background) << x;
    }
    EXPECT_EQ(at(30, 0), stripe);
    EXPECT_EQ(at(30, 1), stripe);
    EXPECT_EQ(at(0, 20), stripe);
    EXPECT_EQ(at(59, 20), stripe);
    EXPECT_EQ(at(30, 47), stripe);
}

TEST(MaskCreator, EmptyRectangleGivesNoBitmap) {
    MaskCreator creator(std::make_shared<platform::CairoGraphics>(), 1);
    EXPECT_FALSE(creator.getMask({0, 0, 0, 10}).hasBitmap());
}

}  // namespace
}  // namespace mireth
