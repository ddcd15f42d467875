// What is kept of the app's objects from one pass over them to the next.
#pragma once

#include <iterator>
#include <unordered_map>
#include <utility>

namespace mireth::qt {

/// Lets go of the entries whose `wasSeen` no one has set in this pass, and clears it for the next pass.
template <class Key, class Entry>
void eraseUnseen(std::unordered_map<Key, Entry>& entries) {
    for (auto entry = entries.begin(); entry != entries.end();) {
        const bool wasSeen = std::exchange(entry->second.wasSeen, false);
        entry = wasSeen ? std::next(entry) : entries.erase(entry);
    }
}

}  // namespace mireth::qt
