// Chance from one seed: the same draws on every machine and with every compiler.
#pragma once

#include <cstdint>
#include <mutex>
#include <random>
#include <string>

#include "MirethVex/Platform/RandomSource.hpp"

namespace mireth::headless {

/// Any thread; threads share one sequence.
class SeededRandomSource final : public platform::RandomSource {
  public:
    explicit SeededRandomSource(std::uint64_t seed = 0) : engine_(seed) {}

    double uniformReal(double low, double high) override;
    std::int64_t uniformBelow(std::int64_t bound) override;
    std::string uuid() override;

  private:
    std::uint64_t draw();

    std::mutex mutex_;
    std::mt19937_64 engine_;  // guarded by mutex_
};

}  // namespace mireth::headless
