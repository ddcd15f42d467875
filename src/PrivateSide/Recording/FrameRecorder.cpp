#include "PrivateSide/Recording/FrameRecorder.hpp"

#include <algorithm>
#include <utility>

#include "Base/CurrentException.hpp"
#include "Base/GuardedRun.hpp"
#include "Platform/Async/Task.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerOperations.hpp"

namespace mireth {

using platform::GraphicsContext;
using platform::Image;

namespace {

std::unique_ptr<OptimizedImageRenderer> makeRenderer(platform::Graphics& graphics, Size size) {
    return std::make_unique<OptimizedImageRenderer>(graphics, size);
}

/// Lets go of a copy's pictures also when drawing it has failed.
class FlushOnExit {
  public:
    explicit FlushOnExit(platform::Layer& layer) : layer_(layer) {}
    ~FlushOnExit() { flushLayerTree(layer_); }
    FlushOnExit(const FlushOnExit&) = delete;
    FlushOnExit& operator=(const FlushOnExit&) = delete;

  private:
    platform::Layer& layer_;
};

bool looksAlike(const Image& left, const Image& right) {
    return left.pixelWidth() == right.pixelWidth() && left.pixelHeight() == right.pixelHeight() &&
           left.scale() == right.scale() && std::ranges::equal(left.pixels(), right.pixels());
}

}  // namespace

FrameRecorder::ScheduleTimer FrameRecorder::scheduleOn(std::shared_ptr<platform::MainQueue> mainQueue) {
    return [mainQueue = std::move(mainQueue)](platform::Seconds interval, bool repeats,
                                              Work tick) -> std::unique_ptr<platform::Timer> {
        if (!repeats) {
            mainQueue->postAfter(interval, std::move(tick));
            return nullptr;
        }
        return mainQueue->scheduleRepeating(interval, std::move(tick));
    };
}

FrameRecorder::FrameRecorder(MirethLog& log, std::shared_ptr<const platform::View> window,
                             std::shared_ptr<platform::Graphics> graphics, ScheduleTimer scheduleTimer,
                             BlackImageRenderAction blackImageRenderAction)
    : log_(log),
      scheduleTimer_(std::move(scheduleTimer)),
      window_(std::move(window)),
      graphics_(std::move(graphics)),
      blackImageRenderAction_(std::move(blackImageRenderAction)),
      replicator_(std::make_shared<LayerReplicator>()),
      imageRenderer_(makeRenderer(*graphics_, window_->frame().size())),
      memoryUse_(log, "PrivateSide/Recording/FrameRecorder") {}

FrameRecorder::~FrameRecorder() {
    runGuarded("a timer", [this] { dropTimer(); });
}

void FrameRecorder::startFrameRecording(const PlaybackConfiguration& playbackConfiguration,
                                        const VexConfiguration& vexConfiguration,
                                        RecordingPlaybackCallback recordingPlaybackCallback) {
    ++recording_;
    recordingPlaybackCallback_ = std::move(recordingPlaybackCallback);
    isBlackedOut_ = false;
    maskingIsEnabled_ = !vexConfiguration.disableMasking;
    replicator_ = std::make_shared<LayerReplicator>(vexConfiguration.additionalViewTypesToMask);
    failureIsReported_ = false;
    startTimer(getSecondsDelayBasedOnFps(playbackConfiguration.fps));
    log_.info(LogTag::playback, "Frames recorder started");
    if (!maskingIsEnabled_) {
        log_.info(LogTag::playback, "Masking is disabled");
    }
}

void FrameRecorder::stopFrameRecording() {
    dropTimer();
    recordingPlaybackCallback_ = nullptr;
    lastImage_ = {};
    log_.info(LogTag::playback, "Frames recorder stopped");
}

void FrameRecorder::pauseFrameRecording() {
    isBlackedOut_ = true;
}

void FrameRecorder::resumePlaybackRecording() {
    if (!recordingPlaybackCallback_) {
        log_.error(LogTag::playback, "Callback is nil while trying to resume playback recording");
        return;
    }
    isBlackedOut_ = false;
}

void FrameRecorder::startTimer(platform::Seconds interval) {
    dropTimer();
    viewImageTimer_ = scheduleTimer_(interval, true, [weakSelf = weak_from_this(), &log = log_] {
        if (const auto self = weakSelf.lock()) {
            self->renderFrame();
        } else {
            log.error(LogTag::playback, "Self is nil in viewImage callback");
        }
    });
}

void FrameRecorder::dropTimer() {
    if (const auto timer = std::exchange(viewImageTimer_, nullptr)) {
        timer->invalidate();
    }
}

void FrameRecorder::renderFrame() {
    if (!recordingPlaybackCallback_) {
        log_.error(LogTag::playback, "Callback is nil in viewImage callback");
        return;
    }
    const std::uint64_t recording = recording_;
    const bool wasBlackedOut = isBlackedOut_;
    Image image = wasBlackedOut ? renderBlackImage() : renderScreenImage();
    // The host, whose views were just asked what they show, may have paused or stopped the recording, or
    // begun another with other masks.
    if (isBlackedOut_ && !wasBlackedOut) {
        image = renderBlackImage();
    }
    // A copy: the callback may stop the recording, and so drop itself.
    const auto callback = recordingPlaybackCallback_;
    if (!callback || recording != recording_) {
        return;
    }
    if (image.hasBitmap()) {
        lastImageSize_ = {image.pixelWidth(), image.pixelHeight()};
    } else if (lastImageSize_) {
        // A window without a size, a minimised one for instance, would cost the whole chunk otherwise.
        constexpr std::uint32_t black = 0xFF000000U;
        image = Image::filled(lastImageSize_->first, lastImageSize_->second, black);
    } else {
        return;
    }
    // Most screens stand still most of the time, and a chunk waits with twenty pictures.
    if (looksAlike(image, lastImage_)) {
        image = lastImage_;
    }
    lastImage_ = image;
    callback(image);
}

Image FrameRecorder::renderScreenImage() {
    try {
        Image image = renderMaskedCopy();
        if (image.hasBitmap()) {
            return image;
        }
        reportFailedRendering("The picture could not be drawn to its end.");
    } catch (...) {
        reportFailedRendering(describeCurrentException());
    }
    // Better no picture than one that lacks a mask.
    return renderBlackImage();
}

Image FrameRecorder::renderMaskedCopy() {
    // A copy: the views may start another recording, and so drop this one's.
    const auto replicator = replicator_;
    const auto layers = replicator->replicateLayerTree(*window_, maskingIsEnabled_);
    const FlushOnExit flush(*layers);
    bool isComplete = false;
    const Image image = imageRenderer().image([&layers, &isComplete](GraphicsContext& context) {
        layers->render(context);
        isComplete = context.isValid();
    });
    // What a context leaves out once it has run into an error may be a mask.
    return isComplete ? image : Image();
}

Image FrameRecorder::renderBlackImage() {
    try {
        return imageRenderer().image([this](GraphicsContext& context) {
            if (blackImageRenderAction_) {
                blackImageRenderAction_(context);
            }
        });
    } catch (...) {
        // The window itself may be what throws.
        reportFailedRendering(describeCurrentException());
        return {};
    }
}

OptimizedImageRenderer& FrameRecorder::imageRenderer() {
    // The window may have been turned or resized since the last picture.
    const Size size = window_->frame().size();
    if (imageRenderer_->size() != size) {
        imageRenderer_ = makeRenderer(*graphics_, size);
    }
    return *imageRenderer_;
}

void FrameRecorder::reportFailedRendering(const std::string& errorDetails) {
    // Twice a second would be too much; the first failure of a recording tells enough.
    if (!std::exchange(failureIsReported_, true)) {
        log_.error(LogTag::playback, "Failed to render the frame", {{"errorDetails", errorDetails}});
    }
}

}  // namespace mireth
