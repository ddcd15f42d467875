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

std::vector<Chunk> SqliteStore::chunksOf(std::int64_t place) const {
    std::vector<Chunk> chunks;
    auto row = reader_.prepare(
        "SELECT number, endMillis, receivedMillis, bytes, frames, durationMillis, video, digest, events,"
        " timeline FROM chunk WHERE place = ? ORDER BY number");
    row.bind(place);
    while (row.step()) {
        chunks.push_back({.number = row.whole(0),
                          .endMillis = row.whole(1),
                          .receivedMillis = row.whole(2),
                          .bytes = row.whole(3),
                          .frames = row.whole(4),
                          .durationMillis = row.whole(5),
                          .videoPath = videos_.pathOf(row.text(6)),
                          .videoDigest = row.text(7),
                          .events = row.whole(8),
                          .timeline = row.text(9)});
    }
    return chunks;
}

std::vector<LogLine> SqliteStore::logLinesOf(std::optional<std::int64_t> place,
                                             const std::optional<std::string>& sessionId) const {
    std::vector<LogLine> lines;
    auto row = reader_.prepare(
        "SELECT receivedMillis, levelName, message FROM logLine WHERE place IS ? ORDER BY id");
    row.bind(place);
    while (row.step()) {
        lines.push_back({.sessionId = sessionId,
                         .receivedMillis = row.whole(0),
                         .levelName = row.text(1),
                         .message = row.text(2)});
    }
    return lines;
}

std::optional<std::pair<SessionSummary, std::int64_t>> SqliteStore::summaryOf(const std::string& id) const {
    auto row = reader_.prepare(std::string("SELECT ") + sessionColumns + sumColumns +
                               ", place FROM session WHERE id = ?");
    if (!row.bind(id).step()) {
        return std::nullopt;
    }
    std::pair result{summaryIn(row), row.whole(placeColumn)};
    result.first.screens = screensOf(result.second);
    return result;
}

Stored<std::optional<SessionSummary>> SqliteStore::summary(const std::string& id) {
    return reading("cannot read a session", [&]() -> std::optional<SessionSummary> {
        auto found = summaryOf(id);
        return found ? std::optional(std::move(found->first)) : std::nullopt;
    });
}

Stored<std::optional<SessionContents>> SqliteStore::contents(const std::string& id) {
    return reading("cannot read a session", [&]() -> std::optional<SessionContents> {
        auto found = summaryOf(id);
        if (!found) {
            return std::nullopt;
        }
        return SessionContents{.summary = std::move(found->first),
                               .chunks = chunksOf(found->second),
                               .logLines = logLinesOf(found->second, id)};
    });
}

Stored<std::optional<StoredVideo>> SqliteStore::openVideo(const std::string& sessionId, std::int64_t number) {
    std::string digest;
    const auto name = reading("cannot find a video", [&]() -> std::optional<std::string> {
        auto row = reader_.prepare(
            "SELECT video, digest FROM chunk JOIN session USING (place) WHERE id = ? AND number = ?");
        if (!row.bind(sessionId).bind(number).step()) {
            return std::nullopt;
        }
        digest = row.text(1);
        return row.text(0);
    });
    if (!name) {
        return std::unexpected(name.error());
    }
    if (!*name) {
        return std::nullopt;
    }
    auto bytes = videos_.read(**name);
    if (!bytes) {
        return std::unexpected(bytes.error());
    }
    return StoredVideo{.bytes = std::move(*bytes), .digest = std::move(digest)};
}

Stored<std::vector<LogLine>> SqliteStore::strayLogLines() {
    return reading("cannot read the log lines", [&] { return logLinesOf(std::nullopt, std::nullopt); });
}

}  // namespace mireth::receiver
