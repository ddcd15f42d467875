// Captures the window as a still picture at a fixed rate; the session recorder takes the pictures.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "MirethVex/Platform/Graphics.hpp"
#include "MirethVex/Platform/Image.hpp"
#include "MirethVex/Platform/MainQueue.hpp"
#include "MirethVex/Platform/View.hpp"
#include "MirethVex/PublicSide/DataModels/VexConfiguration.hpp"
#include "PrivateSide/Configuration/PlaybackConfiguration.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerReplicator.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"
#include "PrivateSide/Recording/OptimizedImageRenderer.hpp"

namespace mireth {

/// Each picture is drawn from a masked copy of the window's layers, never from the window itself; while
/// recording is paused the pictures are blank. A picture that cannot be masked or drawn, for whatever reason,
/// is blank too. Main thread only. Always owned by std::shared_ptr; dropping it ends the timer.
class FrameRecorder : public std::enable_shared_from_this<FrameRecorder> {
  public:
    /// Calls `tick` every `interval` on the main thread, or once when `repeats` is false.
    using ScheduleTimer =
        std::function<std::unique_ptr<platform::Timer>(platform::Seconds interval, bool repeats, Work tick)>;
    using BlackImageRenderAction = OptimizedImageRenderer::Actions;
    using RecordingPlaybackCallback = std::function<void(const platform::Image&)>;

    /// The usual timer: repeats on the main queue, also while the user scrolls.
    static ScheduleTimer scheduleOn(std::shared_ptr<platform::MainQueue> mainQueue);

    /// `blackImageRenderAction` draws the blank picture; empty draws nothing.
    FrameRecorder(MirethLog& log, std::shared_ptr<const platform::View> window,
                  std::shared_ptr<platform::Graphics> graphics, ScheduleTimer scheduleTimer,
                  BlackImageRenderAction blackImageRenderAction = {});
    ~FrameRecorder();
    FrameRecorder(const FrameRecorder&) = delete;
    FrameRecorder& operator=(const FrameRecorder&) = delete;

    /// Hands a picture to `recordingPlaybackCallback` every 1 / fps seconds, first after one interval.
    /// A picture that looks like the one before shares its bitmap. Starting again replaces the timer, the
    /// callback and the masking.
    void startFrameRecording(const PlaybackConfiguration& playbackConfiguration,
                             const VexConfiguration& vexConfiguration,
                             RecordingPlaybackCallback recordingPlaybackCallback);
    /// No picture is delivered after this.
    void stopFrameRecording();
    /// Pictures keep coming and are blank.
    void pauseFrameRecording();
    /// Pictures show the window again. Without a callback this is logged as an error and changes nothing.
    void resumePlaybackRecording();

  private:
    void startTimer(platform::Seconds interval);
    void dropTimer();
    void renderFrame();
    platform::Image renderScreenImage();
    platform::Image renderMaskedCopy();
    platform::Image renderBlackImage();
    OptimizedImageRenderer& imageRenderer();
    void reportFailedRendering(const std::string& errorDetails);

    MirethLog& log_;
    const ScheduleTimer scheduleTimer_;
    const std::shared_ptr<const platform::View> window_;
    const std::shared_ptr<platform::Graphics> graphics_;
    const BlackImageRenderAction blackImageRenderAction_;

    std::unique_ptr<platform::Timer> viewImageTimer_;
    /// Counts the recordings: a picture belongs to the one in which it was begun.
    std::uint64_t recording_ = 0;
    RecordingPlaybackCallback recordingPlaybackCallback_;
    bool isBlackedOut_ = false;
    bool maskingIsEnabled_ = true;
    bool failureIsReported_ = false;
    /// In pixels; of the last picture that could be drawn.
    std::optional<std::pair<std::size_t, std::size_t>> lastImageSize_;
    /// Handed out last. Those that look the same share its bitmap.
    platform::Image lastImage_;
    std::shared_ptr<LayerReplicator> replicator_;
    std::unique_ptr<OptimizedImageRenderer> imageRenderer_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
