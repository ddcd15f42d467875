// Which bytes a Range header asks for.
#include "exchange/ByteRange.hpp"

#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

constexpr std::uint64_t size = 100;

TEST(ByteRangeHeader, NamesTheFirstAndTheLastByteOrHowManyOfTheEnd) {
    const auto expectRange = [](std::string_view header, std::uint64_t first, std::uint64_t count) {
        const auto range = byteRange(header, size);
        ASSERT_TRUE(range && *range) << header;
        EXPECT_EQ((*range)->first, first) << header;
        EXPECT_EQ((*range)->size, count) << header;
    };
    expectRange("bytes=0-0", 0, 1);
    expectRange("bytes=10-19", 10, 10);
    expectRange("bytes=10-", 10, 90);
    expectRange("bytes=99-99", 99, 1);
    expectRange("bytes=90-1000", 90, 10);
    expectRange("bytes=0-18446744073709551615", 0, 100);
    expectRange("bytes=-1", 99, 1);
    expectRange("bytes=-1000", 0, 100);
}

TEST(ByteRangeHeader, AWholeFileIsSentForWhatIsNoSingleRange) {
    for (const auto* const header :
         {"", "bytes", "bytes=", "bytes=-", "bytes=a-b", "bytes=1-0", "bytes=1-2,4-5", "bytes= 1-2",
          "items=1-2", "bytes=99999999999999999999-", "bytes=--1"}) {
        const auto range = byteRange(header, size);
        ASSERT_TRUE(range) << header;
        EXPECT_FALSE(*range) << header;
    }
}

TEST(ByteRangeHeader, WhatLiesBehindTheEndCannotBeSent) {
    EXPECT_FALSE(byteRange("bytes=100-", size));
    EXPECT_FALSE(byteRange("bytes=100-200", size));
    EXPECT_FALSE(byteRange("bytes=-0", size));
    EXPECT_FALSE(byteRange("bytes=0-", 0));
    EXPECT_FALSE(byteRange("bytes=-5", 0));
}

}  // namespace
}  // namespace mireth::receiver
