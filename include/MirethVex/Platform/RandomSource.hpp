// Chance and identifiers, injected so that a seed can repeat a session.
#pragma once

#include <cstdint>
#include <string>

namespace mireth::platform {

/// Any thread.
class RandomSource {
  public:
    virtual ~RandomSource() = default;
    /// Uniform in the closed range `low` to `high`, both finite.
    virtual double uniformReal(double low, double high) = 0;
    /// Uniform among 0 … `bound` − 1; `bound` > 0.
    virtual std::int64_t uniformBelow(std::int64_t bound) = 0;
    /// A new version-4 UUID (RFC 9562) in its 36-character form with upper-case digits.
    virtual std::string uuid() = 0;
};

}  // namespace mireth::platform
