#include "MirethVex/Base/Date.hpp"

#include <cmath>
#include <cstdio>
#include <ctime>
#include <limits>

#include "MirethVex/Base/FatalError.hpp"

namespace mireth {

namespace {

constexpr std::int64_t nanosecondsPerMilli = 1'000'000;
constexpr double nanosecondsPerSecond = 1e9;

/// A time in whole seconds and the milliseconds after them, also before the epoch.
struct SplitTime {
    std::time_t seconds = 0;
    int millis = 0;
};

SplitTime split(std::int64_t millis) {
    const std::int64_t rest = (millis % 1000 + 1000) % 1000;
    return {static_cast<std::time_t>((millis - rest) / 1000), static_cast<int>(rest)};
}

/// The float next to `seconds` whose milliseconds are exactly `millis`. Beyond some 285,000 years floats are
/// coarser than that; `seconds` then stays as it is.
double adjusted(double seconds, std::int64_t millis) noexcept {
    constexpr std::int64_t largestExact = std::int64_t{1} << 53U;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    if (millis > largestExact || millis < -largestExact) {
        return seconds;
    }
    while (static_cast<std::int64_t>(seconds * 1000.0) < millis) {
        seconds = std::nextafter(seconds, infinity);
    }
    while (static_cast<std::int64_t>(seconds * 1000.0) > millis) {
        seconds = std::nextafter(seconds, -infinity);
    }
    return seconds;
}

/// Reads `count` digits at `position` and moves on; nothing when there are fewer.
std::optional<int> readDigits(std::string_view text, std::size_t& position, std::size_t count) {
    if (position + count > text.size()) {
        return std::nullopt;
    }
    int value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const char digit = text[position + i];
        if (digit < '0' || digit > '9') {
            return std::nullopt;
        }
        value = value * 10 + (digit - '0');
    }
    position += count;
    return value;
}

bool readLiteral(std::string_view text, std::size_t& position, char literal) {
    if (position >= text.size() || text[position] != literal) {
        return false;
    }
    ++position;
    return true;
}

bool isLeapYear(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int daysInMonth(int year, int month) {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeapYear(year) ? 29 : days[month - 1];
}

/// Nanoseconds of the fraction; digits past the ninth are read and dropped. Nothing without a digit.
std::optional<std::int64_t> readFraction(std::string_view text, std::size_t& position) {
    std::int64_t value = 0;
    std::int64_t unit = static_cast<std::int64_t>(nanosecondsPerSecond);
    const std::size_t begin = position;
    while (position < text.size() && text[position] >= '0' && text[position] <= '9') {
        unit /= 10;
        value += unit * (text[position] - '0');
        ++position;
    }
    if (position == begin) {
        return std::nullopt;
    }
    return value;
}

/// Seconds east of UTC: "Z", or a sign and hours and minutes with or without a colon.
std::optional<int> readZone(std::string_view text, std::size_t& position) {
    if (readLiteral(text, position, 'Z')) {
        return 0;
    }
    int sign = 0;
    if (readLiteral(text, position, '+')) {
        sign = 1;
    } else if (readLiteral(text, position, '-')) {
        sign = -1;
    } else {
        return std::nullopt;
    }
    const auto hours = readDigits(text, position, 2);
    (void)readLiteral(text, position, ':');
    const auto minutes = readDigits(text, position, 2);
    if (!hours || !minutes || *hours > 23 || *minutes > 59) {
        return std::nullopt;
    }
    return sign * (*hours * 3600 + *minutes * 60);
}

}  // namespace

Date Date::fromNanoseconds(std::int64_t nanoseconds) noexcept {
    return Date(
        adjusted(static_cast<double>(nanoseconds) / nanosecondsPerSecond, nanoseconds / nanosecondsPerMilli));
}

Date Date::fromTimestampMillis(std::int64_t millis) noexcept {
    return Date(adjusted(static_cast<double>(millis) / 1000.0, millis));
}

std::optional<Date> Date::fromIso8601(std::string_view text) {
    std::size_t at = 0;
    const auto year = readDigits(text, at, 4);
    const bool firstDash = readLiteral(text, at, '-');
    const auto month = readDigits(text, at, 2);
    const bool secondDash = readLiteral(text, at, '-');
    const auto day = readDigits(text, at, 2);
    const bool separator = readLiteral(text, at, 'T');
    const auto hour = readDigits(text, at, 2);
    const bool firstColon = readLiteral(text, at, ':');
    const auto minute = readDigits(text, at, 2);
    const bool secondColon = readLiteral(text, at, ':');
    const auto second = readDigits(text, at, 2);
    const bool dot = readLiteral(text, at, '.');
    if (!year || !month || !day || !hour || !minute || !second || !firstDash || !secondDash || !separator ||
        !firstColon || !secondColon || !dot) {
        return std::nullopt;
    }
    const auto fraction = readFraction(text, at);
    const auto zone = readZone(text, at);
    if (!fraction || !zone || at != text.size()) {
        return std::nullopt;
    }
    if (*month < 1 || *month > 12 || *day < 1 || *day > daysInMonth(*year, *month) || *hour > 23 ||
        *minute > 59 || *second > 59) {
        return std::nullopt;
    }
    std::tm fields{};
    fields.tm_year = *year - 1900;
    fields.tm_mon = *month - 1;
    fields.tm_mday = *day;
    fields.tm_hour = *hour;
    fields.tm_min = *minute;
    fields.tm_sec = *second;
    const auto utc = static_cast<std::int64_t>(timegm(&fields)) - *zone;
    return fromTimestampMillis(utc * 1000 + *fraction / nanosecondsPerMilli);
}

std::int64_t Date::toTimestampMillis() const noexcept {
    return secondsToMillis(seconds_);
}

std::string Date::asString() const {
    // Of the whole milliseconds, which are exact: the hundredths of 0.29 s in floats are 28.999….
    const SplitTime time = split(toTimestampMillis());
    std::tm local{};
    localtime_r(&time.seconds, &local);
    char text[48];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d.%02d", local.tm_hour % 24, local.tm_min % 60,
                  local.tm_sec % 61, time.millis / 10);
    return text;
}

std::string Date::toIso8601() const {
    const SplitTime time = split(toTimestampMillis());
    std::tm utc{};
    gmtime_r(&time.seconds, &utc);
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", utc.tm_year + 1900,
                  utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec, time.millis);
    return text;
}

std::int64_t secondsToMillis(double seconds) noexcept {
    const double millis = seconds * 1000.0;
    // 2^63 is the first value that does not fit; −2^63 is the last that does.
    constexpr double limit = 9223372036854775808.0;
    if (!std::isfinite(millis) || millis >= limit || millis < -limit) {
        fatalError("A time does not fit into whole milliseconds");
    }
    return static_cast<std::int64_t>(millis);
}

}  // namespace mireth
