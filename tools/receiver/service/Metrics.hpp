// Counts what the receiver does, for the operator's monitoring. Every part that has something to count gets
// it through Services.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "store/StoreStats.hpp"

namespace mireth::receiver {

/// One answered request.
struct Answered {
    std::string_view endpoint;  ///< one of a few fixed names
    int status = 0;
    std::uint64_t received = 0;  ///< bytes of its body
    std::uint64_t sent = 0;      ///< bytes of the answer's body
    std::chrono::steady_clock::duration took{};
};

/// Any thread may call.
class Metrics {
  public:
    void count(const Answered& request);
    /// What became of a chunk upload: one of a few fixed words.
    void countChunk(std::string_view outcome);
    /// A connection was turned away because all were taken, or shed because its client was slow.
    void countTurnedAway();
    void countShed();
    /// A session was removed because it was too old, or too much was kept.
    void countExpired(std::int64_t sessions);

    /// All of it in the Prometheus text format, version 0.0.4.
    std::string text(const StoreStats& store) const;

    /// Upper bounds of the latency histogram, in seconds.
    static constexpr std::array<double, 11> bounds{0.001, 0.0025, 0.005, 0.01, 0.025, 0.05,
                                                   0.1,   0.25,   0.5,   1,    5};

  private:
    struct Latency {
        std::array<std::uint64_t, bounds.size()> buckets{};  ///< each with its own requests only
        std::uint64_t count = 0;
        double sum = 0;
    };

    mutable std::mutex mutex_;
    // Guarded by mutex_.
    std::map<std::pair<std::string, int>, std::uint64_t> requests_;
    std::map<std::string, Latency> latencies_;
    std::map<std::string, std::uint64_t> chunks_;
    std::uint64_t received_ = 0;
    std::uint64_t sent_ = 0;
    std::uint64_t errors_ = 0;
    std::uint64_t turnedAway_ = 0;
    std::uint64_t shed_ = 0;
    std::uint64_t expired_ = 0;
};

}  // namespace mireth::receiver
