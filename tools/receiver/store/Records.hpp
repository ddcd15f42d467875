// What is kept of a session. Passed between the endpoints, the store and the reports.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mireth::receiver {

struct Session {
    std::string id;
    std::string brandId;
    std::string brandDc;  ///< as the client named it
    std::string projectId;
    bool isTestSession = false;
    std::int64_t startMillis = 0;              ///< wall clock of the receiver
    std::optional<std::int64_t> closedMillis;  ///< none while the session is open
};

/// Which video a chunk has.
struct VideoReference {
    std::string key;     ///< names the video within its store, in the store's own way
    std::string digest;  ///< SHA-256 in hexadecimal
};

/// One uploaded chunk.
struct Chunk {
    std::int64_t number = 0;
    std::int64_t endMillis = 0;  ///< the end of the chunk as the client stamped it
    std::int64_t receivedMillis = 0;
    std::int64_t bytes = 0;  ///< of the video
    std::int64_t frames = 0;
    std::int64_t durationMillis = 0;
    VideoReference video = {};       ///< set by the store
    std::int64_t events = 0;         ///< in the timeline
    std::int64_t timelineBytes = 0;  ///< set by the store
    std::string timeline;            ///< the events as a JSON array
};

struct LogLine {
    std::optional<std::string> sessionId;  ///< none when the line names no session that is known
    std::int64_t receivedMillis = 0;
    std::string levelName;
    std::string message;
    /// Whose budget a line without a session counts against; looked at by Store::addLogLine only.
    std::string brandId = {};
    std::string projectId = {};
};

/// What was counted in the timeline of a session or of a chunk.
struct SignalCounts {
    std::int64_t taps = 0;
    std::int64_t rageTaps = 0;
    std::int64_t deadTaps = 0;
    std::int64_t errorTaps = 0;
};

/// One line of the list of sessions: the session and sums over what it holds.
struct SessionSummary {
    Session session;
    std::int64_t lastMillis = 0;  ///< when the receiver last got something of it, or closed it
    std::int64_t chunks = 0;
    std::int64_t missingChunks = 0;  ///< numbers below the highest one that are not there
    std::int64_t frames = 0;
    std::int64_t bytes = 0;
    std::int64_t durationMillis = 0;  ///< of the replay: where the chunk with the highest number ends
    std::int64_t events = 0;
    std::int64_t logLines = 0;
    SignalCounts counts = {};
    std::string deviceModel;           ///< empty until the timeline named it
    std::string deviceSystem;          ///< empty until the timeline named it
    std::vector<std::string> screens;  ///< the first ten, each once, in the order of their first appearance
    std::int64_t screenCount = 0;      ///< of all
};

/// Everything of one session.
struct SessionContents {
    SessionSummary summary;
    std::vector<Chunk> chunks;  ///< by number
    std::vector<LogLine> logLines;
};

}  // namespace mireth::receiver
