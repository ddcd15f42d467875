#include "PrivateSide/Collection/Video/VideoChunkProcessor.hpp"

#include <exception>
#include <string>
#include <utility>

#include "Base/CurrentException.hpp"

namespace mireth {

struct VideoChunkProcessor::Collaborators {
    MirethLog& log;
    std::shared_ptr<SessionDataDao> sessionDataDao;
    MakeImageToVideoConverter makeConverter;
    CurrentTimeProvider currentTimeProvider;
    Executor executor;

    void reportFailure(std::int64_t chunkNumber, const std::string& errorDetails) const {
        log.error(LogTag::playback, "Failed to create chunk",
                  {{"chunkNumber", std::to_string(chunkNumber)}, {"errorDetails", errorDetails}});
    }
};

VideoChunkProcessor::VideoChunkProcessor(MirethLog& log, std::shared_ptr<SessionDataDao> sessionDataDao,
                                         MakeImageToVideoConverter makeConverter,
                                         CurrentTimeProvider currentTimeProvider, Executor executor)
    : with_(std::make_shared<const Collaborators>(log, std::move(sessionDataDao), std::move(makeConverter),
                                                  std::move(currentTimeProvider), std::move(executor))),
      memoryUse_(log, "PrivateSide/Collection/Video/VideoChunkProcessor") {}

VideoChunkProcessor::~VideoChunkProcessor() = default;

Task<void> VideoChunkProcessor::saveVideoChunk(std::vector<Frame> frames, RemoteSessionInfo session,
                                               std::int64_t chunkNumber,
                                               PlaybackConfiguration configuration) {
    return save(with_, std::move(frames), std::move(session), chunkNumber, configuration);
}

Task<void> VideoChunkProcessor::save(std::shared_ptr<const Collaborators> with, std::vector<Frame> frames,
                                     RemoteSessionInfo session, std::int64_t chunkNumber,
                                     PlaybackConfiguration configuration) {
    try {
        co_await runOn(with->executor,
                       encode(with, std::move(frames), std::move(session), chunkNumber, configuration));
    } catch (...) {
        with->reportFailure(chunkNumber, describeCurrentException());
        throw;
    }
}

Task<void> VideoChunkProcessor::encode(std::shared_ptr<const Collaborators> with, std::vector<Frame> frames,
                                       RemoteSessionInfo session, std::int64_t chunkNumber,
                                       PlaybackConfiguration configuration) {
    const std::filesystem::path path =
        with->sessionDataDao->getClearedPlaybackFileURL(session.sessionId, chunkNumber);
    const auto converter = with->makeConverter(std::move(frames), path, configuration);
    co_await converter->render();
    handleVideoChunk(*with, session, chunkNumber, with->currentTimeProvider().toTimestampMillis(), path);
}

void VideoChunkProcessor::handleVideoChunk(const Collaborators& with, const RemoteSessionInfo& session,
                                           std::int64_t currentChunkNumber,
                                           std::int64_t chunkEndTimestampMillis,
                                           const std::filesystem::path& path) {
    with.sessionDataDao->notifyPlaybackChunkReady(session, currentChunkNumber, chunkEndTimestampMillis);
    with.log.info(LogTag::playback, "New Video chunk.",
                  {{"chunkNumber", std::to_string(currentChunkNumber)}, {"path", path.string()}});
}

}  // namespace mireth
