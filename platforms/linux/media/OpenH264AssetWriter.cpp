#include "platforms/linux/media/OpenH264AssetWriter.hpp"

#include <utility>

#include "platforms/linux/media/TrackInput.hpp"

namespace mireth::platform {

namespace {

/// 32-bit ARGB, in SourcePixelBufferAttributes.
constexpr int argbFormat = 32;

}  // namespace

OpenH264AssetWriter::OpenH264AssetWriter(std::shared_ptr<FileManager> files, std::filesystem::path outputFile,
                                         std::int32_t timescale, std::int64_t defaultFrameDuration)
    : core_(std::make_shared<WriterCore>(std::move(files), std::move(outputFile), timescale,
                                         defaultFrameDuration)) {}

bool OpenH264AssetWriter::canApplyOutputSettings(const VideoOutputSettings& settings, MediaType type) const {
    return trackSizeFor(type, settings).has_value();
}

std::shared_ptr<WriterInput> OpenH264AssetWriter::makeInput(MediaType type,
                                                            const VideoOutputSettings& settings) {
    const auto size = trackSizeFor(type, settings);
    return size ? std::make_shared<TrackInput>(core_, *size) : nullptr;
}

std::shared_ptr<PixelBufferAdaptor> OpenH264AssetWriter::makePixelBufferAdaptor(
    std::shared_ptr<WriterInput> input, const SourcePixelBufferAttributes& attributes) {
    auto own = std::dynamic_pointer_cast<TrackInput>(std::move(input));
    if (own == nullptr || !own->belongsTo(core_) || attributes.pixelFormatType != argbFormat ||
        attributes.width != own->size().width || attributes.height != own->size().height) {
        return nullptr;
    }
    return std::make_shared<TrackAdaptor>(core_, std::move(own));
}

bool OpenH264AssetWriter::canAdd(const WriterInput& input) const {
    const auto* const own = dynamic_cast<const TrackInput*>(&input);
    return own != nullptr && own->belongsTo(core_) && !core_->hasInput() &&
           core_->status() == AssetWriterStatus::unknown;
}

void OpenH264AssetWriter::add(std::shared_ptr<WriterInput> input) {
    if (input == nullptr || !canAdd(*input)) {
        return;
    }
    const auto own = std::static_pointer_cast<TrackInput>(std::move(input));
    core_->setInput(own->size(), own->readiness());
}

bool OpenH264AssetWriter::startWriting() {
    return core_->startWriting();
}

void OpenH264AssetWriter::startSession(MediaTime sourceTime) {
    core_->startSession(sourceTime);
}

void OpenH264AssetWriter::finishWriting(std::move_only_function<void()> completion) {
    core_->finish();
    if (completion) {
        completion();
    }
}

void OpenH264AssetWriter::cancelWriting() {
    core_->cancel();
}

AssetWriterStatus OpenH264AssetWriter::status() const {
    return core_->status();
}

std::string OpenH264AssetWriter::errorDescription() const {
    return core_->errorDescription();
}

}  // namespace mireth::platform
