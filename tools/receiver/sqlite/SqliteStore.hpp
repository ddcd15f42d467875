// The embedded store: one SQLite database and a folder of video files in one data directory.
//
// A video is written and synced before its row is committed, so a crash at any moment leaves either a whole
// chunk or a file that nothing refers to; such files are removed when the store is next opened for writing.
//
// What viewers ask is read through a connection of its own, so that a long list never holds up an upload.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "sqlite/Database.hpp"
#include "sqlite/GroupCommit.hpp"
#include "store/Store.hpp"
#include "video/DiskBudget.hpp"
#include "video/SystemFiles.hpp"
#include "video/VideoFolder.hpp"

namespace mireth::receiver {

class SqliteStore final : public Store {
  public:
    /// Opens `directory` for serving, making it (0700) when it is absent, and removes orphaned videos.
    /// Refused while another process serves from it. `newIdentifier` names the videos, whose files are
    /// `files`.
    static Stored<std::unique_ptr<SqliteStore>> open(
        const std::string& directory, std::function<std::string()> newIdentifier, DiskLimits limits = {},
        std::unique_ptr<FileSystem> files = std::make_unique<SystemFiles>());
    /// Opens an existing `directory` to read what is in it, also while a receiver serves from it.
    static Stored<std::unique_ptr<SqliteStore>> openForReading(const std::string& directory);

    /// How many orphaned videos opening removed.
    std::int64_t sweptVideos() const { return swept_; }
    /// The file in which the video of that key lies.
    std::string videoPath(const std::string& key) const { return videos_.pathOf(key); }

    Stored<bool> addSession(const Session& session) override;
    Stored<std::optional<Session>> session(const std::string& id) override;
    Stored<CloseOutcome> closeSession(const std::string& id, const std::string& brandId,
                                      const std::string& projectId, std::int64_t millis) override;
    Stored<std::unique_ptr<IncomingVideo>> beginVideo() override;
    Stored<PutOutcome> putChunk(const std::string& sessionId, const Chunk& chunk,
                                const TimelineSummary& summary, IncomingVideo& video,
                                const Limits& limits) override;
    Stored<LineOutcome> addLogLine(const LogLine& line, const Limits& limits) override;
    Stored<SessionPage> list(const SessionQuery& query) override;
    Stored<Facets> facets() override;
    std::string revision() const override;
    Stored<std::optional<SessionSummary>> summary(const std::string& id) override;
    Stored<std::optional<SessionContents>> contents(const std::string& id) override;
    Stored<std::optional<SessionContents>> outline(const std::string& id) override;
    Stored<std::unique_ptr<ByteSource>> openTimeline(const std::string& sessionId,
                                                     std::int64_t number) override;
    Stored<std::optional<VideoReference>> findVideo(const std::string& sessionId,
                                                    std::int64_t number) override;
    Stored<std::unique_ptr<ByteSource>> openVideo(const std::string& key) override;
    Stored<std::int64_t> removeSessions(const std::vector<std::string>& ids) override;
    Stored<bool> finishRemovals() override;
    Stored<std::vector<std::string>> quietSince(std::int64_t millis, std::int64_t most) override;
    Stored<void> removeStrayLogLines(std::int64_t millis) override;
    Stored<StoreStats> stats() override;
    Stored<std::vector<LogLine>> strayLogLines() override;

  private:
    class Timeline;
    /// What is kept of log lines.
    struct LogBudget {
        std::int64_t lines = 0;
        std::uint64_t bytes = 0;  ///< of their messages

        bool fits(const LogLine& line, const Limits& limits) const;
    };

    SqliteStore(std::string directory, UniqueFd lock, Database database, Database reader,
                std::unique_ptr<DiskBudget> budget, std::unique_ptr<FileSystem> files, VideoFolder videos,
                std::function<std::string()> newIdentifier);

