// The reading half of the embedded store.
#include <utility>

#include "SqliteGuard.hpp"
#include "SqliteStore.hpp"

namespace mireth::receiver {
namespace {

constexpr const char* sessionColumns =
    "SELECT id, brandId, brandDc, projectId, isTestSession, startMillis, closedMillis";

// Sums as subqueries: each is answered from the front of a primary key or an index.
constexpr const char* sums =
    ", (SELECT count(*) FROM chunk WHERE sessionId = session.id)"
    ", (SELECT coalesce(sum(frames), 0) FROM chunk WHERE sessionId = session.id)"
    ", (SELECT coalesce(sum(bytes), 0) FROM chunk WHERE sessionId = session.id)"
    ", (SELECT coalesce(sum(durationMillis), 0) FROM chunk WHERE sessionId = session.id)"
    ", (SELECT count(*) FROM event WHERE sessionId = session.id)"
    ", (SELECT count(*) FROM logLine WHERE sessionId = session.id)";

Session sessionIn(const Statement& row) {
    return {.id = row.text(0),
            .brandId = row.text(1),
            .brandDc = row.text(2),
            .projectId = row.text(3),
            .isTestSession = row.whole(4) != 0,
            .startMillis = row.whole(5),
            .closedMillis = row.isNull(6) ? std::nullopt : std::optional(row.whole(6))};
}

SessionSummary summaryIn(const Statement& row) {
    return {.session = sessionIn(row),
            .chunks = row.whole(7),
            .frames = row.whole(8),
            .bytes = row.whole(9),
            .durationMillis = row.whole(10),
            .events = row.whole(11),
            .logLines = row.whole(12)};
}

}  // namespace

Stored<std::optional<Session>> SqliteStore::session(const std::string& id) {
    return guarded("cannot read a session", [&] {
        auto row = database_.prepare(std::string(sessionColumns) + " FROM session WHERE id = ?");
        return row.bind(id).step() ? std::optional(sessionIn(row)) : std::nullopt;
    });
}

Stored<std::vector<SessionSummary>> SqliteStore::sessions() {
    return guarded("cannot list the sessions", [&] {
        std::vector<SessionSummary> all;
        auto row =
            database_.prepare(std::string(sessionColumns) + sums + " FROM session ORDER BY startMillis, id");
        while (row.step()) {
            all.push_back(summaryIn(row));
        }
        return all;
    });
}

std::vector<Chunk> SqliteStore::chunksOf(const std::string& sessionId) const {
    std::vector<Chunk> chunks;
    auto row = database_.prepare(
        "SELECT number, endMillis, receivedMillis, bytes, frames, durationMillis, video FROM chunk"
        " WHERE sessionId = ? ORDER BY number");
    row.bind(sessionId);
    while (row.step()) {
        chunks.push_back({.number = row.whole(0),
                          .endMillis = row.whole(1),
                          .receivedMillis = row.whole(2),
                          .bytes = row.whole(3),
                          .frames = row.whole(4),
                          .durationMillis = row.whole(5),
                          .videoPath = videos_.pathOf(row.text(6)),
                          .events = {}});
    }
    auto event = database_.prepare(
        "SELECT timestamp, type, details FROM event WHERE sessionId = ? AND chunkNumber = ? ORDER BY "
        "position");
    for (auto& chunk : chunks) {
        event.bind(sessionId).bind(chunk.number);
        while (event.step()) {
            chunk.events.push_back(
                {.timestamp = event.whole(0), .type = event.text(1), .details = event.text(2)});
        }
        event.reset();
    }
    return chunks;
}

std::vector<LogLine> SqliteStore::logLinesOf(const std::optional<std::string>& sessionId) const {
    std::vector<LogLine> lines;
    auto row = database_.prepare(
        "SELECT receivedMillis, levelName, message FROM logLine WHERE sessionId IS ? ORDER BY id");
    row.bind(sessionId);
    while (row.step()) {
        lines.push_back({.sessionId = sessionId,
                         .receivedMillis = row.whole(0),
                         .levelName = row.text(1),
                         .message = row.text(2)});
    }
    return lines;
}

Stored<std::optional<SessionContents>> SqliteStore::contents(const std::string& id) {
    return guarded("cannot read a session", [&]() -> std::optional<SessionContents> {
        const Transaction oneMoment(database_, Transaction::Kind::read);
        auto row = database_.prepare(std::string(sessionColumns) + sums + " FROM session WHERE id = ?");
        if (!row.bind(id).step()) {
            return std::nullopt;
        }
        return SessionContents{.summary = summaryIn(row), .chunks = chunksOf(id), .logLines = logLinesOf(id)};
    });
}

Stored<std::vector<LogLine>> SqliteStore::strayLogLines() {
    return guarded("cannot read the log lines", [&] { return logLinesOf(std::nullopt); });
}

}  // namespace mireth::receiver
