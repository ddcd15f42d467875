// Clients of a receiver that is killed under them, and what they know afterwards. Used by the test of
// crashes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace mireth::receiver::test {

/// What the receiver acknowledged. Any thread may call.
class Ledger {
  public:
    void created(const std::string& session);
    void kept(const std::string& session, std::int64_t number);
    /// A session that has chunks and is not being removed; from now on it is.
    std::optional<std::string> takeForRemoval();
    void removed(const std::string& session);

    /// Checks the receiver on `port` against all of this; fails the test when an acknowledged chunk is not
    /// there, one that is there is not whole, or a removed session is there.
    void check(int port) const;
    /// How many chunks were acknowledged, those of removed sessions included.
    std::size_t acknowledged() const;
    std::size_t removals() const;

  private:
    void checkChunks(int port, const std::string& session, const std::set<std::int64_t>& acknowledged) const;

    mutable std::mutex mutex_;
    // Guarded by mutex_.
    std::map<std::string, std::set<std::int64_t>> kept_;
    std::set<std::string> removed_;
    std::size_t acknowledged_ = 0;
};

/// The video of a chunk, told by its number alone.
std::string videoOfNumber(std::int64_t number);

/// Creates sessions and uploads chunks until the receiver is gone.
void uploadUntilTheEnd(int port, Ledger& ledger);
/// Removes sessions until the receiver is gone.
void removeUntilTheEnd(int port, Ledger& ledger);

/// How many chunks the receiver says that it keeps.
std::size_t chunksKept(int port);

}  // namespace mireth::receiver::test
