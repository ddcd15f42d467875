// Uploads each finished chunk, and ends the recording when an upload does not succeed.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "MirethVex/Base/AnyCancellable.hpp"
#include "Platform/Async/AsyncEvent.hpp"
#include "Platform/Async/SetOnExit.hpp"
#include "Platform/Async/Task.hpp"
#include "PrivateSide/Api/MApiClient.hpp"
#include "PrivateSide/Api/NetworkStateProvider.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"
#include "PrivateSide/Storage/SessionDataDao.hpp"

namespace mireth {

/// The only consumer of the chunk stream. Started and stopped on the main thread; chunks arrive on whatever
/// thread the store announces them, and every upload is a task of its own in the background, so uploads may
/// overlap.
class ChunkPusher : public std::enable_shared_from_this<ChunkPusher> {
  public:
    ChunkPusher(MirethLog& logger, std::shared_ptr<MApiClient> api,
                std::shared_ptr<SessionDataDao> sessionDataDao,
                std::shared_ptr<NetworkStateProvider> networkState, Executor background);

    /// `stopRecordingCallback` is called, on any thread, when an upload did not succeed.
    void startListeningForChunks(std::function<void()> stopRecordingCallback);

    /// Waits for the upload that was started last; no chunk is uploaded after it completes. From its begin on
    /// a failure is only logged.
    Task<void> stopListeningForChunks();

  private:
    static Task<void> stopListening(std::shared_ptr<ChunkPusher> self);
    void bufferChunkPush(const ChunkData& chunkData);
    /// A chunk and which recording it belongs to.
    struct Upload {
        ChunkData chunkData;
        std::uint64_t listening = 0;
        SetOnExit done;
    };

    static Task<void> push(std::shared_ptr<ChunkPusher> self, Upload upload);
    void handleRecordPlayback(const ApiResponseResult<SrRecordPlaybackResponse>& response,
                              const Upload& upload);
    void triggerSessionTermination(LogTag logTag, const std::string& message,
                                   const AdditionalInfo& additionalInfo, const Upload& upload);

    MirethLog& logger_;
    const std::shared_ptr<MApiClient> api_;
    const std::shared_ptr<SessionDataDao> sessionDataDao_;
    const std::shared_ptr<NetworkStateProvider> networkState_;
    const Executor background_;
    const MemoryUseLines memoryUse_;

    AnyCancellable chunkSubscription_;  // main only

    std::mutex mutex_;
    std::optional<AsyncEvent> pushTask_;           // guarded by mutex_; set when the latest upload is done
    std::function<void()> stopRecordingCallback_;  // guarded by mutex_
    std::uint64_t listening_ = 0;                  // guarded by mutex_; counts the starts
};

}  // namespace mireth
