// Lets changes that come at the same time share one transaction, and so one wait for the disk. Used by
// SqliteStore for chunks.
#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <vector>

#include "sqlite/Database.hpp"

namespace mireth::receiver {

/// Any thread may call.
class GroupCommit {
  public:
    /// `database` is used with `databaseMutex` held. Both outlive this object.
    GroupCommit(const Database& database, std::mutex& databaseMutex)
        : database_(database), databaseMutex_(databaseMutex) {}

    /// Runs `change` within a transaction and returns when it is durable. What `change` throws undoes it
    /// alone and comes out here; a transaction that fails comes out of every `run` that shared it.
    void run(std::function<void()> change);

  private:
    struct Entry {
        std::function<void()> change;
        std::exception_ptr error = nullptr;
        bool done = false;
    };

    void lead(std::unique_lock<std::mutex>& lock);
    void commit(const std::vector<Entry*>& entries) noexcept;
    void apply(Entry& entry) const;

    const Database& database_;
    std::mutex& databaseMutex_;

    std::mutex mutex_;
    std::condition_variable changed_;
    // Guarded by mutex_.
    std::vector<Entry*> waiting_;
    bool leading_ = false;
};

}  // namespace mireth::receiver
