// Writes one MP4 file with one video track, frame by frame.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Base/Work.hpp"
#include "MirethVex/Platform/PixelBuffer.hpp"

namespace mireth::platform {

/// `value` / `timescale` seconds; `timescale` > 0.
struct MediaTime {
    std::int64_t value = 0;
    std::int32_t timescale = 1;
    bool operator==(const MediaTime&) const = default;
    static MediaTime zero() { return {0, 1}; }
};

enum class FileType { mpeg4 };
enum class MediaType { video, audio };
enum class VideoCodec { h264, hevc };

struct VideoOutputSettings {
    VideoCodec codec = VideoCodec::h264;
    /// In pixels.
    Size size;
};

enum class AssetWriterStatus { unknown, writing, completed, failed, cancelled };

/// The case's name.
MIRETH_EXPORT std::string_view toString(AssetWriterStatus status) noexcept;

/// Takes the frames of one track. The caller appends only while `isReadyForMoreMediaData()`.
/// One thread at a time, but for the readiness callback, which runs where it was asked to.
class WriterInput {
  public:
    virtual ~WriterInput() = default;
    virtual bool isReadyForMoreMediaData() const = 0;
    /// Runs `callback` through `post` whenever the input becomes ready, and at once when it is; again and
    /// again until `markAsFinished`. Then, and when the writer has failed or is gone, the input lets go of
    /// the callback: that is how whoever waits for it learns that it takes no frame any more.
    virtual void requestMediaDataWhenReady(std::function<void(Work)> post,
                                           std::function<void()> callback) = 0;
    /// No frame follows.
    virtual void markAsFinished() = 0;
};

/// What frames an adaptor's pool hands out. The format's only value is 32-bit ARGB.
struct SourcePixelBufferAttributes {
    int pixelFormatType = 32;
    double width = 0;
    double height = 0;
};

/// Appends pixel buffers to an input.
class PixelBufferAdaptor {
  public:
    virtual ~PixelBufferAdaptor() = default;
    /// Null before writing has begun and once the writer is gone.
    virtual std::shared_ptr<PixelBufferPool> pixelBufferPool() const = 0;
    /// Shows `buffer`, unlocked and of the track's size, from `presentationTime` on; times strictly increase
    /// and count from the session's start. False, and the frame is not in the track, when the input is not
    /// ready or the buffer is null; false, and the writer has failed, for a frame or time that does not fit.
    virtual bool append(std::shared_ptr<PixelBuffer> buffer, MediaTime presentationTime) = 0;
};

/// Writes a file that appears under its name only when it is complete: a writer that fails, is cancelled or
/// dropped leaves nothing. One thread at a time.
///
/// The last frame of a track lasts as long as the one before it (ISO 14496-12 sample durations); a single
/// frame lasts `defaultFrameDuration`.
class AssetWriter {
  public:
    virtual ~AssetWriter() = default;
    /// Whether `makeInput` would make an input of them. The library asks for H.264 of 250 × 500 pixels; the
    /// Linux writer takes every even width and height from 16 up to what H.264's level 5.1 allows.
    virtual bool canApplyOutputSettings(const VideoOutputSettings& settings, MediaType type) const = 0;
    /// An input for this kind of media; null when the settings cannot be met. It may outlive the writer, and
    /// then does nothing.
    virtual std::shared_ptr<WriterInput> makeInput(MediaType type, const VideoOutputSettings& settings) = 0;
    /// Null for an input of another writer, or for attributes that do not fit the input's settings.
    virtual std::shared_ptr<PixelBufferAdaptor> makePixelBufferAdaptor(
        std::shared_ptr<WriterInput> input, const SourcePixelBufferAttributes& attributes) = 0;
    /// False for an input of another writer, a second input, or once writing has begun.
    virtual bool canAdd(const WriterInput& input) const = 0;
    /// Takes the input as the track's. Null, and an input that `canAdd` refuses, are ignored.
    virtual void add(std::shared_ptr<WriterInput> input) = 0;
    /// False, and the writer has failed, without an input or without means to encode; false, and nothing has
    /// changed, when writing has begun before.
    virtual bool startWriting() = 0;
    /// Frames' times count from `sourceTime`. The input takes frames from here on. Once, between
    /// `startWriting` and the first frame; ignored at any other moment.
    virtual void startSession(MediaTime sourceTime) = 0;
    /// Completes the file, when at least one frame was appended, then calls `completion` once, on the calling
    /// thread or another; it may be null. The status tells how it went. A writer that was not writing has
    /// failed then; one that was completed, failed or cancelled before stays so. The writer lives until then.
    virtual void finishWriting(std::move_only_function<void()> completion) = 0;
    /// Drops what was written. Ignored once the writer has completed or failed.
    virtual void cancelWriting() = 0;
    virtual AssetWriterStatus status() const = 0;
    /// What went wrong, in words; empty unless the status is failed.
    virtual std::string errorDescription() const = 0;
};

/// Any thread.
class AssetWriterFactory {
  public:
    virtual ~AssetWriterFactory() = default;
    /// A writer for a new file at `outputFile`; null when it cannot be made. `timescale` is the track's, in
    /// units per second, and `defaultFrameDuration` in those units; both > 0. What has that name already
    /// fails the writer when it finishes, and stays.
    virtual std::unique_ptr<AssetWriter> makeWriter(const std::filesystem::path& outputFile, FileType type,
                                                    std::int32_t timescale,
                                                    std::int64_t defaultFrameDuration) = 0;
};

}  // namespace mireth::platform
