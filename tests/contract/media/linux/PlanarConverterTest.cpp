// The planes that frames are turned into, value by value.
#include "platforms/linux/media/PlanarConverter.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <ostream>
#include <utility>
#include <vector>

namespace mireth::platform {
namespace {

constexpr std::uint32_t white = 0xFFFFFFFFU;
constexpr std::uint32_t black = 0xFF000000U;
constexpr std::uint32_t red = 0xFFFF0000U;

struct Values {
    int luma = 0;
    int blue = 0;
    int red = 0;
    bool operator==(const Values&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Values& values) {
    return out << values.luma << ' ' << values.blue << ' ' << values.red;
}

/// A picture of four columns and two rows.
class Picture {
  public:
    explicit Picture(std::vector<std::uint32_t> words, std::size_t bytesPerRow = 16)
        : words_(std::move(words)),
          picture_(converter_.convert(reinterpret_cast<const std::byte*>(words_.data()), bytesPerRow)) {}

    int luma(int column, int row = 0) const {
        return picture_.planes[0][row * picture_.bytesPerRow[0] + column];
    }
    /// Of the left or the right half.
    Values half(int column) const {
        return {luma(2 * column), picture_.planes[1][column], picture_.planes[2][column]};
    }

  private:
    PlanarConverter converter_{4, 2};
    std::vector<std::uint32_t> words_;
    PlanarPicture picture_;
};

Values valuesOf(std::uint32_t word) {
    return Picture(std::vector<std::uint32_t>(8, word)).half(0);
}

TEST(PlanarConverter, ColorsAreBt601OfLimitedRange) {
    EXPECT_EQ(valuesOf(black), (Values{16, 128, 128}));
    EXPECT_EQ(valuesOf(white), (Values{235, 128, 128}));
    EXPECT_EQ(valuesOf(red), (Values{81, 90, 240}));
    EXPECT_EQ(valuesOf(0xFF00FF00U), (Values{145, 54, 34}));
    EXPECT_EQ(valuesOf(0xFF0000FFU), (Values{41, 240, 110}));
}

TEST(PlanarConverter, EveryGreyStaysGrey) {
    for (std::uint32_t grey = 0; grey <= 0xFFU; ++grey) {
        const Values values = valuesOf(black | grey << 16U | grey << 8U | grey);
        EXPECT_EQ(values.blue, 128) << grey;
        EXPECT_EQ(values.red, 128) << grey;
        EXPECT_LE(std::abs(values.luma - (16 + 219.0 * grey / 255)), 0.5) << grey;
    }
}

TEST(PlanarConverter, TransparencyLiesOnBlack) {
    EXPECT_EQ(valuesOf(0), (Values{16, 128, 128}));
    // Half of white, premultiplied.
    EXPECT_EQ(valuesOf(0x80808080U), valuesOf(0xFF808080U));
}

TEST(PlanarConverter, EveryPixelHasALumaOfItsOwn) {
    const Picture picture({black, white, black, white, white, black, white, black});
    for (int column = 0; column < 4; ++column) {
        EXPECT_EQ(picture.luma(column, 0), column % 2 == 0 ? 16 : 235);
        EXPECT_EQ(picture.luma(column, 1), column % 2 == 0 ? 235 : 16);
    }
}

TEST(PlanarConverter, ChromaLiesOnTheLeftOfItsTwoColumns) {
    // A red column counts half where a chroma lies and a quarter beside it.
    const Picture third({black, black, red, black, black, black, red, black});
    EXPECT_EQ(third.half(0).red, 128);
    EXPECT_EQ(third.half(1).red, 128 + 112 / 2);
    const Picture second({black, red, black, black, black, red, black, black});
    EXPECT_EQ(second.half(0).red, 128 + 112 / 4);
    EXPECT_EQ(second.half(1).red, 128 + 112 / 4);
    // The picture goes on beyond its edge as it ends.
    const Picture first({red, black, black, black, red, black, black, black});
    EXPECT_EQ(first.half(0).red, 128 + 112 * 3 / 4);
}

TEST(PlanarConverter, BothRowsCountAlike) {
    const Picture upper({red, red, red, red, black, black, black, black});
    const Picture lower({black, black, black, black, red, red, red, red});
    EXPECT_EQ(upper.half(1).red, 128 + 112 / 2);
    EXPECT_EQ(lower.half(1).red, 128 + 112 / 2);
}

TEST(PlanarConverter, WhatLiesBetweenRowsIsNotRead) {
    const Picture picture({black, black, black, black, white, white, black, black, black, black}, 24);
    EXPECT_EQ(picture.luma(0, 1), 16);
    EXPECT_EQ(picture.luma(3, 1), 16);
}

}  // namespace
}  // namespace mireth::platform
