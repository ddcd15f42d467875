// Decides which error lines are posted.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "MirethVex/Platform/RandomSource.hpp"

namespace mireth {

class LogMessagesSampler {
  public:
    /// Takes an upper bound n and gives an integer from 0 to n − 1.
    using RandomProvider = std::function<std::int64_t(std::int64_t)>;
    static constexpr std::int64_t defaultSamplingRate = 20;

    explicit LogMessagesSampler(RandomProvider randomProvider,
                                std::int64_t samplingRate = defaultSamplingRate);

    /// Draws from the platform's random source. A negative bound is a fatal error.
    static RandomProvider uniform(std::shared_ptr<platform::RandomSource> random);

    /// True when a draw among 0 … 99 is not above the rate. The rate itself passes, so that 20 lets 21 draws
    /// in a hundred through; the service counts on it.
    bool check() const;

  private:
    const RandomProvider randomProvider_;
    const std::int64_t samplingRate_;
};

}  // namespace mireth