    /// Runs `work` with the writing connection to itself; what SQLite reports becomes the error.
    template <typename Work>
    auto guarded(const char* doing, Work work) -> Stored<decltype(work())>;
    /// The same with the reading connection, within one moment's state.
    template <typename Work>
    auto reading(const char* doing, Work work) -> Stored<decltype(work())>;
    template <typename Work>
    auto caught(const char* doing, Work work) -> Stored<decltype(work())>;

    void count();
    void sweep();
    /// Begins the budgets of log lines without a session anew.
    void countStrayLines();
    void insertLine(std::optional<std::int64_t> place, const LogLine& line) const;
    LineOutcome addStrayLine(const LogLine& line, const Limits& limits);
    LineOutcome addSessionLine(const LogLine& line, const Limits& limits) const;
    std::optional<std::int64_t> placeOf(const Database& database, const std::string& id) const;
    /// Why the chunk cannot be inserted; `kept` when it can.
    PutOutcome admission(const std::string& sessionId, const Chunk& chunk, const VideoFile& video,
                         const std::string& digest, const Limits& limits) const;
    /// All rows of a chunk, within a transaction.
    PutOutcome insert(const std::string& sessionId, const Chunk& chunk, const TimelineSummary& summary,
                      VideoFile& video, const std::string& digest, const Limits& limits) const;
    void insertChunk(std::int64_t place, const Chunk& chunk, const VideoFile& video,
                     const std::string& digest) const;
    void insertTexts(std::int64_t place, std::int64_t chunkNumber, const std::vector<FoundText>& texts) const;
    /// The session's rows; its videos are added to `videos`. False when it is unknown.
    bool removeRows(const std::string& id, std::vector<std::string>& videos) const;
    void removeTexts(std::int64_t place) const;
    /// Empties the write-ahead log if nobody is in the way, and with it what was removed.
    void clearLog();
    /// The commit of this video's row failed, or seemed to.
    void doubt(const std::string& video);
    /// Removes the videos that were in doubt and have no row.
    void removeDoubtful();
    void addToSums(std::int64_t place, const Chunk& chunk, std::uint64_t bytes,
                   const TimelineSummary& summary) const;
    /// The summary and the session's place.
    std::optional<std::pair<SessionSummary, std::int64_t>> summaryOf(const std::string& id) const;
    void addScreens(std::int64_t place, SessionSummary& summary) const;
    enum class Timelines { with, without };
    Stored<std::optional<SessionContents>> contents(const std::string& id, Timelines timelines);
    std::vector<Chunk> chunksOf(std::int64_t place, Timelines timelines) const;
    /// False when they are not there any more.
    bool readTimeline(const std::string& sessionId, std::int64_t number, std::uint64_t offset,
                      std::span<unsigned char> into);
    std::vector<LogLine> logLinesOf(std::optional<std::int64_t> place,
                                    const std::optional<std::string>& sessionId) const;

    const std::string directory_;
    const UniqueFd lock_;
    const std::unique_ptr<DiskBudget> budget_;
    const std::unique_ptr<FileSystem> files_;
    const VideoFolder videos_;
    const std::function<std::string()> newIdentifier_;
    std::int64_t swept_ = 0;    // constant once opened
    const std::string opened_;  // another text for every opening
    std::atomic<std::uint64_t> changes_ = 0;
    // What there is, so that nobody has to look at every session to count it.
    std::atomic<std::int64_t> sessions_ = 0;
    std::atomic<std::int64_t> chunks_ = 0;

    std::mutex mutex_;
    // Guarded by mutex_.
    Database database_;
    std::vector<std::string> doubtful_;  // videos
    bool logToClear_ = true;             // at first, of what an earlier receiver may have left
    std::map<std::pair<std::string, std::string>, LogBudget> strays_;  // by brand and project
    GroupCommit commits_{database_, mutex_};

    std::mutex readerMutex_;
    // Guarded by readerMutex_.
    Database reader_;
};

}  // namespace mireth::receiver
