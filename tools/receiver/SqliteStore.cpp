// Opening the data directory and the writing half of the embedded store.
#include "SqliteStore.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "SqliteGuard.hpp"

namespace mireth::receiver {
namespace {

constexpr std::int64_t schemaVersion = 1;

constexpr const char* schema = R"sql(
CREATE TABLE session (
    id TEXT PRIMARY KEY,
    brandId TEXT NOT NULL,
    brandDc TEXT NOT NULL,
    projectId TEXT NOT NULL,
    isTestSession INTEGER NOT NULL,
    startMillis INTEGER NOT NULL,
    closedMillis INTEGER
) WITHOUT ROWID;
CREATE INDEX sessionByStart ON session(startMillis, id);
CREATE TABLE chunk (
    sessionId TEXT NOT NULL REFERENCES session(id),
    number INTEGER NOT NULL,
    endMillis INTEGER NOT NULL,
    receivedMillis INTEGER NOT NULL,
    bytes INTEGER NOT NULL,
    frames INTEGER NOT NULL,
    durationMillis INTEGER NOT NULL,
    video TEXT NOT NULL UNIQUE,
    digest TEXT NOT NULL,
    PRIMARY KEY (sessionId, number)
) WITHOUT ROWID;
CREATE TABLE event (
    sessionId TEXT NOT NULL,
    chunkNumber INTEGER NOT NULL,
    position INTEGER NOT NULL,
    timestamp INTEGER NOT NULL,
    type TEXT NOT NULL,
    details TEXT NOT NULL,
    PRIMARY KEY (sessionId, chunkNumber, position),
    FOREIGN KEY (sessionId, chunkNumber) REFERENCES chunk(sessionId, number)
) WITHOUT ROWID;
CREATE TABLE logLine (
    id INTEGER PRIMARY KEY,
    sessionId TEXT REFERENCES session(id),
    receivedMillis INTEGER NOT NULL,
    levelName TEXT NOT NULL,
    message TEXT NOT NULL
);
CREATE INDEX logLineBySession ON logLine(sessionId, id);
PRAGMA user_version = 1;
)sql";

std::unexpected<std::string> failure(const std::string& what) {
    return std::unexpected(what + ": " + std::generic_category().message(errno));
}

// Holding the lock is what allows sweeping: nobody else has a video under way in this directory.
Stored<UniqueFd> lockDirectory(const std::string& directory) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(directory).parent_path(), error);
    if (::mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST) {
        return failure("cannot make the data directory " + directory);
    }
    if (::chmod(directory.c_str(), 0700) != 0) {
        return failure("cannot make the data directory " + directory + " private");
    }
    const std::string path = directory + "/lock";
    UniqueFd lock(::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!lock) {
        return failure("cannot open " + path);
    }
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        return std::unexpected("another receiver serves from " + directory);
    }
    return lock;
}

// SQLite gives a new database the umask's mode and its side files the database's.
Stored<void> makePrivateFile(const std::string& path) {
    const UniqueFd file(::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file || ::fchmod(file.get(), 0600) != 0) {
        return failure("cannot make " + path);
    }
    return {};
}

}  // namespace

SqliteStore::SqliteStore(std::string directory, UniqueFd lock, Database database, VideoFolder videos,
                         std::function<std::string()> newIdentifier)
    : directory_(std::move(directory)),
      lock_(std::move(lock)),
      videos_(std::move(videos)),
      newIdentifier_(std::move(newIdentifier)),
      database_(std::move(database)) {}

Stored<std::unique_ptr<SqliteStore>> SqliteStore::open(const std::string& directory,
                                                       std::function<std::string()> newIdentifier) {
    auto lock = lockDirectory(directory);
    if (!lock) {
        return std::unexpected(lock.error());
    }
    const std::string path = directory + "/receiver.db";
    if (auto made = makePrivateFile(path); !made) {
        return std::unexpected(made.error());
    }
    auto videos = VideoFolder::open(directory + "/videos");
    if (!videos) {
        return std::unexpected(videos.error());
    }
    try {
        std::unique_ptr<SqliteStore> store(new SqliteStore(directory, std::move(*lock),
                                                           Database(path, Database::Mode::write),
                                                           std::move(*videos), std::move(newIdentifier)));
        store->makeTables();
        store->sweep();
        return store;
    } catch (const DatabaseError& error) {
        return std::unexpected("cannot open the database " + path + ": " + error.what());
    }
}

Stored<std::unique_ptr<SqliteStore>> SqliteStore::openForReading(const std::string& directory) {
    const std::string path = directory + "/receiver.db";
    if (!std::filesystem::exists(path)) {
        return std::unexpected("there is no receiver's data in " + directory);
    }
    auto videos = VideoFolder::open(directory + "/videos");
    if (!videos) {
        return std::unexpected(videos.error());
    }
    try {
        return std::unique_ptr<SqliteStore>(new SqliteStore(
            directory, UniqueFd(), Database(path, Database::Mode::read), std::move(*videos), {}));
    } catch (const DatabaseError& error) {
        return std::unexpected("cannot open the database " + path + ": " + error.what());
    }
}

void SqliteStore::makeTables() {
    Transaction transaction(database_, Transaction::Kind::write);
    auto version = database_.prepare("PRAGMA user_version");
    version.step();
    const std::int64_t found = version.whole(0);
    version.reset();
    if (found > schemaVersion) {
        throw DatabaseError("it was written by a newer receiver");
    }
    if (found == 0) {
        database_.execute(schema);
    }
    transaction.commit();
}

