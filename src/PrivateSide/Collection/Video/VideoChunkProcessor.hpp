// Turns a batch of frames into a stored chunk and announces it.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/Async/Task.hpp"
#include "PrivateSide/Configuration/CurrentTimeProvider.hpp"
#include "PrivateSide/Configuration/PlaybackConfiguration.hpp"
#include "PrivateSide/Configuration/RemoteSessionInfo.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"
#include "PrivateSide/Recording/Frame.hpp"
#include "PrivateSide/Recording/VideoAPI/ImageToVideoConverter.hpp"
#include "PrivateSide/Storage/SessionDataDao.hpp"

namespace mireth {

/// Stands between the chunk manager and the encoder, so that either can be replaced.
class VideoChunkProcessorProtocol {
  public:
    virtual ~VideoChunkProcessorProtocol() = default;
    /// Encodes `frames`, stores and announces them as chunk `chunkNumber` of the session, and comes back to
    /// the caller's executor. On failure throws what went wrong; the frames are gone then too. What the task
    /// needs it owns: the processor may be dropped meanwhile.
    virtual Task<void> saveVideoChunk(std::vector<Frame> frames, RemoteSessionInfo session,
                                      std::int64_t chunkNumber, PlaybackConfiguration configuration) = 0;
};

/// Encoding and all file work run on one background executor. Any thread.
class VideoChunkProcessor final : public VideoChunkProcessorProtocol {
  public:
    /// `executor`: a serial executor in the background, the one that the store's file work runs on.
    VideoChunkProcessor(MirethLog& log, std::shared_ptr<SessionDataDao> sessionDataDao,
                        MakeImageToVideoConverter makeConverter, CurrentTimeProvider currentTimeProvider,
                        Executor executor);
    ~VideoChunkProcessor() override;

    Task<void> saveVideoChunk(std::vector<Frame> frames, RemoteSessionInfo session, std::int64_t chunkNumber,
                              PlaybackConfiguration configuration) override;

  private:
    struct Collaborators;
    static Task<void> save(std::shared_ptr<const Collaborators> with, std::vector<Frame> frames,
                           RemoteSessionInfo session, std::int64_t chunkNumber,
                           PlaybackConfiguration configuration);
    static Task<void> encode(std::shared_ptr<const Collaborators> with, std::vector<Frame> frames,
                             RemoteSessionInfo session, std::int64_t chunkNumber,
                             PlaybackConfiguration configuration);
    static void handleVideoChunk(const Collaborators& with, const RemoteSessionInfo& session,
                                 std::int64_t currentChunkNumber, std::int64_t chunkEndTimestampMillis,
                                 const std::filesystem::path& path);

    const std::shared_ptr<const Collaborators> with_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
