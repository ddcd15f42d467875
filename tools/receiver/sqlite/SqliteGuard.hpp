// The one place where SQLite's errors become the store's results. Included by the SqliteStore .cpp files.
#pragma once

#include <string>
#include <type_traits>

#include "sqlite/SqliteStore.hpp"

namespace mireth::receiver {

template <typename Work>
auto SqliteStore::caught(const char* doing, Work work) -> Stored<decltype(work())> {
    try {
        if constexpr (std::is_void_v<decltype(work())>) {
            work();
            return {};
        } else {
            return work();
        }
    } catch (const DatabaseError& error) {
        if constexpr (requires { decltype(work())::noRoom; }) {
            if (error.noRoom) {
                return decltype(work())::noRoom;
            }
        }
        // Whoever writes and answers yes or no says no then.
        if constexpr (std::is_same_v<decltype(work()), bool>) {
            if (error.noRoom) {
                return false;
            }
        }
        return std::unexpected(std::string(doing) + " in " + directory_ + ": " + error.what());
    }
}

template <typename Work>
auto SqliteStore::guarded(const char* doing, Work work) -> Stored<decltype(work())> {
    const std::lock_guard lock(mutex_);
    return caught(doing, work);
}

template <typename Work>
auto SqliteStore::reading(const char* doing, Work work) -> Stored<decltype(work())> {
    const std::lock_guard lock(readerMutex_);
    return caught(doing, [&] {
        const Transaction oneMoment(reader_, Transaction::Kind::read);
        return work();
    });
}

}  // namespace mireth::receiver
