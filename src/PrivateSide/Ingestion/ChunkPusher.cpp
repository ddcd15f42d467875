#include "PrivateSide/Ingestion/ChunkPusher.hpp"

#include <utility>
#include <vector>

#include "PrivateSide/Api/HeaderNames.hpp"

namespace mireth {

namespace {

/// What the log shows for a status or header that is not there.
constexpr const char* absent = "nil";
constexpr const char* skippedMessage = "Single chunk skipped: Error during chunk push.";

/// The chunk's events and a marker at its end, in their wire form.
std::vector<SrTimelineEvent> timelineToUpload(const ChunkData& chunkData) {
    std::vector<SrTimelineEvent> events;
    events.reserve(chunkData.timeline.size() + 1);
    for (const auto& event : chunkData.timeline) {
        events.push_back(toSrTimelineEvent(event, chunkData.chunkNumber));
    }
    const TimelineEvent endMarker{EventName::chunkEndMarker, chunkData.chunkEndTimestampMillis, std::nullopt};
    events.push_back(toSrTimelineEvent(endMarker, chunkData.chunkNumber));
    return events;
}

}  // namespace

ChunkPusher::ChunkPusher(MirethLog& logger, std::shared_ptr<MApiClient> api,
                         std::shared_ptr<SessionDataDao> sessionDataDao,
                         std::shared_ptr<NetworkStateProvider> networkState, Executor background)
    : logger_(logger),
      api_(std::move(api)),
      sessionDataDao_(std::move(sessionDataDao)),
      networkState_(std::move(networkState)),
      background_(std::move(background)),
      memoryUse_(logger, "PrivateSide/Ingestion/ChunkPusher") {}

void ChunkPusher::startListeningForChunks(std::function<void()> stopRecordingCallback) {
    logger_.info(LogTag::network, "Pusher starts pushing");
    {
        const std::lock_guard lock(mutex_);
        stopRecordingCallback_ = std::move(stopRecordingCallback);
        ++listening_;
    }
    chunkSubscription_ =
        sessionDataDao_->subscribeToChunks([weak = weak_from_this()](const ChunkData& chunkData) {
            if (const auto self = weak.lock()) {
                self->bufferChunkPush(chunkData);
            }
        });
}

Task<void> ChunkPusher::stopListeningForChunks() {
    return stopListening(shared_from_this());
}

Task<void> ChunkPusher::stopListening(std::shared_ptr<ChunkPusher> self) {
    std::optional<AsyncEvent> latest;
    {
        const std::lock_guard lock(self->mutex_);
        self->stopRecordingCallback_ = nullptr;
        latest = self->pushTask_;
    }
    if (latest) {
        co_await latest->wait();
        const std::lock_guard lock(self->mutex_);
        self->pushTask_.reset();
    }
    self->chunkSubscription_.cancel();
}

void ChunkPusher::bufferChunkPush(const ChunkData& chunkData) {
    if (!networkState_->hasConnection()) {
        logger_.info(LogTag::network, "Canceling buffer chunk push, network unavailable");
        return;
    }
    logger_.info(LogTag::network, "Performing buffer chunk push");
    const AsyncEvent done;
    std::uint64_t listening = 0;
    {
        const std::lock_guard lock(mutex_);
        listening = listening_;
        pushTask_ = done;
    }
    Upload upload{chunkData, listening, SetOnExit(done)};
    spawn(background_, push(shared_from_this(), std::move(upload)));
}

Task<void> ChunkPusher::push(std::shared_ptr<ChunkPusher> self, Upload upload) {
    const ChunkData& chunk = upload.chunkData;
    const auto response = co_await self->api_->recordPlayback(chunk.session.sessionId, chunk.chunkNumber,
                                                              timelineToUpload(chunk), chunk.playbackURL,
                                                              chunk.chunkEndTimestampMillis);
    self->handleRecordPlayback(response, upload);
}

void ChunkPusher::handleRecordPlayback(const ApiResponseResult<SrRecordPlaybackResponse>& response,
                                       const Upload& upload) {
    if (!response) {
        triggerSessionTermination(LogTag::network, skippedMessage,
                                  {{"reason", std::string(description(response.error()))}}, upload);
        return;
    }
    const auto status = response->data.status;
    if (status == SrResponseStatus::success) {
        logger_.info(LogTag::network, "Successfuly pushed chunk.",
                     {{"chunkNumber", std::to_string(upload.chunkData.chunkNumber)}});
        return;
    }
    const auto transactionId = response->headers.find(header_names::transactionId);
    triggerSessionTermination(
        LogTag::network, skippedMessage,
        {{"statusCode", status ? std::string(rawValue(*status)) : absent},
         {"transactionId", transactionId == response->headers.end() ? absent : transactionId->second}},
        upload);
}

void ChunkPusher::triggerSessionTermination(LogTag logTag, const std::string& message,
                                            const AdditionalInfo& additionalInfo, const Upload& upload) {
    logger_.error(logTag, message, additionalInfo);
    std::function<void()> stopRecording;
    {
        const std::lock_guard lock(mutex_);
        // A late failure of an earlier recording must not end the one that runs now.
        if (upload.listening == listening_) {
            stopRecording = stopRecordingCallback_;
        }
    }
    if (stopRecording) {
        stopRecording();
    }
}

}  // namespace mireth
