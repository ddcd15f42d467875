// Removes sessions that are too old or too many, by the operator's rules. Used by Housekeeping.
#pragma once

#include <cstdint>

#include "service/Services.hpp"

namespace mireth::receiver {

/// One thread at a time.
class Retention {
  public:
    explicit Retention(Services services) : services_(services) {}

    /// Carries the rules out, and finishes removals that could not be; returns how many sessions it removed.
    /// What fails is reported and left for the next time.
    std::int64_t enforce();

  private:
    std::int64_t removeOld(std::int64_t days);
    std::int64_t removeSurplus(std::uint64_t bytes);
    /// How many of the sessions that were quiet since `millis` it removed, a batch at most.
    std::int64_t removeBatch(std::int64_t millis, std::int64_t most);

    const Services services_;
};

}  // namespace mireth::receiver
