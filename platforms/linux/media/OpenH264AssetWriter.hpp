// The writer that OpenH264AssetWriterFactory makes. Private to this folder.
#pragma once

#include <memory>

#include "MirethVex/Platform/AssetWriter.hpp"
#include "platforms/linux/media/WriterCore.hpp"

namespace mireth::platform {

class OpenH264AssetWriter final : public AssetWriter {
  public:
    OpenH264AssetWriter(std::shared_ptr<FileManager> files, std::filesystem::path outputFile,
                        std::int32_t timescale, std::int64_t defaultFrameDuration);

    bool canApplyOutputSettings(const VideoOutputSettings& settings, MediaType type) const override;
    std::shared_ptr<WriterInput> makeInput(MediaType type, const VideoOutputSettings& settings) override;
    std::shared_ptr<PixelBufferAdaptor> makePixelBufferAdaptor(
        std::shared_ptr<WriterInput> input, const SourcePixelBufferAttributes& attributes) override;
    bool canAdd(const WriterInput& input) const override;
    void add(std::shared_ptr<WriterInput> input) override;
    bool startWriting() override;
    void startSession(MediaTime sourceTime) override;
    void finishWriting(std::move_only_function<void()> completion) override;
    void cancelWriting() override;
    AssetWriterStatus status() const override;
    std::string errorDescription() const override;

  private:
    const std::shared_ptr<WriterCore> core_;
};

}  // namespace mireth::platform
