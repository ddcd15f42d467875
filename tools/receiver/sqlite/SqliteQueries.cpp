// Reading single sessions and what belongs to them.
#include <utility>

#include "sqlite/SqliteGuard.hpp"
#include "sqlite/SqliteStore.hpp"
#include "sqlite/SummaryRow.hpp"

namespace mireth::receiver {

Stored<std::optional<Session>> SqliteStore::session(const std::string& id) {
    return guarded("cannot read a session", [&] {
        auto row = database_.prepare(std::string("SELECT ") + sessionColumns + " FROM session WHERE id = ?");
        return row.bind(id).step() ? std::optional(sessionIn(row)) : std::nullopt;
    });
}

std::optional<std::int64_t> SqliteStore::placeOf(const Database& database, const std::string& id) const {
    auto row = database.prepare("SELECT place FROM session WHERE id = ?");
    return row.bind(id).step() ? std::optional(row.whole(0)) : std::nullopt;
}

std::vector<Chunk> SqliteStore::chunksOf(std::int64_t place, Timelines timelines) const {
    std::vector<Chunk> chunks;
    auto row = reader_.prepare(
        std::string("SELECT number, endMillis, receivedMillis, bytes, frames, durationMillis, video, digest,"
                    " events, length(CAST(timeline AS BLOB)), ") +
        (timelines == Timelines::with ? "timeline" : "''") + " FROM chunk WHERE place = ? ORDER BY number");
    row.bind(place);
    while (row.step()) {
        chunks.push_back({.number = row.whole(0),
                          .endMillis = row.whole(1),
                          .receivedMillis = row.whole(2),
                          .bytes = row.whole(3),
                          .frames = row.whole(4),
                          .durationMillis = row.whole(5),
                          .video = {.key = row.text(6), .digest = row.text(7)},
                          .events = row.whole(8),
                          .timelineBytes = row.whole(9),
                          .timeline = row.text(10)});
    }
    return chunks;
}

std::optional<std::pair<SessionSummary, std::int64_t>> SqliteStore::summaryOf(const std::string& id) const {
    auto row = reader_.prepare(std::string("SELECT ") + sessionColumns + sumColumns +
                               ", place FROM session WHERE id = ?");
    if (!row.bind(id).step()) {
        return std::nullopt;
    }
    std::pair result{summaryIn(row), row.whole(placeColumn)};
    addScreens(result.second, result.first);
    return result;
}

Stored<std::optional<SessionSummary>> SqliteStore::summary(const std::string& id) {
    return reading("cannot read a session", [&]() -> std::optional<SessionSummary> {
        auto found = summaryOf(id);
        return found ? std::optional(std::move(found->first)) : std::nullopt;
    });
}

Stored<std::optional<SessionContents>> SqliteStore::contents(const std::string& id) {
    return contents(id, Timelines::with);
}

Stored<std::optional<SessionContents>> SqliteStore::outline(const std::string& id) {
    return contents(id, Timelines::without);
}

Stored<std::optional<SessionContents>> SqliteStore::contents(const std::string& id, Timelines timelines) {
    return reading("cannot read a session", [&]() -> std::optional<SessionContents> {
        auto found = summaryOf(id);
        if (!found) {
            return std::nullopt;
        }
        return SessionContents{.summary = std::move(found->first),
                               .chunks = chunksOf(found->second, timelines),
                               .logLines = logLinesOf(found->second, id)};
    });
}

// Reads from the database each time it is asked, so that it holds nothing.
class SqliteStore::Timeline final : public ByteSource {
  public:
    Timeline(SqliteStore& store, std::string sessionId, std::int64_t number, std::uint64_t size)
        : store_(store), sessionId_(std::move(sessionId)), number_(number), size_(size) {}

    std::uint64_t size() const override { return size_; }
    bool readAt(std::uint64_t offset, std::span<unsigned char> into) override {
        return store_.readTimeline(sessionId_, number_, offset, into);
    }

  private:
    SqliteStore& store_;
    const std::string sessionId_;
    const std::int64_t number_;
    const std::uint64_t size_;
};

Stored<std::unique_ptr<ByteSource>> SqliteStore::openTimeline(const std::string& sessionId,
                                                              std::int64_t number) {
    return reading("cannot find a timeline", [&]() -> std::unique_ptr<ByteSource> {
        auto row = reader_.prepare(
            "SELECT length(CAST(timeline AS BLOB)) FROM chunk JOIN session USING (place)"
            " WHERE id = ? AND number = ?");
        if (!row.bind(sessionId).bind(number).step()) {
            return nullptr;
        }
        return std::make_unique<Timeline>(*this, sessionId, number, static_cast<std::uint64_t>(row.whole(0)));
    });
}

bool SqliteStore::readTimeline(const std::string& sessionId, std::int64_t number, std::uint64_t offset,
                               std::span<unsigned char> into) {
    // Looked for anew: the row's number may be another chunk's once this one is removed.
    const auto read = reading("cannot read a timeline", [&] {
        auto row = reader_.prepare(
            "SELECT chunk.rowid FROM chunk JOIN session USING (place) WHERE id = ? AND number = ?");
        return row.bind(sessionId).bind(number).step() &&
               reader_.readPiece("chunk", "timeline", row.whole(0), offset, into);
    });
    return read && *read;
}

Stored<std::optional<VideoReference>> SqliteStore::findVideo(const std::string& sessionId,
                                                             std::int64_t number) {
    return reading("cannot find a video", [&]() -> std::optional<VideoReference> {
        auto row = reader_.prepare(
            "SELECT video, digest FROM chunk JOIN session USING (place) WHERE id = ? AND number = ?");
        if (!row.bind(sessionId).bind(number).step()) {
            return std::nullopt;
        }
        return VideoReference{.key = row.text(0), .digest = row.text(1)};
    });
}

Stored<std::unique_ptr<ByteSource>> SqliteStore::openVideo(const std::string& key) {
    return videos_.read(key);
}

}  // namespace mireth::receiver
