// What a writer, its input and its adaptor share: the state of one file being written.
#pragma once

#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "MirethVex/Platform/AssetWriter.hpp"
#include "MirethVex/Platform/FileManager.hpp"
#include "platforms/linux/media/ReadinessSignal.hpp"
#include "platforms/linux/media/TrackRecorder.hpp"

namespace mireth::platform {

/// The size of a track in pixels.
struct TrackSize {
    int width = 0;
    int height = 0;
};

/// The size, when these settings can be met.
std::optional<TrackSize> trackSizeFor(MediaType type, const VideoOutputSettings& settings);

/// Steps from unknown through writing to completed, failed or cancelled; every later call finds that state
/// and does nothing. The writer owns it; inputs and adaptors hold it weakly. One thread at a time.
class WriterCore {
  public:
    WriterCore(std::shared_ptr<FileManager> files, std::filesystem::path outputFile, std::int32_t timescale,
               std::int64_t defaultFrameDuration);
    ~WriterCore();
    WriterCore(const WriterCore&) = delete;
    WriterCore& operator=(const WriterCore&) = delete;

    AssetWriterStatus status() const { return status_; }
    const std::string& errorDescription() const { return errorDescription_; }

    bool hasInput() const { return readiness_ != nullptr; }
    /// The track's readiness is told through `readiness`.
    void setInput(const TrackSize& size, std::shared_ptr<ReadinessSignal> readiness);

    bool startWriting();
    void startSession(MediaTime sourceTime);
    bool append(PixelBuffer& buffer, MediaTime presentationTime);
    void finish();
    void cancel();
    /// Null before writing has begun.
    std::shared_ptr<PixelBufferPool> pool() const { return pool_; }

  private:
    using Outcome = std::expected<void, std::string>;

    Outcome open();
    Outcome appendFrame(PixelBuffer& buffer, MediaTime presentationTime);
    Outcome writeFile();
    /// Runs a step; on failure the writer has failed with the step's words. Memory that runs out is one.
    bool attempt(const std::function<Outcome()>& step);
    void end(AssetWriterStatus status);
    bool fail(const std::string& reason);

    const std::shared_ptr<FileManager> files_;
    const std::filesystem::path outputFile_;
    const std::int32_t timescale_;
    const std::int64_t defaultFrameDuration_;

    AssetWriterStatus status_ = AssetWriterStatus::unknown;
    std::string errorDescription_;
    TrackSize size_;
    std::shared_ptr<ReadinessSignal> readiness_;
    std::shared_ptr<PixelBufferPool> pool_;
    std::optional<TrackRecorder> recorder_;
    std::optional<std::int64_t> sessionStart_;
};

}  // namespace mireth::platform
