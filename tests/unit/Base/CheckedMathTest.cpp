#include "Base/CheckedMath.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace mireth {
namespace {

constexpr auto greatest = std::numeric_limits<std::int32_t>::max();
constexpr auto least = std::numeric_limits<std::int32_t>::min();

TEST(CheckedMath, ComputesWhatFits) {
    EXPECT_EQ(checkedAdd<std::int32_t>(greatest - 1, 1), greatest);
    EXPECT_EQ(checkedSubtract<std::int32_t>(least + 1, 1), least);
    EXPECT_EQ(checkedMultiply<std::int32_t>(-65536, 32768), least);
    EXPECT_EQ(checkedDivide<std::int32_t>(7, 2), 3);
    EXPECT_EQ(checkedDivide<std::int32_t>(-7, 2), -3);
    EXPECT_EQ(checkedDivide<std::int32_t>(greatest, -1), -greatest);
}

TEST(CheckedMathDeathTest, AnOverflowIsFatal) {
    EXPECT_DEATH((void)checkedAdd<std::int32_t>(greatest, 1), "Fatal error: Addition results in an overflow");
    EXPECT_DEATH((void)checkedSubtract<std::int32_t>(least, 1),
                 "Fatal error: Subtraction results in an overflow");
    EXPECT_DEATH((void)checkedMultiply<std::int32_t>(greatest, 2),
                 "Fatal error: Multiplication results in an overflow");
}

TEST(CheckedMathDeathTest, DivisionByZeroIsFatal) {
    EXPECT_DEATH((void)checkedDivide<std::int32_t>(1, 0), "Fatal error: Division by zero");
    EXPECT_DEATH((void)checkedDivide<std::int64_t>(0, 0), "Fatal error: Division by zero");
}

TEST(CheckedMathDeathTest, TheLeastValueByMinusOneIsFatal) {
    EXPECT_DEATH((void)checkedDivide<std::int32_t>(least, -1),
                 "Fatal error: Division results in an overflow");
    EXPECT_DEATH((void)checkedDivide<std::int64_t>(std::numeric_limits<std::int64_t>::min(), -1),
                 "Fatal error: Division results in an overflow");
}

}  // namespace
}  // namespace mireth
