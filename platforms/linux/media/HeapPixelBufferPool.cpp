#include "platforms/linux/media/HeapPixelBufferPool.hpp"

#include <mutex>
#include <new>
#include <utility>
#include <vector>

namespace mireth::platform {

namespace {

constexpr std::size_t bytesPerPixel = 4;
/// Rows begin on a cache line.
constexpr std::size_t rowAlignment = 64;
/// A feeder holds one or two buffers at a time.
constexpr std::size_t maximumKept = 4;

using Memory = std::vector<std::byte>;

std::size_t aligned(std::size_t length) {
    return (length + rowAlignment - 1) / rowAlignment * rowAlignment;
}

}  // namespace

/// Shared by the pool and its buffers, which may outlive it.
class HeapPixelBufferPool::FreeList {
  public:
    explicit FreeList(std::size_t bytes) : bytes_(bytes) { kept_.reserve(maximumKept); }

    Memory take() {
        {
            const std::lock_guard lock(mutex_);
            if (!kept_.empty()) {
                Memory memory = std::move(kept_.back());
                kept_.pop_back();
                return memory;
            }
        }
        return Memory(bytes_);
    }

    void giveBack(Memory memory) noexcept {
        const std::lock_guard lock(mutex_);
        if (kept_.size() < maximumKept) {
            kept_.push_back(std::move(memory));
        }
    }

  private:
    const std::size_t bytes_;
    std::mutex mutex_;
    std::vector<Memory> kept_;  // guarded by mutex_
};

class HeapPixelBufferPool::Buffer final : public PixelBuffer {
  public:
    Buffer(std::size_t width, std::size_t height, std::size_t bytesPerRow, std::weak_ptr<FreeList> freeList,
           Memory memory)
        : width_(width),
          height_(height),
          bytesPerRow_(bytesPerRow),
          freeList_(std::move(freeList)),
          memory_(std::move(memory)) {}
    ~Buffer() override {
        if (const auto freeList = freeList_.lock()) {
            freeList->giveBack(std::move(memory_));
        }
    }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    std::size_t width() const override { return width_; }
    std::size_t height() const override { return height_; }
    std::size_t bytesPerRow() const override { return bytesPerRow_; }
    void lockBaseAddress() override { ++locks_; }
    void unlockBaseAddress() override { locks_ -= locks_ > 0 ? 1 : 0; }
    std::byte* baseAddress() override { return locks_ > 0 ? memory_.data() : nullptr; }

  private:
    const std::size_t width_;
    const std::size_t height_;
    const std::size_t bytesPerRow_;
    const std::weak_ptr<FreeList> freeList_;
    Memory memory_;
    int locks_ = 0;
};

HeapPixelBufferPool::HeapPixelBufferPool(std::size_t width, std::size_t height)
    : width_(width),
      height_(height),
      bytesPerRow_(aligned(width * bytesPerPixel)),
      freeList_(std::make_shared<FreeList>(bytesPerRow_ * height)) {}

std::pair<PixelBufferPool::Status, std::shared_ptr<PixelBuffer>> HeapPixelBufferPool::createPixelBuffer() {
    try {
        return {0, std::make_shared<Buffer>(width_, height_, bytesPerRow_, freeList_, freeList_->take())};
    } catch (const std::bad_alloc&) {
        return {-1, nullptr};
    }
}

}  // namespace mireth::platform
