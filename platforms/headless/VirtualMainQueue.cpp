// The loop of the virtual main queue.
#include "MirethVex/Headless/VirtualMainQueue.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Base/GuardedRun.hpp"
#include "Schedule.hpp"

namespace mireth::headless {

namespace {

using Instant = VirtualMainQueue::Instant;

/// About thirty years: far beyond any script, and far from overflow when added to an instant.
constexpr double longestSeconds = 1e9;

Instant toInstant(platform::Seconds seconds) {
    const double count = seconds.count();
    if (!(count > 0)) {
        return Instant(0);
    }
    return Instant(std::llround(std::min(count, longestSeconds) * 1e9));
}

void run(Work& work, const VirtualMainQueue::ErrorHandler& onEscapedError) noexcept {
    if (work) {
        runGuarded("work on a queue", work, onEscapedError);
    }
}

}  // namespace

VirtualMainQueue::VirtualMainQueue(std::optional<double> pace, ErrorHandler onEscapedError)
    : pace_(pace),
      onEscapedError_(std::move(onEscapedError)),
      mainThread_(std::this_thread::get_id()),
      wakeUp_(std::make_shared<WakeUp>()),
      inFlight_(std::make_shared<InFlight>(wakeUp_)),
      schedule_(std::make_shared<Schedule>()) {}

VirtualMainQueue::~VirtualMainQueue() {
    shutDown();
}

void VirtualMainQueue::post(Work work) {
    enqueue({std::move(work), false});
}

void VirtualMainQueue::postBackground(Work work) {
    enqueue({std::move(work), true});
}

void VirtualMainQueue::enqueue(Posted posted) {
    {
        const std::lock_guard lock(mutex_);
        if (!closed_) {
            posted_.push_back(std::move(posted));
        }
    }
    wakeUp_->raise();
}

void VirtualMainQueue::postAfter(platform::Seconds delay, Work work) {
    const Instant wait = toInstant(delay);
    if (wait == Instant(0)) {
        post(std::move(work));
        return;
    }
    schedule_->add(now() + wait, DueKind::timer, std::move(work));
    wakeUp_->raise();
}

std::unique_ptr<platform::Timer> VirtualMainQueue::scheduleRepeating(platform::Seconds interval, Work tick) {
    const Instant wait = std::max(toInstant(interval), Instant(1));
    return schedule_->addRepeating(now() + wait, wait, std::move(tick));
}

bool VirtualMainQueue::isCurrent() const noexcept {
    return std::this_thread::get_id() == mainThread_ && !runsBackground_;
}

void VirtualMainQueue::scheduleStep(Instant at, Work work) {
    schedule_->add(std::max(at, now()), DueKind::step, std::move(work));
    wakeUp_->raise();
}

Instant VirtualMainQueue::now() const {
    if (!pace_) {
        return virtualNow_.load();
    }
    if (!pacing_.load(std::memory_order_acquire)) {
        return Instant(0);
    }
    const std::chrono::duration<double, std::nano> real = std::chrono::steady_clock::now() - paceBegin_;
    return Instant(std::llround(real.count() * *pace_));
}

std::size_t VirtualMainQueue::onceCount(Instant limit) const {
    return schedule_->onceCount(limit);
}

bool VirtualMainQueue::runUntil(const std::function<bool()>& isDone, std::optional<Instant> limit) {
    beginPacing();
    while (!isDone()) {
        // Looked at first: what happens from here on ends the sleep below.
        const std::uint64_t seen = wakeUp_->count();
        if (runOnePosted() || takeUpFinished()) {
            continue;
        }
        if (!moveOn(seen, limit)) {
            return isDone();
        }
    }
    return true;
}

void VirtualMainQueue::advance(platform::Seconds span) {
    beginPacing();
    const Instant end = now() + toInstant(span);
    runUntil([] { return false; }, end);
    drain();
}

void VirtualMainQueue::drain() {
    runUntil([this] { return isIdle(); }, now());
}

void VirtualMainQueue::shutDown() noexcept {
    std::deque<Posted> dropped;
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        dropped.swap(posted_);
    }
    // Dropped work may own what sets timers or ends operations when it goes.
    dropped.clear();
    inFlight_->clear();
    schedule_->close();
}

bool VirtualMainQueue::runOnePosted() {
    Posted next;
    {
        const std::lock_guard lock(mutex_);
        if (posted_.empty()) {
            return false;
        }
        next = std::move(posted_.front());
        posted_.pop_front();
    }
    runsBackground_ = next.isBackground;
    run(next.work, onEscapedError_);
    // Also what the work owns goes while it still counts as where it ran.
    next.work = nullptr;
    runsBackground_ = false;
    return true;
}

bool VirtualMainQueue::takeUpFinished() {
    auto continuation = inFlight_->takeOldestFinished();
    if (!continuation) {
        return false;
    }
    if (*continuation) {
        postBackground(std::move(*continuation));
    }
    return true;
}

bool VirtualMainQueue::isIdle() const {
    {
        const std::lock_guard lock(mutex_);
        if (!posted_.empty()) {
            return false;
        }
    }
    return inFlight_->count() == 0;
}

bool VirtualMainQueue::moveOn(std::uint64_t seen, std::optional<Instant> limit) {
    return isVirtual() ? moveOnVirtually(seen, limit) : moveOnPaced(seen, limit);
}

bool VirtualMainQueue::moveOnVirtually(std::uint64_t seen, std::optional<Instant> limit) {
    if (inFlight_->count() > 0) {
        wakeUp_->waitUnless(seen);
        return true;
    }
    if (wakeUp_->count() != seen) {
        // An operation ended between the look at the queue and the look at the list; what it posted comes
        // before anything that is due later.
        return true;
    }
    auto due = schedule_->takeDue(limit.value_or(Instant::max()), now());
    if (!due) {
        if (limit) {
            virtualNow_ = std::max(*limit, now());
        }
        return false;
    }
    virtualNow_ = std::max(due->at, now());
    run(due->work, onEscapedError_);
    return true;
}

bool VirtualMainQueue::moveOnPaced(std::uint64_t seen, std::optional<Instant> limit) {
    const Instant current = now();
    if (auto due = schedule_->takeDue(limit ? std::min(current, *limit) : current, current)) {
        run(due->work, onEscapedError_);
        return true;
    }
    const auto next = schedule_->next();
    if (inFlight_->count() == 0 && wakeUp_->count() == seen && (limit ? current >= *limit : !next)) {
        return false;
    }
    const bool beyondLimit = limit && current >= *limit;
    std::optional<Instant> until = beyondLimit ? std::nullopt : next;
    if (limit && !beyondLimit) {
        until = std::min(until.value_or(*limit), *limit);
    }
    wakeUp_->waitUnless(seen, until ? WakeUp::Deadline(steadyTime(*until)) : WakeUp::Deadline());
    return true;
}

void VirtualMainQueue::beginPacing() {
    if (pace_ && !pacing_) {
        paceBegin_ = std::chrono::steady_clock::now();
        pacing_.store(true, std::memory_order_release);
    }
}

std::chrono::steady_clock::time_point VirtualMainQueue::steadyTime(Instant at) const {
    const double real = static_cast<double>(at.count()) / *pace_;
    return paceBegin_ + std::chrono::nanoseconds(std::llround(real) + 1);
}

}  // namespace mireth::headless
