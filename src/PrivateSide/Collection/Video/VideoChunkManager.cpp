#include "PrivateSide/Collection/Video/VideoChunkManager.hpp"

#include <utility>

#include "Base/CheckedMath.hpp"

namespace mireth {

VideoChunkManager::VideoChunkManager(MirethLog& log, PlaybackConfiguration configuration,
                                     std::shared_ptr<VideoChunkProcessorProtocol> videoChunkProcessor)
    : configuration_(configuration),
      videoChunkProcessor_(std::move(videoChunkProcessor)),
      framesPerChunk_(configuration.framesPerChunk()),
      numbering_(std::make_shared<Numbering>()),
      memoryUse_(log, "PrivateSide/Collection/Video/VideoChunkManager") {}

Task<void> VideoChunkManager::recordFrame(RemoteSessionInfo session, platform::Image viewImage,
                                          ScalingMetadata scalingMetadata) {
    framesBuffer_.push_back({std::move(viewImage), scalingMetadata});
    if (static_cast<std::int64_t>(framesBuffer_.size()) < framesPerChunk_) {
        return nothingToSave();
    }
    return saveVideoChunk(std::move(session));
}

Task<void> VideoChunkManager::saveVideoChunk(RemoteSessionInfo session) {
    return saveInTurn(turn_, numbering_, videoChunkProcessor_, std::exchange(framesBuffer_, {}),
                      std::move(session), configuration_);
}

void VideoChunkManager::clear() {
    framesBuffer_ = {};
    numbering_ = std::make_shared<Numbering>();
}

Task<void> VideoChunkManager::nothingToSave() {
    co_return;
}

Task<void> VideoChunkManager::saveInTurn(AsyncMutex turn, std::shared_ptr<Numbering> numbering,
                                         std::shared_ptr<VideoChunkProcessorProtocol> processor,
                                         std::vector<Frame> frames, RemoteSessionInfo session,
                                         PlaybackConfiguration configuration) {
    const AsyncMutex::Lock lock = co_await turn.lock();
    // Only now: the chunk before may have failed, and then its number is free again.
    co_await processor->saveVideoChunk(std::move(frames), std::move(session), numbering->chunkNumber,
                                       configuration);
    numbering->chunkNumber = checkedAdd<std::int64_t>(numbering->chunkNumber, 1);
}

}  // namespace mireth
