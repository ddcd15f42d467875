// A moment of the wall clock.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

/// Seconds since the Unix epoch, as a 64-bit float. A value type; any thread. It may hold a value that is not
/// finite, which compares as floats do and which no conversion takes.
class MIRETH_EXPORT Date {
  public:
    explicit Date(double secondsSinceEpoch = 0) noexcept : seconds_(secondsSinceEpoch) {}

    /// The moment `nanoseconds` after the epoch, so that `toTimestampMillis()` gives exactly the whole
    /// milliseconds in it: the nearest float may fall just below a whole millisecond, and truncation would
    /// then lose one.
    static Date fromNanoseconds(std::int64_t nanoseconds) noexcept;
    /// The moment `millis` after the epoch; `toTimestampMillis()` gives them back exactly up to 2^53.
    static Date fromTimestampMillis(std::int64_t millis) noexcept;

    /// Reads an ISO 8601 internet date-time (RFC 3339) with fractional seconds, such as
    /// 2024-05-01T10:20:30.123Z, down to the millisecond; further digits are dropped. The zone is "Z" or an
    /// offset with or without a colon. Nothing for any other text, also for one without a fraction or with a
    /// leap second.
    static std::optional<Date> fromIso8601(std::string_view text);

    double secondsSinceEpoch() const noexcept { return seconds_; }

    /// Whole milliseconds since the epoch: seconds × 1000 truncated toward zero. A value that is not finite
    /// or does not fit is a fatal error.
    std::int64_t toTimestampMillis() const noexcept;

    /// Local time as HH:mm:ss.SS, 24-hour clock, whole hundredths of a second. A value that
    /// `toTimestampMillis` refuses is a fatal error here too.
    std::string asString() const;

    /// UTC with milliseconds, such as 2024-05-01T10:20:30.123Z. A value that `toTimestampMillis` refuses is a
    /// fatal error here too.
    std::string toIso8601() const;

    auto operator<=>(const Date&) const = default;

  private:
    double seconds_;
};

/// A time in seconds as whole milliseconds, truncated toward zero. A value that is not finite or does not
/// fit is a fatal error.
MIRETH_EXPORT std::int64_t secondsToMillis(double seconds) noexcept;

}  // namespace mireth
