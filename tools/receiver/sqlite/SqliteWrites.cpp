// The writing half of the embedded store.
#include <utility>

#include "sqlite/SqliteGuard.hpp"
#include "sqlite/SqliteStore.hpp"
#include "sqlite/TextRows.hpp"
#include "store/ChunkPlaces.hpp"

namespace mireth::receiver {
namespace {

// What a row takes, generously.
constexpr std::uint64_t rowBytes = 4096;
// Texts by which one session can be found; an honest one has a few dozen.
constexpr std::int64_t mostScreens = 100;
constexpr std::int64_t mostErrors = 50;

// The first free place at or after the start; sessions of one millisecond follow each other.
std::int64_t freePlace(const Database& database, std::int64_t startMillis) {
    const std::int64_t first = startMillis * 4096;
    auto last = database.prepare("SELECT max(place) FROM session WHERE place >= ? AND place < ?");
    last.bind(first).bind(first + 4096).step();
    return last.isNull(0) ? first : last.whole(0) + 1;
}

}  // namespace

Stored<bool> SqliteStore::addSession(const Session& session) {
    if (!budget_->hasRoomFor(rowBytes)) {
        return false;
    }
    return guarded("cannot keep a session", [&] {
        Transaction transaction(database_, Transaction::Kind::write);
        database_
            .prepare(
                "INSERT INTO session(place, id, brandId, brandDc, projectId, isTestSession, startMillis,"
                " lastMillis) VALUES (?, ?, ?, ?, ?, ?, ?, ?)")
            .bind(freePlace(database_, session.startMillis))
            .bind(session.id)
            .bind(session.brandId)
            .bind(session.brandDc)
            .bind(session.projectId)
            .bind(session.isTestSession)
            .bind(session.startMillis)
            .bind(session.startMillis)
            .run();
        transaction.commit();
        ++changes_;
        ++sessions_;
        return true;
    });
}

Stored<CloseOutcome> SqliteStore::closeSession(const std::string& id, const std::string& brandId,
                                               const std::string& projectId, std::int64_t millis) {
    return guarded("cannot close a session", [&] {
        database_
            .prepare(
                "UPDATE session SET closedMillis = coalesce(closedMillis, ?1), lastMillis = max(lastMillis,"
                " coalesce(closedMillis, ?1)) WHERE id = ?2 AND brandId = ?3 AND projectId = ?4")
            .bind(millis)
            .bind(id)
            .bind(brandId)
            .bind(projectId)
            .run();
        ++changes_;
        return database_.changes() == 1 ? CloseOutcome::closed : CloseOutcome::unknown;
    });
}

Stored<std::unique_ptr<IncomingVideo>> SqliteStore::beginVideo() {
    return videos_.create(newIdentifier_());
}

PutOutcome SqliteStore::admission(const std::string& sessionId, const Chunk& chunk, const VideoFile& video,
                                  const std::string& digest, const Limits& limits) const {
    auto session = database_.prepare(
        "SELECT place, chunks, bytes, timelineBytes FROM session WHERE id = ? AND closedMillis IS NULL");
    if (!session.bind(sessionId).step()) {
        return PutOutcome::notOpen;
    }
    auto same = database_.prepare("SELECT digest FROM chunk WHERE place = ? AND number = ?");
    if (same.bind(session.whole(0)).bind(chunk.number).step()) {
        return same.text(0) == digest ? PutOutcome::repeated : PutOutcome::conflicting;
    }
    if (session.whole(1) >= limits.chunks) {
        return PutOutcome::full;
    }
    const auto timelines = static_cast<std::uint64_t>(session.whole(3)) + chunk.timeline.size();
    const auto bytes = static_cast<std::uint64_t>(session.whole(2)) + video.size() + timelines;
    return timelines > limits.timelineBytes || bytes > limits.sessionBytes ? PutOutcome::tooLarge
                                                                           : PutOutcome::kept;
}

void SqliteStore::insertChunk(std::int64_t place, const Chunk& chunk, const VideoFile& video,
                              const std::string& digest) const {
    database_
        .prepare(
            "INSERT INTO chunk(place, number, endMillis, receivedMillis, bytes, frames, durationMillis,"
            " video, digest, events, timeline) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
        .bind(place)
        .bind(chunk.number)
        .bind(chunk.endMillis)
        .bind(chunk.receivedMillis)
        .bind(static_cast<std::int64_t>(video.size()))
        .bind(chunk.frames)
        .bind(chunk.durationMillis)
        .bind(video.name())
        .bind(digest)
        .bind(chunk.events)
        .bind(chunk.timeline)
        .run();
}

void SqliteStore::insertTexts(std::int64_t place, std::int64_t chunkNumber,
                              const std::vector<FoundText>& texts) const {
    auto count = database_.prepare(
        "SELECT count(*) - coalesce(sum(kind), 0), coalesce(sum(kind), 0) FROM sessionText"
        " JOIN text ON text.id = textId WHERE place = ?");
    count.bind(place).step();
    std::int64_t screens = mostScreens - count.whole(0);
    std::int64_t errors = mostErrors - count.whole(1);
    std::int64_t position = 0;
    for (const auto& text : texts) {
        auto& room = text.kind == FoundText::Kind::screen ? screens : errors;
        if (room-- <= 0) {
            continue;
        }
        // Chunks may come in any order; what counts is where a text stood first.
        database_
            .prepare(
                "INSERT INTO sessionText(place, textId, chunkNumber, position) VALUES (?, ?, ?, ?)"
                " ON CONFLICT DO UPDATE SET chunkNumber = excluded.chunkNumber, position = excluded.position"
                " WHERE (excluded.chunkNumber, excluded.position) < (chunkNumber, position)")
            .bind(place)
            .bind(textRow(database_, text))
            .bind(chunkNumber)
            .bind(position++)
            .run();
    }
}

void SqliteStore::addToSums(std::int64_t place, const Chunk& chunk, std::uint64_t bytes,
                            const TimelineSummary& summary) const {
    database_
        .prepare(
            "UPDATE session SET lastMillis = max(lastMillis, ?), chunks = chunks + 1,"
            " highestChunk = max(highestChunk, ?), frames = frames + ?, bytes = bytes + ?,"
            " durationMillis = max(durationMillis, ?), timelineBytes = timelineBytes + ?, events = events + "
            "?, "
            "taps = taps + ?,"
            " rageTaps = rageTaps + ?, deadTaps = deadTaps + ?, errorTaps = errorTaps + ?,"
            " deviceModel = coalesce(nullif(?, ''), deviceModel),"
            " deviceSystem = coalesce(nullif(?, ''), deviceSystem) WHERE place = ?")
        .bind(chunk.receivedMillis)
        .bind(chunk.number)
        .bind(chunk.frames)
        .bind(static_cast<std::int64_t>(bytes))
        .bind(chunkEnd(chunk.number, chunk.durationMillis))
        .bind(static_cast<std::int64_t>(chunk.timeline.size()))
        .bind(chunk.events)
        .bind(summary.counts.taps)
        .bind(summary.counts.rageTaps)
        .bind(summary.counts.deadTaps)
        .bind(summary.counts.errorTaps)
        .bind(summary.deviceModel)
        .bind(summary.deviceSystem)
        .bind(place)
        .run();
}

Stored<PutOutcome> SqliteStore::putChunk(const std::string& sessionId, const Chunk& chunk,
                                         const TimelineSummary& summary, IncomingVideo& video,
                                         const Limits& limits) {
    auto& file = dynamic_cast<VideoFile&>(video);
    const auto digest = file.digest();
    if (!digest) {
        return std::unexpected(digest.error());
    }
    // Outside the lock, so that several uploads can wait for the disk at once.
    const auto durable = file.sync();
    if (!durable) {
        return std::unexpected(durable.error());
    }
    if (!*durable) {
        return PutOutcome::noRoom;
    }
    return caught("cannot keep a chunk", [&] {
        auto outcome = PutOutcome::kept;
        try {
            commits_.run([&] { outcome = insert(sessionId, chunk, summary, file, *digest, limits); });
        } catch (const DatabaseError& error) {
            if (file.isKept()) {
                doubt(file.name());
            }
            if (!error.noRoom) {
                throw;
            }
            return PutOutcome::noRoom;
        }
        if (outcome == PutOutcome::kept) {
            ++changes_;
            ++chunks_;
        }
        return outcome;
    });
}

PutOutcome SqliteStore::insert(const std::string& sessionId, const Chunk& chunk,
                               const TimelineSummary& summary, VideoFile& video, const std::string& digest,
                               const Limits& limits) const {
    const auto outcome = admission(sessionId, chunk, video, digest, limits);
    if (outcome == PutOutcome::kept) {
        const auto place = placeOf(database_, sessionId).value();
        insertChunk(place, chunk, video, digest);
        insertTexts(place, chunk.number, summary.texts);
        addToSums(place, chunk, video.size(), summary);
        // Before the commit: a commit that reports an error may have happened all the same, and then the row
        // must find its file.
        video.keep();
    }
    return outcome;
}

}  // namespace mireth::receiver
