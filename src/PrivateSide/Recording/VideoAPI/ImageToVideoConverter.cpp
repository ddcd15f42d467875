#include "PrivateSide/Recording/VideoAPI/ImageToVideoConverter.hpp"

#include <string>
#include <utility>

#include "Platform/Async/AsyncEvent.hpp"
#include "Platform/Async/SetOnExit.hpp"
#include "PrivateSide/Configuration/RecordingError.hpp"
#include "PrivateSide/Recording/ImageConverter.hpp"

namespace mireth {

ImageToVideoConverter::ImageToVideoConverter(std::vector<Frame> frames, std::filesystem::path outputURL,
                                             PlaybackConfiguration configuration,
                                             std::unique_ptr<MediaDataInput> mediaDataInput,
                                             std::shared_ptr<platform::Graphics> graphics, Executor executor)
    : frames_(std::move(frames)),
      outputURL_(std::move(outputURL)),
      configuration_(configuration),
      mediaDataInput_(std::move(mediaDataInput)),
      graphics_(std::move(graphics)),
      executor_(std::move(executor)) {}

MakeImageToVideoConverter ImageToVideoConverter::makeFactory(
    std::shared_ptr<platform::AssetWriterFactory> assetWriters, std::shared_ptr<platform::Graphics> graphics,
    Executor executor) {
    return [assetWriters = std::move(assetWriters), graphics = std::move(graphics),
            executor = std::move(executor)](std::vector<Frame> frames, const std::filesystem::path& outputURL,
                                            const PlaybackConfiguration& configuration) {
        auto input = std::make_unique<MediaDataInput>(
            MediaDataInput::platformConstructors(assetWriters, configuration), configuration);
        return std::make_unique<ImageToVideoConverter>(std::move(frames), outputURL, configuration,
                                                       std::move(input), graphics, executor);
    };
}

Task<void> ImageToVideoConverter::render() {
    mediaDataInput_->initialize(outputURL_);
    mediaDataInput_->open();
    co_await tryAppendingAllFramesToBuffer();
    co_await finishWriting();
    const auto& writer = mediaDataInput_->getVideoWriter();
    if (writer.status() != platform::AssetWriterStatus::completed) {
        throw RecordingError("Invalid videoWriter status: " + std::string(toString(writer.status())));
    }
}

bool ImageToVideoConverter::addFrame(const Frame& frame, std::int64_t frameNum) {
    const platform::MediaTime presentationTime = configuration_.presentationTime(frameNum);
    const auto pixelBufferPool = mediaDataInput_->getPixelBufferAdaptor().pixelBufferPool();
    if (pixelBufferPool == nullptr) {
        throw RecordingError("pixelBufferPool is empty during conversion");
    }
    auto pixelBuffer = ImageConverter(frame, pixelBufferPool, graphics_).convertToPixelBuffer();
    return mediaDataInput_->getPixelBufferAdaptor().append(std::move(pixelBuffer), presentationTime);
}

Task<void> ImageToVideoConverter::tryAppendingAllFramesToBuffer() {
    const AssetWriterInput input(mediaDataInput_->getVideoWriterInput(), executor_);
    std::int64_t frameNum = 0;
    for (Frame& waiting : frames_) {
        const bool isReady = co_await input.readyForMoreMediaData();
        const Frame frame = std::exchange(waiting, Frame());
        if (!isReady || !addFrame(frame, frameNum)) {
            // The writer has failed and takes no more; its status tells at the end.
            break;
        }
        ++frameNum;
    }
    co_await input.markAsFinished();
}

Task<void> ImageToVideoConverter::finishWriting() {
    const AsyncEvent finished;
    // Also when the writer drops the completion instead of calling it.
    mediaDataInput_->getVideoWriter().finishWriting(
        [told = SetOnExit(finished), finished] { finished.set(); });
    co_await finished.wait();
}

}  // namespace mireth
