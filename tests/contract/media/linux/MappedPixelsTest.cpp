// Memory for pictures that is no part of the heap.
#include "platforms/linux/media/MappedPixels.hpp"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <span>

namespace mireth::platform {
namespace {

TEST(MappedPixels, AreBlankAndAsManyAsAskedFor) {
    const auto pixels = mapPixels(390 * 844);
    ASSERT_NE(pixels, nullptr);
    const std::span words(pixels.get(), 390 * 844);
    EXPECT_TRUE(std::ranges::all_of(words, [](std::uint32_t word) { return word == 0; }));
    std::ranges::fill(words, 1U);
    EXPECT_EQ(words.back(), 1U);
}

TEST(MappedPixels, GoBackWithTheLastCopy) {
    auto pixels = mapPixels(1024);
    ASSERT_NE(pixels, nullptr);
    void* const place = pixels.get();
    auto copy = pixels;
    unsigned char resident = 0;
    pixels = nullptr;
    EXPECT_EQ(mincore(place, 4096, &resident), 0);
    copy = nullptr;
    EXPECT_EQ(mincore(place, 4096, &resident), -1);
    EXPECT_EQ(errno, ENOMEM);
}

TEST(MappedPixels, AreNullWhereThereIsNoMemory) {
    EXPECT_EQ(mapPixels(0), nullptr);
    EXPECT_EQ(mapPixels(std::numeric_limits<std::size_t>::max() / 4), nullptr);
    EXPECT_EQ(mapPixels(std::numeric_limits<std::size_t>::max()), nullptr);
}

}  // namespace
}  // namespace mireth::platform
