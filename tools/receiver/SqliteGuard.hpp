// The one place where SQLite's errors become the store's results. Included by the SqliteStore .cpp files.
#pragma once

#include <string>
#include <type_traits>

#include "SqliteStore.hpp"

namespace mireth::receiver {

template <typename Work>
auto SqliteStore::guarded(const char* doing, Work work) -> Stored<decltype(work())> {
    const std::lock_guard lock(mutex_);
    try {
        if constexpr (std::is_void_v<decltype(work())>) {
            work();
            return {};
        } else {
            return work();
        }
    } catch (const DatabaseError& error) {
        return std::unexpected(std::string(doing) + " in " + directory_ + ": " + error.what());
    }
}

}  // namespace mireth::receiver
