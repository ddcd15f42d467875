// Draws a frame into a pixel buffer for the encoder.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "MirethVex/Platform/Graphics.hpp"
#include "MirethVex/Platform/PixelBuffer.hpp"
#include "PrivateSide/Recording/Frame.hpp"

namespace mireth {

/// What is done with a pixel buffer's memory.
struct PixelBufferOperations {
    using Buffer = platform::PixelBuffer;
    std::function<void(Buffer&)> lockBaseAddress = [](Buffer& buffer) { buffer.lockBaseAddress(); };
    std::function<void(Buffer&)> unlockBaseAddress = [](Buffer& buffer) { buffer.unlockBaseAddress(); };
    /// Null when the memory cannot be had.
    std::function<std::byte*(Buffer&)> baseAddress = [](Buffer& buffer) { return buffer.baseAddress(); };
    std::function<std::size_t(Buffer&)> bytesPerRow = [](Buffer& buffer) { return buffer.bytesPerRow(); };
};

/// Converts one frame. Background, one thread at a time. Every failure is a thrown RecordingError.
class ImageConverter {
  public:
    ImageConverter(Frame frame, std::shared_ptr<platform::PixelBufferPool> pixelBufferPool,
                   std::shared_ptr<platform::Graphics> graphics, PixelBufferOperations operations = {});

    /// A buffer of the pool with the image in its place and transparent black around it. The memory is
    /// unlocked again, also on failure.
    std::shared_ptr<platform::PixelBuffer> convertToPixelBuffer();

    // The steps of it, in their order.

    /// Takes a buffer from the pool.
    void preparePixelBuffer();
    /// Makes a context on the buffer's memory, which must be locked, and clears it.
    void prepareContext();
    /// Draws the frame's image, upright.
    void drawImage(const ScalingMetadata& scalingMetadata);
    /// Hands the finished buffer over.
    std::shared_ptr<platform::PixelBuffer> takePixelBuffer();

  private:
    class BaseAddressLock;

    const Frame frame_;
    const std::shared_ptr<platform::PixelBufferPool> pixelBufferPool_;
    const std::shared_ptr<platform::Graphics> graphics_;
    const PixelBufferOperations operations_;
    std::shared_ptr<platform::PixelBuffer> pixelBuffer_;
    std::unique_ptr<platform::GraphicsContext> context_;
};

}  // namespace mireth
