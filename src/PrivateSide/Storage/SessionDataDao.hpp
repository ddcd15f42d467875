// The session data store: events in memory, video files on disk, and the stream of finished chunks.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "MirethVex/Base/PassthroughSubject.hpp"
#include "MirethVex/Base/Work.hpp"
#include "PrivateSide/Configuration/PlaybackConfiguration.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"
#include "PrivateSide/Storage/ChunkData.hpp"
#include "PrivateSide/Storage/EventBuffer.hpp"
#include "PrivateSide/Storage/PlaybackStorage.hpp"

namespace mireth {

/// One store an initialised project. Any thread, but what touches files is called in the background: the file
/// operations of one project run one after another on one serial executor, which the composition root passes
/// on as `fileQueue`.
class SessionDataDao {
  public:
    /// Runs work later, in order, in the background.
    using FileQueue = std::function<void(Work)>;

    SessionDataDao(MirethLog& log, std::shared_ptr<EventBuffer> eventBuffer,
                   std::shared_ptr<PlaybackStorageProtocol> playbackStorage, FileQueue fileQueue,
                   PlaybackConfiguration configuration = {});

    void addEvent(const std::string& sessionId, TimelineEvent event);

    /// Background. Where the chunk's file is or goes.
    platform::FileResult<std::filesystem::path> getPlaybackFileURL(const std::string& sessionId,
                                                                   std::int64_t chunkNumber);

    /// Background. Where a new chunk's file goes, with anything of that name removed. Throws RecordingError
    /// when the store is full or cannot be read.
    std::filesystem::path getClearedPlaybackFileURL(const std::string& sessionId, std::int64_t chunkNumber);

    /// Background. The chunk's file is complete: takes the events recorded since the chunk before and
    /// announces both on the chunk stream, on the calling thread.
    void notifyPlaybackChunkReady(const RemoteSessionInfo& session, std::int64_t chunkNumber,
                                  std::int64_t chunkEndTimestampMillis);

    AnyCancellable subscribeToChunks(std::function<void(const ChunkData&)> receiveValue);

    /// The file is all that is left of a chunk that was announced: both do the same.
    void deletePlaybackFile(const std::string& sessionId, std::int64_t chunkNumber);
    void deleteChunk(const std::string& sessionId, std::int64_t chunkNumber);

    /// Any thread. Empties the event buffer at once and deletes the files on the file queue, before any file
    /// operation that is queued later.
    void deleteAll();

  private:
    MirethLog& log_;
    const std::shared_ptr<EventBuffer> eventBuffer_;
    const std::shared_ptr<PlaybackStorageProtocol> playbackStorage_;
    const FileQueue fileQueue_;
    const PassthroughSubject<ChunkData> chunkPublisher_;
    const PlaybackConfiguration configuration_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
