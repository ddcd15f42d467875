// Keeps strangers from filling the operator's log: of each kind of line a few pass at once and then one a
// second; those held back are counted and told in one line. Used by the real environment.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace mireth::receiver {

/// A line's kind is what stands before its first ": ". One thread at a time.
class ReportThrottle {
  public:
    using Instant = std::chrono::steady_clock::time_point;

    /// What to write when `line` is reported at `now`, in this order: how many were held back of each kind
    /// that may speak again, and the line itself, unless it is held back.
    std::vector<std::string> pass(std::string_view line, Instant now);
    /// What to write at the end, when lines are still held back.
    std::vector<std::string> rest() const;

    /// Lines of one kind that pass at once.
    static constexpr double burst = 20;
    /// Kinds that are told apart, as a line may quote a stranger before its colon too; the others share one.
    static constexpr std::size_t mostKinds = 32;

  private:
    struct Kind {
        double allowance = burst;
        Instant filledAt;
        std::uint64_t held = 0;
    };

    void refill(Instant now);
    Kind& kindOf(std::string_view line, Instant now);

    std::map<std::string, Kind, std::less<>> kinds_;
};

}  // namespace mireth::receiver
