#include "MirethVex/Base/Date.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace mireth {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Sets the time zone for one test.
class TimeZone {
  public:
    explicit TimeZone(const char* zone) {
        if (const char* before = std::getenv("TZ")) {
            before_ = before;
        }
        setenv("TZ", zone, 1);
        tzset();
    }
    ~TimeZone() {
        before_.empty() ? unsetenv("TZ") : setenv("TZ", before_.c_str(), 1);
        tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

  private:
    std::string before_;
};

TEST(Date, TimestampMillisTruncatesTowardZero) {
    EXPECT_EQ(Date(1.9999).toTimestampMillis(), 1999);
    EXPECT_EQ(Date(-1.9999).toTimestampMillis(), -1999);
    EXPECT_EQ(Date(0.0009).toTimestampMillis(), 0);
    EXPECT_EQ(Date(-0.0009).toTimestampMillis(), 0);
    EXPECT_EQ(Date(1700000000).toTimestampMillis(), 1700000000000);
}

TEST(Date, TimestampMillisReachesBothEndsOfItsRange) {
    EXPECT_EQ(Date(-9223372036854775.808).toTimestampMillis(), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(Date(9e15).toTimestampMillis(), 9'000'000'000'000'000'000);
}

TEST(DateDeathTest, TimestampMillisOfAValueThatIsNotFiniteIsFatal) {
    EXPECT_DEATH((void)Date(notANumber).toTimestampMillis(), "Fatal error: ");
    EXPECT_DEATH((void)Date(infinity).toTimestampMillis(), "Fatal error: ");
    EXPECT_DEATH((void)Date(-infinity).toTimestampMillis(), "Fatal error: ");
}

TEST(DateDeathTest, TimestampMillisOfAValueOutOfRangeIsFatal) {
    EXPECT_DEATH((void)Date(9.3e15).toTimestampMillis(), "Fatal error: ");
    EXPECT_DEATH((void)Date(-9.3e15).toTimestampMillis(), "Fatal error: ");
    EXPECT_DEATH((void)Date(1e306).toTimestampMillis(), "Fatal error: ");
}

TEST(Date, WholeMillisecondsInNanosecondsComeBackExactly) {
    std::mt19937_64 engine(7);
    std::uniform_int_distribution<std::int64_t> anyMillis(-9'000'000'000'000, 9'000'000'000'000);
    for (int i = 0; i < 200'000; ++i) {
        const std::int64_t millis = anyMillis(engine);
        ASSERT_EQ(Date::fromNanoseconds(millis * 1'000'000).toTimestampMillis(), millis);
        ASSERT_EQ(Date::fromTimestampMillis(millis).toTimestampMillis(), millis);
    }
}

TEST(Date, NanosecondsNeverRoundUpToTheNextMillisecond) {
    std::mt19937_64 engine(8);
    std::uniform_int_distribution<std::int64_t> recent(1'600'000'000'000, 1'900'000'000'000);
    std::uniform_int_distribution<std::int64_t> withinMilli(0, 999'999);
    for (int i = 0; i < 200'000; ++i) {
        const std::int64_t millis = recent(engine);
        ASSERT_EQ(Date::fromNanoseconds(millis * 1'000'000 + withinMilli(engine)).toTimestampMillis(),
                  millis);
    }
    EXPECT_EQ(Date::fromNanoseconds(1'700'000'000'000'999'999).toTimestampMillis(), 1'700'000'000'000);
    EXPECT_EQ(Date::fromNanoseconds(-1'999'999).toTimestampMillis(), -1);
}

TEST(Date, MillisecondsThatNanosecondsCannotHoldAreStillATime) {
    EXPECT_EQ(Date::fromTimestampMillis(20'000'000'000'000).toTimestampMillis(), 20'000'000'000'000);
    EXPECT_EQ(Date::fromTimestampMillis(-20'000'000'000'000).toTimestampMillis(), -20'000'000'000'000);
}

TEST(Date, AsStringIsLocalTimeInHundredths) {
    const TimeZone utc("UTC");
    EXPECT_EQ(Date(1714558830.129).asString(), "10:20:30.12");
    EXPECT_EQ(Date(0).asString(), "00:00:00.00");
    EXPECT_EQ(Date(86399.999).asString(), "23:59:59.99");
    const TimeZone east("<+05>-5");
    EXPECT_EQ(Date(1714558830.129).asString(), "15:20:30.12");
}

TEST(Date, AsStringKeepsTheHundredthsOfEveryWholeMillisecond) {
    const TimeZone utc("UTC");
    for (int millis = 0; millis < 1000; ++millis) {
        char expected[32];
        std::snprintf(expected, sizeof expected, "00:00:00.%02d", millis / 10);
        ASSERT_EQ(Date::fromTimestampMillis(millis).asString(), expected);
    }
}

TEST(Date, AsStringBeforeTheEpochCountsFromTheSecondBefore) {
    const TimeZone utc("UTC");
    EXPECT_EQ(Date(-0.25).asString(), "23:59:59.75");
}

TEST(DateDeathTest, AsStringOfAValueThatIsNoTimeIsFatal) {
    EXPECT_DEATH((void)Date(notANumber).asString(), "Fatal error: ");
}

TEST(Date, Iso8601IsUtcWithThreeDigits) {
    const TimeZone east("<+05>-5");
    EXPECT_EQ(Date(1714558830.123).toIso8601(), "2024-05-01T10:20:30.123Z");
    EXPECT_EQ(Date(0).toIso8601(), "1970-01-01T00:00:00.000Z");
    EXPECT_EQ(Date(-0.001).toIso8601(), "1969-12-31T23:59:59.999Z");
}

std::int64_t millisOf(const char* text) {
    const auto date = Date::fromIso8601(text);
    EXPECT_TRUE(date.has_value()) << text;
    return date ? date->toTimestampMillis() : -1;
}

TEST(Date, ReadsIso8601WithAFraction) {
    EXPECT_EQ(millisOf("2024-05-01T10:20:30.123Z"), 1714558830123);
    EXPECT_EQ(millisOf("1970-01-01T00:00:00.0Z"), 0);
    EXPECT_EQ(millisOf("2024-02-29T23:59:59.999Z"), 1709251199999);
    EXPECT_EQ(millisOf("1969-12-31T23:59:59.000Z"), -1000);
    EXPECT_EQ(millisOf("9999-12-31T23:59:59.999Z"), 253402300799999);
}

TEST(Date, ReadsFractionsOfAnyLengthAndDropsWhatIsBelowANanosecond) {
    EXPECT_EQ(millisOf("2024-05-01T10:20:30.1Z"), 1714558830100);
    EXPECT_EQ(millisOf("2024-05-01T10:20:30.1239999999999999Z"), 1714558830123);
}

TEST(Date, ReadsZonesOffUtc) {
    EXPECT_EQ(millisOf("2024-05-01T12:20:30.123+02:00"), 1714558830123);
    EXPECT_EQ(millisOf("2024-05-01T12:20:30.123+0200"), 1714558830123);
    EXPECT_EQ(millisOf("2024-04-30T23:50:30.123-10:30"), 1714558830123);
}

TEST(Date, ReadsBackWhatItWrites) {
    std::mt19937_64 engine(9);
    std::uniform_int_distribution<std::int64_t> anyMillis(-60'000'000'000'000, 250'000'000'000'000);
    for (int i = 0; i < 20'000; ++i) {
        const std::int64_t millis = anyMillis(engine);
        const std::string text = Date::fromTimestampMillis(millis).toIso8601();
        ASSERT_EQ(millisOf(text.c_str()), millis) << text;
    }
}

class NotIso8601 : public testing::TestWithParam<const char*> {};

TEST_P(NotIso8601, IsRefused) {
    EXPECT_EQ(Date::fromIso8601(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Date, NotIso8601,
    testing::Values("", "nonsense", "2024-05-01T10:20:30Z", "2024-05-01T10:20:30.Z",
                    "2024-05-01T10:20:30.123", "2024-05-01 10:20:30.123Z", "2024-05-01T10:20:30,123Z",
                    "2024-13-01T10:20:30.123Z", "2024-00-01T10:20:30.123Z", "2024-02-30T10:20:30.123Z",
                    "2023-02-29T10:20:30.123Z", "2024-05-00T10:20:30.123Z", "2024-05-01T24:20:30.123Z",
                    "2024-05-01T10:60:30.123Z", "2024-05-01T10:20:60.123Z", "2024-05-01T10:20:30.123Zx",
                    " 2024-05-01T10:20:30.123Z", "2024-5-1T10:20:30.123Z", "24-05-01T10:20:30.123Z",
                    "2024-05-01T10:20:30.123+2:00", "2024-05-01T10:20:30.123+24:00",
                    "2024-05-01T10:20:30.123+02:60", "2024-05-01T10:20:30.123 Z", "-024-05-01T10:20:30.123Z",
                    "1714558830123"));

TEST(Date, SecondsToMillisTruncatesTowardZero) {
    EXPECT_EQ(secondsToMillis(1000.0625), 1000062);
    EXPECT_EQ(secondsToMillis(-0.5), -500);
}

}  // namespace
}  // namespace mireth
