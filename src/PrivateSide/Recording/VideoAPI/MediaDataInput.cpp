#include "PrivateSide/Recording/VideoAPI/MediaDataInput.hpp"

#include <utility>

#include "PrivateSide/Configuration/RecordingError.hpp"

namespace mireth {

using platform::AssetWriter;
using platform::FileType;
using platform::MediaType;
using platform::WriterInput;

MediaDataInput::Constructors MediaDataInput::platformConstructors(
    std::shared_ptr<platform::AssetWriterFactory> factory, const PlaybackConfiguration& configuration) {
    Constructors constructors;
    constructors.avAssetWriterConstructor = [factory = std::move(factory), configuration](
                                                const std::filesystem::path& outputURL, FileType type) {
        auto writer = factory->makeWriter(outputURL, type, configuration.kTimescale,
                                          configuration.frameDuration().value);
        if (writer == nullptr) {
            throw RecordingError("The platform has no writer for the file.");
        }
        return writer;
    };
    constructors.avAssetWriterInputConstructor = [](AssetWriter& writer, MediaType type,
                                                    const platform::VideoOutputSettings& settings) {
        return writer.makeInput(type, settings);
    };
    constructors.avAssetWriterInputPixelBufferAdaptorConstructor =
        [](AssetWriter& writer, std::shared_ptr<WriterInput> input,
           const platform::SourcePixelBufferAttributes& attributes) {
            return writer.makePixelBufferAdaptor(std::move(input), attributes);
        };
    return constructors;
}

MediaDataInput::MediaDataInput(Constructors constructors, PlaybackConfiguration settings)
    : constructors_(std::move(constructors)), settings_(settings) {}

void MediaDataInput::initialize(const std::filesystem::path& outputURL) {
    createVideoWriter(outputURL);
    createVideoWriterInput();
    createPixelBufferAdaptor();
}

void MediaDataInput::open() {
    if (!getVideoWriter().startWriting()) {
        throw RecordingError("startWriting() failed");
    }
    getVideoWriter().startSession(platform::MediaTime::zero());
    if (getPixelBufferAdaptor().pixelBufferPool() == nullptr) {
        throw RecordingError("nil pixelBufferPool");
    }
    isOpen_ = true;
}

AssetWriter& MediaDataInput::getVideoWriter() const {
    if (videoWriter_ == nullptr) {
        throw RecordingError("videoWriter is nil");
    }
    return *videoWriter_;
}

const std::shared_ptr<WriterInput>& MediaDataInput::getVideoWriterInput() const {
    if (videoWriterInput_ == nullptr) {
        throw RecordingError("videoWriterInput is nil");
    }
    return videoWriterInput_;
}

platform::PixelBufferAdaptor& MediaDataInput::getPixelBufferAdaptor() const {
    if (pixelBufferAdaptor_ == nullptr) {
        throw RecordingError("videoWriterInput is nil");
    }
    return *pixelBufferAdaptor_;
}

platform::VideoOutputSettings MediaDataInput::outputSettings() const {
    return {settings_.avCodecKey, settings_.size};
}

void MediaDataInput::createVideoWriter(const std::filesystem::path& outputURL) {
    std::unique_ptr<AssetWriter> writer;
    try {
        writer = constructors_.avAssetWriterConstructor(outputURL, FileType::mpeg4);
    } catch (...) {
        throw RecordingError("AVAssetWriter() failed");
    }
    if (writer != nullptr && !writer->canApplyOutputSettings(outputSettings(), MediaType::video)) {
        throw RecordingError("canApplyOutputSettings() failed");
    }
    if (writer == nullptr) {
        throw RecordingError("Failed to create the Asset Writer object");
    }
    videoWriter_ = std::move(writer);
}

void MediaDataInput::createVideoWriterInput() {
    auto input =
        constructors_.avAssetWriterInputConstructor(getVideoWriter(), MediaType::video, outputSettings());
    if (input == nullptr) {
        throw RecordingError("Failed to create video writer input");
    }
    if (!getVideoWriter().canAdd(*input)) {
        throw RecordingError("canAddInput() returned false");
    }
    getVideoWriter().add(input);
    videoWriterInput_ = std::move(input);
}

void MediaDataInput::createPixelBufferAdaptor() {
    platform::SourcePixelBufferAttributes attributes;
    attributes.width = settings_.size.width;
    attributes.height = settings_.size.height;
    pixelBufferAdaptor_ = constructors_.avAssetWriterInputPixelBufferAdaptorConstructor(
        getVideoWriter(), getVideoWriterInput(), attributes);
}

}  // namespace mireth
