// The input and the adaptor of OpenH264AssetWriter. Private to this folder.
#pragma once

#include <memory>

#include "MirethVex/Platform/AssetWriter.hpp"
#include "platforms/linux/media/WriterCore.hpp"

namespace mireth::platform {

/// Belongs to the writer that made it, and does nothing once that is gone.
class TrackInput final : public WriterInput {
  public:
    TrackInput(std::weak_ptr<WriterCore> core, const TrackSize& size);

    bool isReadyForMoreMediaData() const override;
    void requestMediaDataWhenReady(std::function<void(Work)> post, std::function<void()> callback) override;
    void markAsFinished() override;

    const TrackSize& size() const { return size_; }
    const std::shared_ptr<ReadinessSignal>& readiness() const { return readiness_; }
    bool belongsTo(const std::shared_ptr<WriterCore>& core) const;

  private:
    const std::weak_ptr<WriterCore> core_;
    const TrackSize size_;
    const std::shared_ptr<ReadinessSignal> readiness_;
};

/// Appends to a TrackInput.
class TrackAdaptor final : public PixelBufferAdaptor {
  public:
    TrackAdaptor(std::weak_ptr<WriterCore> core, std::shared_ptr<TrackInput> input);
    std::shared_ptr<PixelBufferPool> pixelBufferPool() const override;
    bool append(std::shared_ptr<PixelBuffer> buffer, MediaTime presentationTime) override;

  private:
    const std::weak_ptr<WriterCore> core_;
    const std::shared_ptr<TrackInput> input_;
};

}  // namespace mireth::platform
