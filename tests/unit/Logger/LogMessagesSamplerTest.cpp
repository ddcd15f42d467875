#include "PrivateSide/Logger/LogMessagesSampler.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "MirethVex/Headless/SeededRandomSource.hpp"
#include "support/FixedRandomSource.hpp"

namespace mireth {
namespace {

LogMessagesSampler drawing(std::int64_t value, std::int64_t rate = LogMessagesSampler::defaultSamplingRate) {
    return LogMessagesSampler([value](std::int64_t) { return value; }, rate);
}

TEST(LogMessagesSampler, TheDefaultRateLetsADrawOf20PassAnd21Not) {
    EXPECT_EQ(LogMessagesSampler::defaultSamplingRate, 20);
    EXPECT_TRUE(drawing(0).check());
    EXPECT_TRUE(drawing(20).check());
    EXPECT_FALSE(drawing(21).check());
    EXPECT_FALSE(drawing(99).check());
}

TEST(LogMessagesSampler, TwentyOneOfTheHundredDrawsPass) {
    int passed = 0;
    for (int draw = 0; draw < 100; ++draw) {
        passed += drawing(draw).check() ? 1 : 0;
    }
    EXPECT_EQ(passed, 21);
}

TEST(LogMessagesSampler, ARateOf99OrMoreAlwaysPasses) {
    EXPECT_TRUE(drawing(99, 99).check());
    EXPECT_TRUE(drawing(99, 100).check());
    EXPECT_FALSE(drawing(99, 98).check());
}

TEST(LogMessagesSampler, ANegativeRateNeverPasses) {
    EXPECT_FALSE(drawing(0, -1).check());
    EXPECT_FALSE(drawing(99, std::numeric_limits<std::int64_t>::min()).check());
}

TEST(LogMessagesSampler, AsksForADrawBelow100) {
    const auto random = std::make_shared<test::FixedRandomSource>();
    const LogMessagesSampler sampler(LogMessagesSampler::uniform(random));
    random->integer = 20;
    EXPECT_TRUE(sampler.check());
    random->integer = 21;
    EXPECT_FALSE(sampler.check());
    EXPECT_EQ(random->lastBound, 100);
}

TEST(LogMessagesSampler, TheUniformProviderGivesZeroIncludedAndTheBoundExcluded) {
    const auto provider = LogMessagesSampler::uniform(std::make_shared<headless::SeededRandomSource>(1));
    bool zero = false;
    bool two = false;
    for (int i = 0; i < 1000; ++i) {
        const auto value = provider(3);
        ASSERT_GE(value, 0);
        ASSERT_LT(value, 3);
        zero = zero || value == 0;
        two = two || value == 2;
    }
    EXPECT_TRUE(zero && two);
}

TEST(LogMessagesSamplerDeathTest, ANegativeBoundIsFatal) {
    const auto provider = LogMessagesSampler::uniform(std::make_shared<test::FixedRandomSource>());
    EXPECT_DEATH((void)provider(-1), "Fatal error: ");
}

}  // namespace
}  // namespace mireth
