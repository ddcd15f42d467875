// Chance as a test sets it, and identifiers that count.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <string>

#include "MirethVex/Platform/RandomSource.hpp"

namespace mireth::test {

/// Any thread. No answer to the whole contract, on purpose: its draws are not spread over the range asked
/// for, since a test sets them, also to what no range allows.
class FixedRandomSource final : public platform::RandomSource {
  public:
    std::atomic<double> real{1};
    std::atomic<std::int64_t> integer{0};
    /// The bounds last asked for.
    std::atomic<double> lastLow{0};
    std::atomic<double> lastHigh{0};
    std::atomic<std::int64_t> lastBound{0};

    double uniformReal(double low, double high) override {
        lastLow = low;
        lastHigh = high;
        return real;
    }
    std::int64_t uniformBelow(std::int64_t bound) override {
        lastBound = bound;
        return integer;
    }
    /// 00000000-0000-4000-8000-000000000001 and so on.
    std::string uuid() override {
        char text[40];
        std::snprintf(text, sizeof text, "00000000-0000-4000-8000-%012d", ++count_);
        return text;
    }

  private:
    std::atomic<int> count_{0};
};

}  // namespace mireth::test
