// Gathers frames into batches of one chunk and numbers the chunks of a session.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "MirethVex/Platform/Image.hpp"
#include "Platform/Async/AsyncMutex.hpp"
#include "Platform/Async/Task.hpp"
#include "PrivateSide/Collection/Video/VideoChunkProcessor.hpp"
#include "PrivateSide/Configuration/PlaybackConfiguration.hpp"
#include "PrivateSide/Configuration/RemoteSessionInfo.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"
#include "PrivateSide/Recording/Frame.hpp"

namespace mireth {

/// Called, and its tasks awaited, on the main executor only. What touches the buffer happens in the call
/// itself, before the task is awaited: frames stand in the order of the calls, however long a chunk takes.
/// Chunks are encoded one after another, in the order in which their tasks began; the tasks own what they
/// need, so that the manager may be dropped meanwhile.
class VideoChunkManager {
  public:
    /// An overflowing number of frames per chunk is a fatal error.
    VideoChunkManager(MirethLog& log, PlaybackConfiguration configuration,
                      std::shared_ptr<VideoChunkProcessorProtocol> videoChunkProcessor);

    /// Appends a frame at once. The task saves the chunk when this frame has filled it, and else completes at
    /// once. Throws as `saveVideoChunk` does.
    Task<void> recordFrame(RemoteSessionInfo session, platform::Image viewImage,
                           ScalingMetadata scalingMetadata);

    /// Takes all frames at once; frames recorded from then on belong to the next chunk. The task saves them
    /// when the chunks before are through, under the number that is next then. On failure it throws, the
    /// frames are gone and the next chunk has the number.
    Task<void> saveVideoChunk(RemoteSessionInfo session);

    bool isFrameBufferEmpty() const noexcept { return framesBuffer_.empty(); }

    /// Drops the frames, with their memory, and begins to number at 0. Chunks still being saved are those of
    /// the session before: they keep its numbering and leave the new one alone.
    void clear();

  private:
    struct Numbering {
        std::int64_t chunkNumber = 0;
    };

    static Task<void> nothingToSave();
    static Task<void> saveInTurn(AsyncMutex turn, std::shared_ptr<Numbering> numbering,
                                 std::shared_ptr<VideoChunkProcessorProtocol> processor,
                                 std::vector<Frame> frames, RemoteSessionInfo session,
                                 PlaybackConfiguration configuration);

    const PlaybackConfiguration configuration_;
    const std::shared_ptr<VideoChunkProcessorProtocol> videoChunkProcessor_;
    const std::int64_t framesPerChunk_;
    const AsyncMutex turn_;
    std::shared_ptr<Numbering> numbering_;
    std::vector<Frame> framesBuffer_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
