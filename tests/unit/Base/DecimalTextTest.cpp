#include "Base/DecimalText.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace mireth {
namespace {

TEST(DecimalText, WholeNumbersKeepTheirPoint) {
    EXPECT_EQ(decimalText(0), "0.0");
    EXPECT_EQ(decimalText(-12), "-12.0");
}

TEST(DecimalText, IsTheShortestThatReadsBackAsTheSame) {
    EXPECT_EQ(decimalText(0.1), "0.1");
    EXPECT_EQ(decimalText(0.1 + 0.2), "0.30000000000000004");
}

TEST(DecimalText, WhatIsNoNumberIsNamed) {
    EXPECT_EQ(decimalText(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(decimalText(std::numeric_limits<double>::quiet_NaN()), "nan");
}

}  // namespace
}  // namespace mireth
