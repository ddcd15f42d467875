// Makes one video of a session for a download. Used by the viewing API.
#pragma once

#include <expected>
#include <memory>
#include <string>

#include "base/ByteSource.hpp"

namespace mireth::receiver {

struct ExportError {
    bool busy = false;  ///< others are being made; ask again later
    std::string why;
};

/// Any thread may call.
class VideoExporter {
  public:
    VideoExporter() = default;
    VideoExporter(const VideoExporter&) = delete;
    VideoExporter& operator=(const VideoExporter&) = delete;
    virtual ~VideoExporter() = default;

    /// The session's chunks as one MP4; returns when it is complete. `sessionId` is of a session that is
    /// known.
    virtual std::expected<std::shared_ptr<ByteSource>, ExportError> make(const std::string& sessionId) = 0;
};

}  // namespace mireth::receiver
