// Whoever comes first leads: commits for all that wait, while those who come meanwhile make up the next
// group.
#include "sqlite/GroupCommit.hpp"

#include <utility>

namespace mireth::receiver {

void GroupCommit::run(std::function<void()> change) {
    Entry entry{.change = std::move(change)};
    std::unique_lock lock(mutex_);
    waiting_.push_back(&entry);
    while (!entry.done) {
        if (leading_) {
            changed_.wait(lock);
        } else {
            lead(lock);
        }
    }
    if (entry.error) {
        std::rethrow_exception(entry.error);
    }
}

void GroupCommit::lead(std::unique_lock<std::mutex>& lock) {
    leading_ = true;
    const auto entries = std::exchange(waiting_, {});
    lock.unlock();
    commit(entries);
    lock.lock();
    for (auto* const entry : entries) {
        entry->done = true;
    }
    leading_ = false;
    changed_.notify_all();
}

void GroupCommit::commit(const std::vector<Entry*>& entries) noexcept {
    const std::lock_guard lock(databaseMutex_);
    try {
        Transaction transaction(database_, Transaction::Kind::write);
        for (auto* const entry : entries) {
            apply(*entry);
        }
        transaction.commit();
    } catch (...) {
        for (auto* const entry : entries) {
            entry->error = entry->error ? entry->error : std::current_exception();
        }
    }
}

void GroupCommit::apply(Entry& entry) const {
    database_.execute("SAVEPOINT change");
    try {
        entry.change();
    } catch (...) {
        entry.error = std::current_exception();
        // Throws when SQLite has given up the whole transaction, as it does for some errors.
        database_.execute("ROLLBACK TO change");
    }
    database_.execute("RELEASE change");
}

}  // namespace mireth::receiver
