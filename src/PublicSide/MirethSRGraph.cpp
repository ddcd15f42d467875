// The object graph of a project: every object gets what it needs in its constructor, here.
#include <utility>

#include "PrivateSide/Storage/PlaybackStorage.hpp"
#include "PublicSide/Guarded.hpp"
#include "PublicSide/MirethSRCore.hpp"

namespace mireth {

std::shared_ptr<Orchestrator> MirethSRCore::buildGraph(
    const std::shared_ptr<platform::Window>& window, const std::shared_ptr<MApiClient>& apiClient,
    const std::shared_ptr<NetworkStateProvider>& networkState) {
    const auto fileQueue = [executor = fileExecutor_](Work work) { asio::post(executor, std::move(work)); };
    const auto sessionDataDao =
        std::make_shared<SessionDataDao>(log_, std::make_shared<EventBuffer>(log_),
                                         std::make_shared<PlaybackStorage>(log_, services_.files), fileQueue);
    Orchestrator::Collaborators parts;
    parts.chunkPusher =
        std::make_shared<ChunkPusher>(log_, apiClient, sessionDataDao, networkState, backgroundExecutor_);
    parts.deviceDetector = std::make_shared<DeviceDetector>(log_, services_.device);
    parts.sessionRecorder = buildSessionRecorder(window, sessionDataDao);
    parts.appLifecycleObserver =
        std::make_shared<AppLifecycleObserver>(log_, *services_.application, currentTimeProvider_);
    parts.remoteSessionManager = std::make_shared<RemoteSessionManager>(
        log_, apiClient, remoteLogger_,
        [random = services_.random](double low, double high) { return random->uniformReal(low, high); });
    parts.appearanceDetection = appearanceDetection_;
    parts.takeWaitingLogErrors = [inbox = logErrorInbox_] { inbox->drain(); };
    return orchestratorClass_(log_, std::move(parts), mainExecutor_, currentTimeProvider_);
}

std::shared_ptr<AppearanceDetection> MirethSRCore::makeAppearanceDetection() {
    return std::make_shared<AppearanceDetection>(
        log_, services_.application,
        [self = self_](const std::vector<ScreenHierarchyElement>& screenHierarchy,
                       ScreenChangeType changeType, ScreenDetectionType detectionType) {
            if (auto* const core = *self) {
                guarded(*core, [&] { core->reportScreenChange(screenHierarchy, changeType, detectionType); });
            }
        });
}

std::shared_ptr<SessionRecorder> MirethSRCore::buildSessionRecorder(
    const std::shared_ptr<platform::Window>& window, const std::shared_ptr<SessionDataDao>& sessionDataDao) {
    const DimensionConverter dimensionConverter{static_cast<float>(window->screenScale())};
    const PlaybackConfiguration configuration;
    SessionRecorder::Collaborators parts;
    parts.frameRecorder = std::make_shared<FrameRecorder>(log_, window, services_.graphics,
                                                          FrameRecorder::scheduleOn(services_.mainQueue));
    const auto chunkProcessor = std::make_shared<VideoChunkProcessor>(
        log_, sessionDataDao,
        ImageToVideoConverter::makeFactory(services_.assetWriters, services_.graphics, fileExecutor_),
        currentTimeProvider_, fileExecutor_);
    parts.videoChunkManager = std::make_shared<VideoChunkManager>(log_, configuration, chunkProcessor);
    parts.eventRecorder = std::make_shared<EventRecorder>(
        log_, sessionDataDao, TimelineTransformer(dimensionConverter), currentTimeProvider_);
    parts.timelineEventDetector = std::make_shared<TimelineEventDetector>(
        log_, window,
        std::make_unique<MirethGestureRecognizer>(log_, std::make_shared<GestureRecognizerObserver>()),
        TimelineEventDetector::Environment{services_.mainQueue, currentTimeProvider_,
                                           DevicePerformanceEvaluator(*services_.device),
                                           [inbox = logErrorInbox_] { inbox->drain(); }});
    parts.metadataDetector = std::make_shared<MetadataDetector>(log_, clientDetails_, services_.information,
                                                                services_.information, services_.device);
    parts.windowDimensionsDetector = std::make_shared<WindowDimensionsDetector>(log_, dimensionConverter);
    return std::make_shared<SessionRecorder>(
        log_, std::move(parts), configuration, mainExecutor_,
        [queue = services_.mainQueue](Work work) { queue->post(std::move(work)); }, currentTimeProvider_);
}

}  // namespace mireth
