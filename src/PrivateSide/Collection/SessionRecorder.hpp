// The hub of one recording: frames go to the video pipeline, events to the timeline.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "MirethVex/PublicSide/DataModels/ScreenReport.hpp"
#include "MirethVex/PublicSide/DataModels/VexConfiguration.hpp"
#include "Platform/Async/Task.hpp"
#include "Platform/Async/TaskGroup.hpp"
#include "PrivateSide/Collection/EventRecorder.hpp"
#include "PrivateSide/Collection/Video/VideoChunkManager.hpp"
#include "PrivateSide/Configuration/CurrentTimeProvider.hpp"
#include "PrivateSide/Configuration/PlaybackConfiguration.hpp"
#include "PrivateSide/Configuration/RemoteSessionInfo.hpp"
#include "PrivateSide/Detection/Metadata/MetadataDetector.hpp"
#include "PrivateSide/Detection/Navigation/NavigationTracker.hpp"
#include "PrivateSide/Detection/TimelineEventDetector.hpp"
#include "PrivateSide/Detection/WindowDimentions/WindowDimensionsDetector.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"
#include "PrivateSide/Recording/FrameRecorder.hpp"

namespace mireth {

/// Main thread. Driven by the orchestrator. No failure stops it; the two cases in which recording makes no
/// sense any more (a frame without a session or without its scaling) are reported to the owner as well.
class SessionRecorder : public std::enable_shared_from_this<SessionRecorder> {
  public:
    /// Runs a piece of work later on the main thread.
    using Dispatcher = std::function<void(Work)>;

    /// The parts of a recording; none is null.
    struct Collaborators {
        std::shared_ptr<FrameRecorder> frameRecorder;
        std::shared_ptr<VideoChunkManager> videoChunkManager;
        std::shared_ptr<EventRecorder> eventRecorder;
        std::shared_ptr<TimelineEventDetector> timelineEventDetector;
        std::shared_ptr<MetadataDetector> metadataDetector;
        std::shared_ptr<WindowDimensionsDetector> windowDimensionsDetector;
    };

    SessionRecorder(MirethLog& log, Collaborators collaborators, PlaybackConfiguration configuration,
                    Executor mainExecutor, Dispatcher dispatcher, CurrentTimeProvider currentTimeProvider);

    /// `onRecordingErrorCallback` is called when recording cannot go on.
    void startRecording(const RemoteSessionInfo& session, const VexConfiguration& vexConfiguration,
                        std::function<void()> onRecordingErrorCallback);

    /// Completes when every captured frame has been handed on and the last chunk is saved.
    Task<void> stopRecording();

    void pauseRecording();
    /// `completion` is never called.
    void resumeRecording(const std::function<void()>& completion = nullptr);

    /// Passes an error that the host reported to the detectors.
    void recordLogError(const LogErrorData& error);

    void record(const std::vector<ScreenHierarchyElement>& screenHierarchy, ScreenChangeType screenChange,
                ScreenDetectionType detectionMethod);

    /// Records a signal without a gesture.
    void backdoorRecordSignal(const SessionSignalData& signalData);

    /// What happens to each captured image, on the dispatcher.
    void processWindowDimensionsChange(const platform::Image& viewImage);
    void pushFrameToBuffer(const platform::Image& viewImage, TaskGroup::Ticket ticket = {});

  private:
    using Self = std::shared_ptr<SessionRecorder>;

    static Task<void> stop(Self self);
    static Task<void> saveLastChunk(Self self, RemoteSessionInfo session);
    /// What a frame's task needs on its way into the chunk manager.
    struct Handover {
        MirethLog& log;
        std::shared_ptr<VideoChunkManager> videoChunkManager;
        TaskGroup::Ticket ticket;
    };
    static Task<void> recordFrame(Handover handover, RemoteSessionInfo session, platform::Image viewImage,
                                  ScalingMetadata scaling);

    void cleanupExistingData();
    void recordInitialSessionData(const RemoteSessionInfo& session);
    void startNavigationTracking();
    void startRecorders(const VexConfiguration& vexConfiguration);
    void handleCapturedImage(platform::Image viewImage);
    void recordEvent(const EventData& sessionData);
    void handleMissingSessionError(const std::string& message);
    void handleMissingScalingMetadata(const std::string& message, LogTag logTag);
    void reportRecordingError(LogTag logTag, const std::string& message);

    MirethLog& log_;
    const Collaborators parts_;
    const PlaybackConfiguration configuration_;
    const Executor mainExecutor_;
    const Dispatcher dispatcher_;
    const CurrentTimeProvider currentTimeProvider_;

    std::unique_ptr<NavigationTracker> navigationTracker_;
    AnyCancellable navigationChangeSubscription_;
    std::optional<RemoteSessionInfo> session_;
    std::optional<ScalingMetadata> scalingMetadata_;
    std::function<void()> onRecordingErrorCallback_;
    /// Captured images on their way into the chunk manager, and the encodes they set off.
    const TaskGroup framesInFlight_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
