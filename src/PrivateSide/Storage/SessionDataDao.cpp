#include "PrivateSide/Storage/SessionDataDao.hpp"

#include <utility>

#include "PrivateSide/Configuration/RecordingError.hpp"

namespace mireth {

SessionDataDao::SessionDataDao(MirethLog& log, std::shared_ptr<EventBuffer> eventBuffer,
                               std::shared_ptr<PlaybackStorageProtocol> playbackStorage, FileQueue fileQueue,
                               PlaybackConfiguration configuration)
    : log_(log),
      eventBuffer_(std::move(eventBuffer)),
      playbackStorage_(std::move(playbackStorage)),
      fileQueue_(std::move(fileQueue)),
      configuration_(configuration),
      memoryUse_(log, "PrivateSide/Storage/SessionDataDao") {}

void SessionDataDao::addEvent(const std::string& sessionId, TimelineEvent event) {
    eventBuffer_->add(sessionId, std::move(event));
}

platform::FileResult<std::filesystem::path> SessionDataDao::getPlaybackFileURL(const std::string& sessionId,
                                                                               std::int64_t chunkNumber) {
    return playbackStorage_->getPlaybackFileURL(sessionId, chunkNumber);
}

std::filesystem::path SessionDataDao::getClearedPlaybackFileURL(const std::string& sessionId,
                                                                std::int64_t chunkNumber) {
    const auto count = playbackStorage_->getCount();
    if (!count) {
        throw RecordingError(count.error().description);
    }
    if (*count >= configuration_.maxNumberOfFiles()) {
        // Nor can what has happened meanwhile be sent any more: it would pile up as long as the app runs.
        eventBuffer_->remove(sessionId);
        throw RecordingError::playbackStorageFull();
    }
    playbackStorage_->deleteFile(sessionId, chunkNumber);
    auto file = playbackStorage_->getPlaybackFileURL(sessionId, chunkNumber);
    if (!file) {
        throw RecordingError(file.error().description);
    }
    return std::move(*file);
}

void SessionDataDao::notifyPlaybackChunkReady(const RemoteSessionInfo& session, std::int64_t chunkNumber,
                                              std::int64_t chunkEndTimestampMillis) {
    auto file = playbackStorage_->getPlaybackFileURL(session.sessionId, chunkNumber);
    // Also without a file: the next chunk must not inherit this one's events.
    auto timeline = eventBuffer_->flush(session.sessionId);
    if (!file) {
        log_.error(LogTag::playback, "Failed to read playback file");
        return;
    }
    chunkPublisher_.send(
        {session, chunkNumber, std::move(timeline), std::move(*file), chunkEndTimestampMillis});
}

AnyCancellable SessionDataDao::subscribeToChunks(std::function<void(const ChunkData&)> receiveValue) {
    return chunkPublisher_.sink(std::move(receiveValue));
}

void SessionDataDao::deletePlaybackFile(const std::string& sessionId, std::int64_t chunkNumber) {
    playbackStorage_->deleteFile(sessionId, chunkNumber);
}

void SessionDataDao::deleteChunk(const std::string& sessionId, std::int64_t chunkNumber) {
    deletePlaybackFile(sessionId, chunkNumber);
}

void SessionDataDao::deleteAll() {
    eventBuffer_->removeAll();
    fileQueue_([storage = playbackStorage_] { storage->deleteAll(); });
}

}  // namespace mireth
