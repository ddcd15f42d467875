// Wraps the platform's writer of one video file: the writer, its video input and the adaptor for frames.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "MirethVex/Platform/AssetWriter.hpp"
#include "PrivateSide/Configuration/PlaybackConfiguration.hpp"

namespace mireth {

/// Lives for one file. One thread at a time. Every failure is a thrown RecordingError.
class MediaDataInput {
  public:
    /// Null when no writer results; throws when there cannot be one.
    using AssetWriterConstructor = std::function<std::unique_ptr<platform::AssetWriter>(
        const std::filesystem::path& outputURL, platform::FileType type)>;
    /// Null when the writer has no input to give.
    using AssetWriterInputConstructor = std::function<std::shared_ptr<platform::WriterInput>(
        platform::AssetWriter& writer, platform::MediaType type,
        const platform::VideoOutputSettings& settings)>;
    using PixelBufferAdaptorConstructor = std::function<std::shared_ptr<platform::PixelBufferAdaptor>(
        platform::AssetWriter& writer, std::shared_ptr<platform::WriterInput> input,
        const platform::SourcePixelBufferAttributes& attributes)>;

    struct Constructors {
        AssetWriterConstructor avAssetWriterConstructor;
        AssetWriterInputConstructor avAssetWriterInputConstructor;
        PixelBufferAdaptorConstructor avAssetWriterInputPixelBufferAdaptorConstructor;
    };

    /// Writers of the platform, for files with the configuration's time scale.
    static Constructors platformConstructors(std::shared_ptr<platform::AssetWriterFactory> factory,
                                             const PlaybackConfiguration& configuration);

    MediaDataInput(Constructors constructors, PlaybackConfiguration settings);

    /// Creates the writer for `outputURL`, its input and the adaptor.
    void initialize(const std::filesystem::path& outputURL);
    /// Begins to write. The adaptor's pool of pixel buffers is there from then on.
    void open();
    bool isOpen() const noexcept { return isOpen_; }

    platform::AssetWriter& getVideoWriter() const;
    const std::shared_ptr<platform::WriterInput>& getVideoWriterInput() const;
    platform::PixelBufferAdaptor& getPixelBufferAdaptor() const;

  private:
    platform::VideoOutputSettings outputSettings() const;
    void createVideoWriter(const std::filesystem::path& outputURL);
    void createVideoWriterInput();
    void createPixelBufferAdaptor();

    const Constructors constructors_;
    const PlaybackConfiguration settings_;
    std::unique_ptr<platform::AssetWriter> videoWriter_;
    std::shared_ptr<platform::WriterInput> videoWriterInput_;
    std::shared_ptr<platform::PixelBufferAdaptor> pixelBufferAdaptor_;
    bool isOpen_ = false;
};

}  // namespace mireth
