// Draws from one seed: the same on every machine and with every compiler.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace mireth::model {

class Chance {
  public:
    explicit Chance(std::uint64_t seed) : engine_(seed) {}

    /// 0 to `bound` − 1.
    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(engine_() % bound); }
    /// `lowest` to `highest`.
    int between(int lowest, int highest) {
        return lowest + static_cast<int>(below(static_cast<std::size_t>(highest - lowest + 1)));
    }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    template <class T>
    const T& oneOf(const std::vector<T>& choices) {
        return choices[below(choices.size())];
    }

  private:
    std::mt19937_64 engine_;
};

}  // namespace mireth::model
