// Text as pictures: the right size, the right colour, inside its room.
#include "phone/TextDrawing.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace mireth::phone {
namespace {

/// The columns and rows, in pixels, that hold ink.
struct Ink {
    std::size_t left = SIZE_MAX;
    std::size_t right = 0;
    std::size_t top = SIZE_MAX;
    std::size_t bottom = 0;
    bool isThere() const { return left != SIZE_MAX; }
    bool operator==(const Ink&) const = default;
};

Ink inkOf(const platform::Image& image) {
    Ink ink;
    for (std::size_t index = 0; index < image.pixels().size(); ++index) {
        if (image.pixels()[index] >> 24U > 64) {
            const std::size_t x = index % image.pixelWidth();
            const std::size_t y = index / image.pixelWidth();
            ink = {std::min(ink.left, x), std::max(ink.right, x), std::min(ink.top, y),
                   std::max(ink.bottom, y)};
        }
    }
    return ink;
}

TEST(TextDrawing, APictureHasTheViewsSizeInTheScreensPixels) {
    const auto image = drawText("Hello", {}, {100.5, 30}, 3);
    EXPECT_EQ(image.pixelWidth(), 302U);
    EXPECT_EQ(image.pixelHeight(), 90U);
    EXPECT_EQ(image.scale(), 3);
}

TEST(TextDrawing, NothingIsDrawnForNoTextOrNoRoom) {
    EXPECT_FALSE(drawText("", {}, {100, 30}, 3).hasBitmap());
    EXPECT_FALSE(drawText("a", {}, {0, 30}, 3).hasBitmap());
}

TEST(TextDrawing, AlignmentAndInsetPlaceTheText) {
    TextStyle style;
    style.inset = 10;
    const Ink left = inkOf(drawText("I", style, {200, 30}, 1));
    EXPECT_GE(left.left, 10U);
    EXPECT_LT(left.right, 40U);
    style.alignment = platform::TextAlignment::right;
    const Ink right = inkOf(drawText("I", style, {200, 30}, 1));
    EXPECT_GT(right.left, 160U);
    EXPECT_LT(right.right, 190U);
    style.alignment = platform::TextAlignment::center;
    const Ink middle = inkOf(drawText("I", style, {200, 30}, 1));
    EXPECT_NEAR(static_cast<double>(middle.left + middle.right) / 2, 100, 3);
}

TEST(TextDrawing, WhatDoesNotFitIsCutBetweenLines) {
    const std::string text = "Several words that need many lines in so narrow a view as this one is";
    for (const double scale : {1.0, 3.0}) {
        const Ink ink = inkOf(drawText(text, {}, {120, 44}, scale));
        ASSERT_TRUE(ink.isThere());
        // Neither the first nor the last row: whole lines stand in the middle.
        EXPECT_GT(ink.top, 0U);
        EXPECT_LT(static_cast<double>(ink.bottom), 44 * scale - 1);
    }
}

TEST(TextDrawing, TheColorIsThatOfTheText) {
    TextStyle style;
    style.color = {1, 0, 0, 1};
    const auto image = drawText("█", style, {40, 30}, 2);
    EXPECT_NE(std::ranges::find(image.pixels(), 0xFFFF0000U), image.pixels().end());
}

TEST(TextDrawing, ALongerTextMeasuresLonger) {
    const TextStyle style;
    EXPECT_GT(measureLine("Add to bag", style, 3).width, measureLine("Add", style, 3).width);
    EXPECT_GT(measureLine("Add", style, 3).height, 10);
}

TEST(TextDrawing, ALineIsWholeInTheRoomThatItMeasures) {
    for (const std::string text : {"All", "Mugs", "Bowls", "Vases", "Plates", "View bag", "Check out"}) {
        for (const double points : {10.5, 13.5, 16.0, 17.0}) {
            for (const double scale : {1.0, 2.0, 3.0}) {
                TextStyle style;
                style.font = {"Inter Medium", points};
                const Size room = measureLine(text, style, scale);
                EXPECT_EQ(inkOf(drawText(text, style, room, scale)),
                          inkOf(drawText(text, style, {room.width * 2, room.height}, scale)))
                    << text << " at " << points << " points and scale " << scale;
            }
        }
    }
}

}  // namespace
}  // namespace mireth::phone
