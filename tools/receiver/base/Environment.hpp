// What the receiver takes from outside itself: the time, fresh identifiers and a place for the operator's
// lines. Passed to every part that needs one of them, so that a test can supply its own.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

namespace mireth::receiver {

/// All four are called from any connection's thread, at once.
struct Environment {
    /// Milliseconds since the Unix epoch.
    std::function<std::int64_t()> wallMillis;
    /// A clock that never jumps, for rates.
    std::function<std::chrono::steady_clock::time_point()> steadyNow;
    /// A fresh UUID in its 36-character text form.
    std::function<std::string()> newIdentifier;
    /// Takes one line for the operator, without a line end; control characters are made visible.
    std::function<void(std::string_view)> report;

    /// The machine's clocks, random UUIDs, and lines on `errors` behind "mireth-receiver: ", of each kind not
    /// too many. `errors` must outlive the result and its copies.
    static Environment real(std::ostream& errors);
};

/// `millis` since the epoch as "2023-11-14T22:13:20.000Z".
std::string isoTime(std::int64_t millis);

}  // namespace mireth::receiver
