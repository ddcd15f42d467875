// Log lines, of sessions and without one. Nobody who posts one shows a token, so what is beyond its budget
// costs next to nothing: it is turned down before anything is written or locked.
#include <utility>

#include "sqlite/SqliteGuard.hpp"
#include "sqlite/SqliteStore.hpp"

namespace mireth::receiver {
namespace {

// What a row takes, generously.
constexpr std::uint64_t rowBytes = 4096;

}  // namespace

bool SqliteStore::LogBudget::fits(const LogLine& line, const Limits& limits) const {
    return lines < limits.logLines && bytes + line.message.size() <= limits.logBytes;
}

void SqliteStore::countStrayLines() {
    strays_.clear();
    auto row = database_.prepare(
        "SELECT brandId, projectId, count(*), sum(length(CAST(message AS BLOB))) FROM logLine"
        " WHERE place IS NULL GROUP BY brandId, projectId");
    while (row.step()) {
        strays_[{row.text(0), row.text(1)}] = {.lines = row.whole(2),
                                               .bytes = static_cast<std::uint64_t>(row.whole(3))};
    }
}

void SqliteStore::insertLine(std::optional<std::int64_t> place, const LogLine& line) const {
    database_
        .prepare(
            "INSERT INTO logLine(place, receivedMillis, levelName, message, brandId, projectId)"
            " VALUES (?, ?, ?, ?, ?, ?)")
        .bind(place)
        .bind(line.receivedMillis)
        .bind(line.levelName)
        .bind(line.message)
        .bind(line.brandId)
        .bind(line.projectId)
        .run();
}

LineOutcome SqliteStore::addStrayLine(const LogLine& line, const Limits& limits) {
    auto& budget = strays_[{line.brandId, line.projectId}];
    if (!budget.fits(line, limits)) {
        return LineOutcome::full;
    }
    insertLine(std::nullopt, line);
    ++budget.lines;
    budget.bytes += line.message.size();
    return LineOutcome::kept;
}

LineOutcome SqliteStore::addSessionLine(const LogLine& line, const Limits& limits) const {
    // Nothing but this object writes, so what is read here still holds when the line is.
    auto row = database_.prepare("SELECT place, logLines, logBytes FROM session WHERE id = ?");
    if (!row.bind(line.sessionId).step()) {
        return LineOutcome::unknown;
    }
    const auto place = row.whole(0);
    const LogBudget budget{.lines = row.whole(1), .bytes = static_cast<std::uint64_t>(row.whole(2))};
    if (!budget.fits(line, limits)) {
        return LineOutcome::full;
    }
    row.reset();
    Transaction transaction(database_, Transaction::Kind::write);
    insertLine(place, line);
    database_
        .prepare(
            "UPDATE session SET logLines = logLines + 1, logBytes = logBytes + ?,"
            " lastMillis = max(lastMillis, ?) WHERE place = ?")
        .bind(static_cast<std::int64_t>(line.message.size()))
        .bind(line.receivedMillis)
        .bind(place)
        .run();
    transaction.commit();
    return LineOutcome::kept;
}

Stored<LineOutcome> SqliteStore::addLogLine(const LogLine& line, const Limits& limits) {
    if (!budget_->hasRoomFor(line.message.size() + rowBytes)) {
        return LineOutcome::noRoom;
    }
    return guarded("cannot keep a log line", [&] {
        const auto outcome = line.sessionId ? addSessionLine(line, limits) : addStrayLine(line, limits);
        changes_ += outcome == LineOutcome::kept ? 1 : 0;
        return outcome;
    });
}

Stored<void> SqliteStore::removeStrayLogLines(std::int64_t millis) {
    return guarded("cannot remove old log lines", [&] {
        database_.prepare("DELETE FROM logLine WHERE place IS NULL AND receivedMillis < ?")
            .bind(millis)
            .run();
        if (database_.changes() > 0) {
            logToClear_ = true;
            countStrayLines();
        }
    });
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

Stored<std::vector<LogLine>> SqliteStore::strayLogLines() {
    return reading("cannot read the log lines", [&] { return logLinesOf(std::nullopt, std::nullopt); });
}

}  // namespace mireth::receiver
