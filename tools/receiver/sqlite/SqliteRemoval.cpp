// Removing sessions, one by one or because of their age.
#include <string>
#include <utility>
#include <vector>

#include "sqlite/SqliteGuard.hpp"
#include "sqlite/SqliteStore.hpp"

namespace mireth::receiver {

void SqliteStore::removeTexts(std::int64_t place) const {
    std::vector<std::int64_t> ids;
    auto gone = database_.prepare("DELETE FROM sessionText WHERE place = ? RETURNING textId");
    gone.bind(place);
    while (gone.step()) {
        ids.push_back(gone.whole(0));
    }
    auto unused = database_.prepare(
        "SELECT 1 FROM text WHERE id = ?1 AND NOT EXISTS (SELECT 1 FROM sessionText WHERE textId = ?1)");
    for (const auto id : ids) {
        if (unused.bind(id).step()) {
            database_.prepare("DELETE FROM gram WHERE textId = ?").bind(id).run();
            database_.prepare("DELETE FROM text WHERE id = ?").bind(id).run();
        }
        unused.reset();
    }
}

bool SqliteStore::removeRows(const std::string& id, std::vector<std::string>& videos) const {
    const auto place = placeOf(database_, id);
    if (!place) {
        return false;
    }
    auto rows = database_.prepare("SELECT video FROM chunk WHERE place = ?");
    rows.bind(*place);
    while (rows.step()) {
        videos.push_back(rows.text(0));
    }
    removeTexts(*place);
    for (const auto* const table : {"logLine", "chunk", "session"}) {
        database_.prepare(std::string("DELETE FROM ") + table + " WHERE place = ?").bind(*place).run();
    }
    return true;
}

// SQLite zeroes what is deleted; this takes it out of the write-ahead log as well, and gives pages back to
// the file system. Readers may be in the way: then it is for the next time.
void SqliteStore::clearLog() {
    database_.tryExecute("PRAGMA busy_timeout = 200");
    database_.tryExecute("PRAGMA incremental_vacuum(2000)");
    logToClear_ = !database_.tryEmptyLog();
    database_.tryExecute("PRAGMA busy_timeout = 10000");
    if (!logToClear_) {
        removeDoubtful();
    }
}

void SqliteStore::doubt(const std::string& video) {
    const std::lock_guard lock(mutex_);
    doubtful_.push_back(video);
    clearLog();
}

// With an empty log: until then a crash could bring back a row whose commit failed.
void SqliteStore::removeDoubtful() {
    std::erase_if(doubtful_, [&](const std::string& video) {
        try {
            if (database_.prepare("SELECT 1 FROM chunk WHERE video = ?").bind(video).step()) {
                ++chunks_;
            } else {
                videos_.remove(video);
            }
            return true;
        } catch (const DatabaseError&) {
            return false;
        }
    });
    logToClear_ = !doubtful_.empty();
}

Stored<bool> SqliteStore::finishRemovals() {
    return guarded("cannot finish removals", [&] {
        if (logToClear_) {
            clearLog();
        }
        return !logToClear_;
    });
}

Stored<std::int64_t> SqliteStore::removeSessions(const std::vector<std::string>& ids) {
    std::vector<std::string> videos;
    auto removed = guarded("cannot remove sessions", [&] {
        std::int64_t count = 0;
        Transaction transaction(database_, Transaction::Kind::write);
        for (const auto& id : ids) {
            count += removeRows(id, videos) ? 1 : 0;
        }
        transaction.commit();
        ++changes_;
        sessions_ -= count;
        chunks_ -= static_cast<std::int64_t>(videos.size());
        if (count > 0) {
            logToClear_ = true;
            clearLog();
        }
        return count;
    });
    // After the rows: a crash in between leaves orphans, which the next start sweeps.
    if (removed) {
        for (const auto& video : videos) {
            videos_.remove(video);
        }
    }
    return removed;
}

Stored<std::vector<std::string>> SqliteStore::quietSince(std::int64_t millis, std::int64_t most) {
    return reading("cannot look for old sessions", [&] {
        std::vector<std::string> ids;
        auto row = reader_.prepare("SELECT id FROM session WHERE lastMillis < ? ORDER BY place LIMIT ?");
        row.bind(millis).bind(most);
        while (row.step()) {
            ids.push_back(row.text(0));
        }
        return ids;
    });
}

}  // namespace mireth::receiver
