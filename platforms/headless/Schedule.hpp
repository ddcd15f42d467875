// What is due later, in the order in which it will run. The virtual main queue owns one.
#pragma once

#include <chrono>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include "MirethVex/Base/Work.hpp"
#include "MirethVex/Platform/MainQueue.hpp"

namespace mireth::headless {

/// At one instant timers come before steps; within each kind, what was set first comes first.
enum class DueKind { timer, step };

struct DueItem {
    std::chrono::nanoseconds at{};
    Work work;
};

/// Any thread may add; only the loop takes.
class Schedule : public std::enable_shared_from_this<Schedule> {
  public:
    using Instant = std::chrono::nanoseconds;

    void add(Instant at, DueKind kind, Work work);
    /// First due at `first`, then every `interval`. It keeps its place in the order for good.
    std::unique_ptr<platform::Timer> addRepeating(Instant first, Instant interval, Work tick);

    /// The first item due at `limit` or earlier. A repeating one is set again at its next instant after
    /// `now`: ticks that were missed are left out, the phase is kept.
    std::optional<DueItem> takeDue(Instant limit, Instant now);
    std::optional<Instant> next() const;
    /// How many items due by `limit` run once only, steps included.
    std::size_t onceCount(Instant limit) const;
    /// Drops everything, and whatever is added later.
    void close() noexcept;

  private:
    struct Key {
        Instant at{};
        DueKind kind = DueKind::timer;
        std::uint64_t number = 0;
        auto operator<=>(const Key&) const = default;
    };
    struct Repeating {
        Instant interval{};
        Work tick;
        bool valid = true;  // main thread only
        Key key;            // guarded by the schedule's mutex
    };
    struct Item {
        Work once;
        std::shared_ptr<Repeating> repeating;
    };
    class RepeatingTimer;

    void remove(const std::shared_ptr<Repeating>& repeating) noexcept;

    mutable std::mutex mutex_;
    std::map<Key, Item> items_;     // guarded by mutex_
    std::uint64_t nextNumber_ = 0;  // guarded by mutex_
    bool closed_ = false;           // guarded by mutex_
};

}  // namespace mireth::headless
