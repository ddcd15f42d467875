// Frames on their way to the encoder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace mireth::platform {

/// Memory for one frame: native 32-bit words 0xAARRGGBB, colours premultiplied, rows from the top.
/// One thread at a time. The base address may be used only between lock and unlock.
class PixelBuffer {
  public:
    virtual ~PixelBuffer() = default;
    virtual std::size_t width() const = 0;
    virtual std::size_t height() const = 0;
    /// At least `width` × 4; rows may be padded.
    virtual std::size_t bytesPerRow() const = 0;
    /// Locks are counted: the address is good until every one is undone.
    virtual void lockBaseAddress() = 0;
    /// Ignored without a lock.
    virtual void unlockBaseAddress() = 0;
    /// Null while unlocked.
    virtual std::byte* baseAddress() = 0;
};

/// Hands out buffers of one size and takes them back when they are dropped. Any thread.
class PixelBufferPool {
  public:
    /// Zero, or what the system says went wrong.
    using Status = int;
    virtual ~PixelBufferPool() = default;
    /// A buffer with status 0; with any other status null. The contents are whatever was there before. The
    /// pool may be dropped first.
    virtual std::pair<Status, std::shared_ptr<PixelBuffer>> createPixelBuffer() = 0;
};

}  // namespace mireth::platform