void SqliteStore::sweep() {
    std::set<std::string> known;
    auto rows = database_.prepare("SELECT video FROM chunk");
    while (rows.step()) {
        known.insert(rows.text(0));
    }
    const auto removed = videos_.sweep(known);
    if (!removed) {
        throw DatabaseError(removed.error());
    }
    swept_ = *removed;
}

Stored<void> SqliteStore::addSession(const Session& session) {
    return guarded("cannot keep a session", [&] {
        database_
            .prepare(
                "INSERT INTO session(id, brandId, brandDc, projectId, isTestSession, startMillis)"
                " VALUES (?, ?, ?, ?, ?, ?)")
            .bind(session.id)
            .bind(session.brandId)
            .bind(session.brandDc)
            .bind(session.projectId)
            .bind(session.isTestSession)
            .bind(session.startMillis)
            .run();
    });
}

Stored<CloseOutcome> SqliteStore::closeSession(const std::string& id, const std::string& brandId,
                                               const std::string& projectId, std::int64_t millis) {
    return guarded("cannot close a session", [&] {
        database_
            .prepare(
                "UPDATE session SET closedMillis = coalesce(closedMillis, ?)"
                " WHERE id = ? AND brandId = ? AND projectId = ?")
            .bind(millis)
            .bind(id)
            .bind(brandId)
            .bind(projectId)
            .run();
        return database_.changes() == 1 ? CloseOutcome::closed : CloseOutcome::unknown;
    });
}

Stored<std::unique_ptr<IncomingVideo>> SqliteStore::beginVideo() {
    return videos_.create(newIdentifier_());
}

PutOutcome SqliteStore::admission(const std::string& sessionId, std::int64_t number,
                                  const std::string& digest, std::int64_t mostChunks) const {
    auto open = database_.prepare("SELECT 1 FROM session WHERE id = ? AND closedMillis IS NULL");
    if (!open.bind(sessionId).step()) {
        return PutOutcome::notOpen;
    }
    auto same = database_.prepare("SELECT digest FROM chunk WHERE sessionId = ? AND number = ?");
    if (same.bind(sessionId).bind(number).step()) {
        return same.text(0) == digest ? PutOutcome::repeated : PutOutcome::conflicting;
    }
    auto count = database_.prepare("SELECT count(*) FROM chunk WHERE sessionId = ?");
    count.bind(sessionId).step();
    return count.whole(0) >= mostChunks ? PutOutcome::full : PutOutcome::kept;
}

void SqliteStore::insertChunk(const std::string& sessionId, const Chunk& chunk, const VideoFile& video,
                              const std::string& digest) const {
    database_
        .prepare(
            "INSERT INTO chunk(sessionId, number, endMillis, receivedMillis, bytes, frames, durationMillis,"
            " video, digest) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)")
        .bind(sessionId)
        .bind(chunk.number)
        .bind(chunk.endMillis)
        .bind(chunk.receivedMillis)
        .bind(static_cast<std::int64_t>(video.size()))
        .bind(chunk.frames)
        .bind(chunk.durationMillis)
        .bind(video.name())
        .bind(digest)
        .run();
    auto insert = database_.prepare(
        "INSERT INTO event(sessionId, chunkNumber, position, timestamp, type, details)"
        " VALUES (?, ?, ?, ?, ?, ?)");
    std::int64_t position = 0;
    for (const auto& event : chunk.events) {
        insert.bind(sessionId)
            .bind(chunk.number)
            .bind(position++)
            .bind(event.timestamp)
            .bind(event.type)
            .bind(event.details)
            .run();
        insert.reset();
    }
}

Stored<PutOutcome> SqliteStore::putChunk(const std::string& sessionId, const Chunk& chunk,
                                         IncomingVideo& video, std::int64_t mostChunks) {
    auto& file = dynamic_cast<VideoFile&>(video);
    const auto digest = file.digest();
    if (!digest) {
        return std::unexpected(digest.error());
    }
    // Outside the lock, so that several uploads can wait for the disk at once.
    if (auto durable = file.sync(); !durable) {
        return std::unexpected(durable.error());
    }
    return guarded("cannot keep a chunk", [&] {
        Transaction transaction(database_, Transaction::Kind::write);
        const auto outcome = admission(sessionId, chunk.number, *digest, mostChunks);
        if (outcome == PutOutcome::kept) {
            insertChunk(sessionId, chunk, file, *digest);
            // Before the commit: a commit that reports an error may have happened all the same, and then the
            // row must find its file. An orphan is swept at the next start.
            file.keep();
            transaction.commit();
        }
        return outcome;
    });
}

Stored<bool> SqliteStore::addLogLine(const LogLine& line, std::int64_t mostLines) {
    return guarded("cannot keep a log line", [&] {
        auto count = database_.prepare("SELECT count(*) FROM logLine WHERE sessionId IS ?");
        count.bind(line.sessionId).step();
        const bool room = count.whole(0) < mostLines;
        count.reset();
        if (room) {
            database_
                .prepare(
                    "INSERT INTO logLine(sessionId, receivedMillis, levelName, message)"
                    " VALUES (?, ?, ?, ?)")
                .bind(line.sessionId)
                .bind(line.receivedMillis)
                .bind(line.levelName)
                .bind(line.message)
                .run();
        }
        return room;
    });
}

}  // namespace mireth::receiver
