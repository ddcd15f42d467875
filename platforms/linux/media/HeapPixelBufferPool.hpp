// Pixel buffers on the heap, used again once they are dropped.
#pragma once

#include <cstddef>
#include <memory>

#include "MirethVex/Platform/PixelBuffer.hpp"

namespace mireth::platform {

/// Hands out buffers of one size. The status is 0, or -1 when there is no memory.
class HeapPixelBufferPool final : public PixelBufferPool {
  public:
    /// In pixels, positive.
    HeapPixelBufferPool(std::size_t width, std::size_t height);
    std::pair<Status, std::shared_ptr<PixelBuffer>> createPixelBuffer() override;

  private:
    class FreeList;
    class Buffer;
    const std::size_t width_;
    const std::size_t height_;
    const std::size_t bytesPerRow_;
    const std::shared_ptr<FreeList> freeList_;
};

}  // namespace mireth::platform
