// Version 1 kept every event in a row and counted when asked; version 2 keeps a chunk's timeline as one text
// and counts when a chunk comes in; version 3 finds texts in any case, whatever the alphabet;
// version 4 keeps how long a session's replay is; version 5 knows whose the log lines without a session are.
#include "sqlite/SqliteSchema.hpp"

#include "sqlite/SchemaUpdate.hpp"

namespace mireth::receiver {
namespace {

constexpr std::int64_t schemaVersion = 5;

// A session's place is its start in milliseconds times 4096 and a little more, so that places are unique and
// in the order of the starts: pages, cursors and time ranges are all ranges of places.
constexpr const char* schema = R"sql(
CREATE TABLE session (
    place INTEGER PRIMARY KEY,
    id TEXT NOT NULL UNIQUE,
    brandId TEXT NOT NULL,
    brandDc TEXT NOT NULL,
    projectId TEXT NOT NULL,
    isTestSession INTEGER NOT NULL,
    startMillis INTEGER NOT NULL,
    closedMillis INTEGER,
    lastMillis INTEGER NOT NULL,
    chunks INTEGER NOT NULL DEFAULT 0,
    highestChunk INTEGER NOT NULL DEFAULT -1,
    frames INTEGER NOT NULL DEFAULT 0,
    bytes INTEGER NOT NULL DEFAULT 0,
    durationMillis INTEGER NOT NULL DEFAULT 0,
    timelineBytes INTEGER NOT NULL DEFAULT 0,
    events INTEGER NOT NULL DEFAULT 0,
    logLines INTEGER NOT NULL DEFAULT 0,
    logBytes INTEGER NOT NULL DEFAULT 0,
    taps INTEGER NOT NULL DEFAULT 0,
    rageTaps INTEGER NOT NULL DEFAULT 0,
    deadTaps INTEGER NOT NULL DEFAULT 0,
    errorTaps INTEGER NOT NULL DEFAULT 0,
    deviceModel TEXT NOT NULL DEFAULT '',
    deviceSystem TEXT NOT NULL DEFAULT ''
);
CREATE INDEX sessionByProject ON session(projectId, place);
CREATE INDEX sessionWithRageTap ON session(place, projectId) WHERE rageTaps > 0;
CREATE INDEX sessionWithDeadTap ON session(place, projectId) WHERE deadTaps > 0;
CREATE INDEX sessionWithErrorTap ON session(place, projectId) WHERE errorTaps > 0;
CREATE TABLE chunk (
    place INTEGER NOT NULL REFERENCES session(place),
    number INTEGER NOT NULL,
    endMillis INTEGER NOT NULL,
    receivedMillis INTEGER NOT NULL,
    bytes INTEGER NOT NULL,
    frames INTEGER NOT NULL,
    durationMillis INTEGER NOT NULL,
    video TEXT NOT NULL UNIQUE,
    digest TEXT NOT NULL,
    events INTEGER NOT NULL,
    timeline TEXT NOT NULL,
    PRIMARY KEY (place, number)
);
CREATE TABLE logLine (
    id INTEGER PRIMARY KEY,
    place INTEGER REFERENCES session(place),
    receivedMillis INTEGER NOT NULL,
    levelName TEXT NOT NULL,
    message TEXT NOT NULL,
    brandId TEXT NOT NULL DEFAULT '',
    projectId TEXT NOT NULL DEFAULT ''
);
CREATE INDEX logLineBySession ON logLine(place, id);
CREATE TABLE text (
    id INTEGER PRIMARY KEY,
    kind INTEGER NOT NULL,
    value TEXT NOT NULL,
    folded TEXT NOT NULL,
    UNIQUE (kind, value)
);
CREATE TABLE gram (
    gram TEXT NOT NULL,
    textId INTEGER NOT NULL,
    PRIMARY KEY (gram, textId)
) WITHOUT ROWID;
CREATE INDEX gramByText ON gram(textId);
CREATE TABLE sessionText (
    place INTEGER NOT NULL REFERENCES session(place),
    textId INTEGER NOT NULL REFERENCES text(id),
    chunkNumber INTEGER NOT NULL,
    position INTEGER NOT NULL,
    PRIMARY KEY (place, textId)
) WITHOUT ROWID;
CREATE INDEX sessionByText ON sessionText(textId, place);
PRAGMA user_version = 5;
)sql";

// The earliest that can be brought up to date.
constexpr std::int64_t earliestVersion = 2;

// Throws when this receiver can do nothing with the tables.
std::int64_t readableVersion(const Database& database) {
    auto row = database.prepare("PRAGMA user_version");
    row.step();
    const auto version = row.whole(0);
    if (version > schemaVersion) {
        throw DatabaseError("it was written by a newer receiver");
    }
    if (version != 0 && version < earliestVersion) {
        throw DatabaseError("it was written by an older receiver, whose form is no longer read");
    }
    return version;
}

}  // namespace

void prepareSchema(const Database& database) {
    Transaction transaction(database, Transaction::Kind::write);
    const auto found = readableVersion(database);
    if (found == 0) {
        database.execute(schema);
    } else if (found < schemaVersion) {
        updateSchema(database);
    }
    transaction.commit();
}

void requireSchema(const Database& database) {
    if (readableVersion(database) < schemaVersion) {
        throw DatabaseError("it was written by an older receiver; serve from it once to bring it up to date");
    }
}

}  // namespace mireth::receiver
