// A database as an earlier receiver left it. Used by the tests of bringing it up to date.
#pragma once

namespace mireth::receiver::test {

/// Version 2 as it was at first: texts were found by a full-text index, and nothing summed the timelines.
inline constexpr const char* firstVersion2 = R"sql(
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
    message TEXT NOT NULL
);
CREATE INDEX logLineBySession ON logLine(place, id);
CREATE TABLE text (
    id INTEGER PRIMARY KEY,
    kind INTEGER NOT NULL,
    value TEXT NOT NULL,
    UNIQUE (kind, value)
);
CREATE VIRTUAL TABLE textSearch USING fts5(value, content='text', content_rowid='id', tokenize='trigram');
CREATE TRIGGER textAdded AFTER INSERT ON text BEGIN
    INSERT INTO textSearch(rowid, value) VALUES (new.id, new.value);
END;
CREATE TRIGGER textGone AFTER DELETE ON text BEGIN
    INSERT INTO textSearch(textSearch, rowid, value) VALUES ('delete', old.id, old.value);
END;
CREATE TABLE sessionText (
    place INTEGER NOT NULL REFERENCES session(place),
    textId INTEGER NOT NULL REFERENCES text(id),
    chunkNumber INTEGER NOT NULL,
    position INTEGER NOT NULL,
    PRIMARY KEY (place, textId)
) WITHOUT ROWID;
CREATE INDEX sessionByText ON sessionText(textId, place);
PRAGMA user_version = 2;
)sql";

/// Two sessions, one of them with two chunks, texts and a log line.
inline constexpr const char* rowsOfVersion2 = R"sql(
INSERT INTO session(place, id, brandId, brandDc, projectId, isTestSession, startMillis, lastMillis, chunks,
    highestChunk, frames, bytes, durationMillis, events, logLines, logBytes, taps, deviceModel)
    VALUES (4096, 'S1', 'b1', 'd', 'p1', 0, 1, 9, 2, 1, 40, 10, 20000, 3, 1, 4, 1, 'Phone'),
           (8192, 'S2', 'b1', 'd', 'p1', 0, 2, 2, 0, -1, 0, 0, 0, 0, 0, 0, 0, '');
INSERT INTO chunk VALUES (4096, 0, 3, 3, 5, 20, 10000, 'v0.mp4', 'd0', 2, '["ä"]'),
                         (4096, 1, 9, 9, 5, 20, 10000, 'v1.mp4', 'd1', 1, '[]');
INSERT INTO logLine(place, receivedMillis, levelName, message) VALUES (4096, 9, 'error', 'line');
INSERT INTO text(id, kind, value) VALUES (1, 0, 'Übersicht'), (2, 1, 'Card declined'), (7, 0, 'A');
INSERT INTO sessionText VALUES (4096, 1, 0, 0), (4096, 2, 1, 0), (4096, 7, 1, 1);
)sql";

}  // namespace mireth::receiver::test
