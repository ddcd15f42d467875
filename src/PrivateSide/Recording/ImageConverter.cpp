#include "PrivateSide/Recording/ImageConverter.hpp"

#include <utility>

#include "PrivateSide/Configuration/RecordingError.hpp"

namespace mireth {

using platform::PixelBuffer;

/// Keeps a buffer's memory locked while it lives, and ends the context on it.
class ImageConverter::BaseAddressLock {
  public:
    BaseAddressLock(const PixelBufferOperations& operations, std::shared_ptr<PixelBuffer> buffer,
                    std::unique_ptr<platform::GraphicsContext>& context)
        : operations_(operations), buffer_(std::move(buffer)), context_(context) {
        operations_.lockBaseAddress(*buffer_);
    }
    ~BaseAddressLock() {
        // The context writes to the memory until it is gone.
        context_.reset();
        operations_.unlockBaseAddress(*buffer_);
    }
    BaseAddressLock(const BaseAddressLock&) = delete;
    BaseAddressLock& operator=(const BaseAddressLock&) = delete;

  private:
    const PixelBufferOperations& operations_;
    const std::shared_ptr<PixelBuffer> buffer_;
    std::unique_ptr<platform::GraphicsContext>& context_;
};

ImageConverter::ImageConverter(Frame frame, std::shared_ptr<platform::PixelBufferPool> pixelBufferPool,
                               std::shared_ptr<platform::Graphics> graphics, PixelBufferOperations operations)
    : frame_(std::move(frame)),
      pixelBufferPool_(std::move(pixelBufferPool)),
      graphics_(std::move(graphics)),
      operations_(std::move(operations)) {}

std::shared_ptr<PixelBuffer> ImageConverter::convertToPixelBuffer() {
    preparePixelBuffer();
    {
        const BaseAddressLock lock(operations_, pixelBuffer_, context_);
        prepareContext();
        drawImage(frame_.scalingMetadata);
    }
    return takePixelBuffer();
}

void ImageConverter::preparePixelBuffer() {
    auto [status, buffer] = pixelBufferPool_->createPixelBuffer();
    if (status != 0) {
        throw RecordingError("CVPixelBufferPoolCreatePixelBuffer() failed");
    }
    if (buffer == nullptr) {
        throw RecordingError("PixelBuffer is nil during preparation");
    }
    pixelBuffer_ = std::move(buffer);
}

void ImageConverter::prepareContext() {
    if (pixelBuffer_ == nullptr) {
        throw RecordingError("PixelBuffer is nil while creating context");
    }
    platform::BitmapDescription bitmap;
    bitmap.width = pixelBuffer_->width();
    bitmap.height = pixelBuffer_->height();
    bitmap.bytesPerRow = operations_.bytesPerRow(*pixelBuffer_);
    if (std::byte* const address = operations_.baseAddress(*pixelBuffer_)) {
        bitmap.bytes = {address, bitmap.bytesPerRow * bitmap.height};
        context_ = graphics_->makeBitmapContext(bitmap);
    }
    if (context_ == nullptr) {
        throw RecordingError("Context is nil during preparation");
    }
    context_->clearRect({0, 0, static_cast<double>(bitmap.width), static_cast<double>(bitmap.height)});
}

void ImageConverter::drawImage(const ScalingMetadata& scalingMetadata) {
    if (pixelBuffer_ == nullptr) {
        throw RecordingError("PixelBuffer is nil while drawing image");
    }
    if (!frame_.image.hasBitmap()) {
        throw RecordingError("Could not retrieve cgImage from image");
    }
    if (context_ == nullptr) {
        throw RecordingError("Context is nil");
    }
    const Rect whole{0, 0, 1, 1};
    const Rect destination{scalingMetadata.margin.left, scalingMetadata.margin.top,
                           scalingMetadata.scaledSize.width, scalingMetadata.scaledSize.height};
    context_->drawImage(frame_.image, whole, destination, platform::Interpolation::linear);
}

std::shared_ptr<PixelBuffer> ImageConverter::takePixelBuffer() {
    if (pixelBuffer_ == nullptr) {
        throw RecordingError("PixelBuffer is nil");
    }
    return std::exchange(pixelBuffer_, nullptr);
}

}  // namespace mireth
