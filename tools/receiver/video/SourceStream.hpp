// Lets libavformat read a ByteSource, wherever that has its bytes from. Used by VideoJoin.
#pragma once

#include <cstdint>
#include <memory>

#include "base/ByteSource.hpp"

struct AVIOContext;

namespace mireth::receiver {

/// One thread at a time.
class SourceStream {
  public:
    explicit SourceStream(std::unique_ptr<ByteSource> bytes);

    /// Belongs to the stream and refers to it; null when there was no memory.
    AVIOContext* context() const { return context_.get(); }

  private:
    struct Free {
        void operator()(AVIOContext* context) const;
    };

    static int read(void* self, std::uint8_t* into, int most);
    static std::int64_t seek(void* self, std::int64_t offset, int whence);

    const std::unique_ptr<ByteSource> bytes_;
    std::uint64_t position_ = 0;
    const std::unique_ptr<AVIOContext, Free> context_;
};

}  // namespace mireth::receiver
