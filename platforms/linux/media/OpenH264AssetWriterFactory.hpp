// Linux's video files: H.264 by OpenH264 in MP4 by libavformat.
#pragma once

#include <memory>

#include "MirethVex/Platform/AssetWriter.hpp"
#include "MirethVex/Platform/FileManager.hpp"

namespace mireth::platform {

/// Writers code each frame while it is appended, on the appending thread, and keep the coded frames in memory
/// until they finish; so an input is ready as long as it is open. Sizes must be even, from 16 pixels a side
/// to what H.264's level 5.1 allows. Any thread.
class OpenH264AssetWriterFactory final : public AssetWriterFactory {
  public:
    /// `files` takes the finished files; not null.
    explicit OpenH264AssetWriterFactory(std::shared_ptr<FileManager> files);
    /// Null for an empty path, a time scale or a duration below 1.
    std::unique_ptr<AssetWriter> makeWriter(const std::filesystem::path& outputFile, FileType type,
                                            std::int32_t timescale,
                                            std::int64_t defaultFrameDuration) override;

  private:
    const std::shared_ptr<FileManager> files_;
};

}  // namespace mireth::platform
