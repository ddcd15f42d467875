// Items sorted by instant, kind and the order in which they were set.
#include "Schedule.hpp"

#include <algorithm>
#include <utility>

namespace mireth::headless {

class Schedule::RepeatingTimer final : public platform::Timer {
  public:
    RepeatingTimer(std::weak_ptr<Schedule> schedule, std::shared_ptr<Repeating> repeating)
        : schedule_(std::move(schedule)), repeating_(std::move(repeating)) {}
    RepeatingTimer(const RepeatingTimer&) = delete;
    RepeatingTimer& operator=(const RepeatingTimer&) = delete;
    ~RepeatingTimer() override { stop(); }

    void invalidate() override { stop(); }

  private:
    void stop() noexcept {
        const auto repeating = std::exchange(repeating_, nullptr);
        if (!repeating) {
            return;
        }
        repeating->valid = false;
        if (const auto schedule = schedule_.lock()) {
            schedule->remove(repeating);
        }
    }

    std::weak_ptr<Schedule> schedule_;
    std::shared_ptr<Repeating> repeating_;
};

void Schedule::add(Instant at, DueKind kind, Work work) {
    const std::lock_guard lock(mutex_);
    if (!closed_) {
        items_.emplace(Key{at, kind, nextNumber_++}, Item{std::move(work), nullptr});
    }
}

std::unique_ptr<platform::Timer> Schedule::addRepeating(Instant first, Instant interval, Work tick) {
    auto repeating = std::make_shared<Repeating>();
    repeating->interval = std::max(interval, Instant(1));
    repeating->tick = std::move(tick);
    {
        const std::lock_guard lock(mutex_);
        repeating->key = {first, DueKind::timer, nextNumber_++};
        if (!closed_) {
            items_.emplace(repeating->key, Item{nullptr, repeating});
        }
    }
    return std::make_unique<RepeatingTimer>(weak_from_this(), repeating);
}

std::optional<DueItem> Schedule::takeDue(Instant limit, Instant now) {
    const std::lock_guard lock(mutex_);
    const auto first = items_.begin();
    if (first == items_.end() || first->first.at > limit) {
        return std::nullopt;
    }
    auto node = items_.extract(first);
    const Instant at = node.key().at;
    const auto repeating = node.mapped().repeating;
    if (!repeating) {
        return DueItem{at, std::move(node.mapped().once)};
    }
    const auto missed = std::max(now - at, Instant(0)) / repeating->interval;
    repeating->key.at = at + repeating->interval * (missed + 1);
    node.key() = repeating->key;
    items_.insert(std::move(node));
    return DueItem{at, [repeating] {
                       if (repeating->valid && repeating->tick) {
                           repeating->tick();
                       }
                   }};
}

std::optional<Schedule::Instant> Schedule::next() const {
    const std::lock_guard lock(mutex_);
    return items_.empty() ? std::nullopt : std::optional(items_.begin()->first.at);
}

std::size_t Schedule::onceCount(Instant limit) const {
    const std::lock_guard lock(mutex_);
    return static_cast<std::size_t>(std::ranges::count_if(items_, [limit](const auto& item) {
        return item.first.at <= limit && item.second.repeating == nullptr;
    }));
}

void Schedule::close() noexcept {
    std::map<Key, Item> dropped;
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        dropped.swap(items_);
    }
}

void Schedule::remove(const std::shared_ptr<Repeating>& repeating) noexcept {
    std::map<Key, Item>::node_type dropped;
    const std::lock_guard lock(mutex_);
    dropped = items_.extract(repeating->key);
}

}  // namespace mireth::headless
