// Where sessions, chunks, events and log lines are kept: the few operations that the endpoints and the
// reports need. SqliteStore is the embedded answer; another can stand on a database server and an object
// store.
#pragma once

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ByteSource.hpp"
#include "settings/Limits.hpp"
#include "store/Records.hpp"
#include "store/SessionQuery.hpp"
#include "store/StoreStats.hpp"
#include "store/TimelineSummary.hpp"

namespace mireth::receiver {

/// A result, or a line for the operator that says what failed and where.
template <typename T>
using Stored = std::expected<T, std::string>;

/// A video while it arrives. It belongs to whoever holds it and vanishes with it, unless Store::putChunk kept
/// it. One thread at a time.
class IncomingVideo : public ByteSource {
  public:
    /// Appends; false when there is no room left. Once it has failed it may not be called again.
    virtual Stored<bool> append(std::string_view bytes) = 0;
};

enum class PutOutcome {
    kept,         ///< durable: it survives a crash from now on
    repeated,     ///< the same chunk is there already
    conflicting,  ///< another video is there under that number
    notOpen,      ///< the session is unknown or closed
    full,         ///< the session has as many chunks as are allowed
    noRoom,       ///< there is no room left on the disk
    tooLarge,     ///< the session would have more bytes than are allowed
};

enum class LineOutcome {
    kept,
    unknown,  ///< the session that the line names is not there
    full,     ///< the session, or the project's lines without one, have as much as is allowed
    noRoom,   ///< there is no room left on the disk
};

enum class CloseOutcome { closed, unknown };

/// Any thread may call; operations of different threads do not disturb each other.
class Store {
  public:
    Store() = default;
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    virtual ~Store() = default;

    /// False when there is no room left.
    virtual Stored<bool> addSession(const Session& session) = 0;
    /// The session, or none when it is unknown.
    virtual Stored<std::optional<Session>> session(const std::string& id) = 0;
    /// Closes the session if it is of that project. Closing a closed one changes nothing and is `closed` too.
    virtual Stored<CloseOutcome> closeSession(const std::string& id, const std::string& brandId,
                                              const std::string& projectId, std::int64_t millis) = 0;

    /// Null when there is no room left.
    virtual Stored<std::unique_ptr<IncomingVideo>> beginVideo() = 0;
    /// Keeps the chunk and its video as one, or neither. `video` must come from this store's beginVideo.
    /// `summary` is of the chunk's timeline. `chunk.video` and `bytes` are not looked at: the store knows
    /// them.
    virtual Stored<PutOutcome> putChunk(const std::string& sessionId, const Chunk& chunk,
                                        const TimelineSummary& summary, IncomingVideo& video,
                                        const Limits& limits) = 0;

    virtual Stored<LineOutcome> addLogLine(const LogLine& line, const Limits& limits) = 0;

    /// One page of the sessions that the query asks for.
    virtual Stored<SessionPage> list(const SessionQuery& query) = 0;
    virtual Stored<Facets> facets() = 0;
    /// Changes whenever what `list`, `facets` or `contents` tell may have changed, and with every start.
    virtual std::string revision() const = 0;
    /// The session's line of the list; none when it is unknown.
    virtual Stored<std::optional<SessionSummary>> summary(const std::string& id) = 0;
    /// Everything of one session; none when it is unknown.
    virtual Stored<std::optional<SessionContents>> contents(const std::string& id) = 0;
    /// The same with empty timelines, which may be too long to be held all at once.
    virtual Stored<std::optional<SessionContents>> outline(const std::string& id) = 0;
    /// The timeline of a chunk, to be read piece by piece; null when the session or the chunk is unknown. It
    /// cannot be read any more once the session is removed, and must not outlive the store.
    virtual Stored<std::unique_ptr<ByteSource>> openTimeline(const std::string& sessionId,
                                                             std::int64_t number) = 0;
    /// Which video a chunk has; none when the session or the chunk is unknown.
    virtual Stored<std::optional<VideoReference>> findVideo(const std::string& sessionId,
                                                            std::int64_t number) = 0;
    /// The video of that key, to be read piece by piece; it stays readable when it is removed meanwhile. An
    /// error when it is not there any more.
    virtual Stored<std::unique_ptr<ByteSource>> openVideo(const std::string& key) = 0;
    /// Removes these sessions with their chunks, videos, texts and log lines, and leaves nothing of them
    /// behind in files; returns how many of them were there.
    virtual Stored<std::int64_t> removeSessions(const std::vector<std::string>& ids) = 0;
    /// Takes out of files what removals had to leave there because others were reading; false when they still
    /// are.
    virtual Stored<bool> finishRemovals() = 0;
    /// At most `most` sessions of which nothing was heard since `millis`, the earliest started first.
    virtual Stored<std::vector<std::string>> quietSince(std::int64_t millis, std::int64_t most) = 0;
    /// Removes the log lines without a session that came before `millis`.
    virtual Stored<void> removeStrayLogLines(std::int64_t millis) = 0;
    /// Cheap, however much is kept; an error when the store does not answer.
    virtual Stored<StoreStats> stats() = 0;
    /// The log lines without a session, the earliest first.
    virtual Stored<std::vector<LogLine>> strayLogLines() = 0;
};

}  // namespace mireth::receiver
