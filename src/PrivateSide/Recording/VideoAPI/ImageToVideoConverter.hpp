// Encodes one chunk's frames into one video file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "MirethVex/Platform/AssetWriter.hpp"
#include "MirethVex/Platform/Graphics.hpp"
#include "Platform/Async/Task.hpp"
#include "PrivateSide/Configuration/PlaybackConfiguration.hpp"
#include "PrivateSide/Recording/Frame.hpp"
#include "PrivateSide/Recording/VideoAPI/AssetWriterInput.hpp"
#include "PrivateSide/Recording/VideoAPI/MediaDataInput.hpp"

namespace mireth {

/// Made for one chunk, awaited once.
class ImageToVideoConverterProtocol {
  public:
    virtual ~ImageToVideoConverterProtocol() = default;
    /// Writes the whole file. Throws RecordingError, and then leaves no file. The converter must outlive it.
    virtual Task<void> render() = 0;
};

/// Makes the converter of one chunk.
using MakeImageToVideoConverter = std::function<std::unique_ptr<ImageToVideoConverterProtocol>(
    std::vector<Frame> frames, const std::filesystem::path& outputURL,
    const PlaybackConfiguration& configuration)>;

/// Encodes with the platform's media writer. Runs on the executor that awaits it, which must be a background
/// one. A frame's picture is let go of as soon as it is encoded.
class ImageToVideoConverter final : public ImageToVideoConverterProtocol {
  public:
    /// `executor`: the background, for the writer input's readiness callbacks.
    ImageToVideoConverter(std::vector<Frame> frames, std::filesystem::path outputURL,
                          PlaybackConfiguration configuration, std::unique_ptr<MediaDataInput> mediaDataInput,
                          std::shared_ptr<platform::Graphics> graphics, Executor executor);

    /// Converters that write with `assetWriters` and draw with `graphics`.
    static MakeImageToVideoConverter makeFactory(std::shared_ptr<platform::AssetWriterFactory> assetWriters,
                                                 std::shared_ptr<platform::Graphics> graphics,
                                                 Executor executor);

    Task<void> render() override;

    /// Draws the frame into a pixel buffer and appends it at `frameNum` frame durations. True when the writer
    /// took it. The file must be open.
    bool addFrame(const Frame& frame, std::int64_t frameNum);

  private:
    Task<void> tryAppendingAllFramesToBuffer();
    Task<void> finishWriting();

    std::vector<Frame> frames_;
    const std::filesystem::path outputURL_;
    const PlaybackConfiguration configuration_;
    const std::unique_ptr<MediaDataInput> mediaDataInput_;
    const std::shared_ptr<platform::Graphics> graphics_;
    const Executor executor_;
};

}  // namespace mireth
