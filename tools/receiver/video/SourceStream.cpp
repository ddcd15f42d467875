// One buffer of bytes is held at a time.
#include "video/SourceStream.hpp"

#include <algorithm>
#include <cerrno>
#include <span>
#include <utility>

extern "C" {
#include <libavformat/avio.h>
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

namespace mireth::receiver {
namespace {

constexpr int bufferBytes = 32 * 1024;

}  // namespace

void SourceStream::Free::operator()(AVIOContext* context) const {
    av_freep(static_cast<void*>(&context->buffer));
    avio_context_free(&context);
}

SourceStream::SourceStream(std::unique_ptr<ByteSource> bytes)
    : bytes_(std::move(bytes)), context_([this] {
          auto* const buffer = static_cast<unsigned char*>(av_malloc(bufferBytes));
          return buffer == nullptr ? nullptr
                                   : avio_alloc_context(buffer, bufferBytes, 0, this, &read, nullptr, &seek);
      }()) {}

int SourceStream::read(void* self, std::uint8_t* into, int most) {
    auto& stream = *static_cast<SourceStream*>(self);
    if (stream.position_ >= stream.bytes_->size()) {
        return AVERROR_EOF;
    }
    const auto count = std::min(static_cast<std::uint64_t>(most), stream.bytes_->size() - stream.position_);
    if (!stream.bytes_->readAt(stream.position_, std::span(into, count))) {
        return AVERROR(EIO);
    }
    stream.position_ += count;
    return static_cast<int>(count);
}

std::int64_t SourceStream::seek(void* self, std::int64_t offset, int whence) {
    auto& stream = *static_cast<SourceStream*>(self);
    if ((whence & AVSEEK_SIZE) != 0) {
        return static_cast<std::int64_t>(stream.bytes_->size());
    }
    if ((whence & ~AVSEEK_FORCE) != SEEK_SET || offset < 0) {
        return AVERROR(EINVAL);
    }
    stream.position_ = static_cast<std::uint64_t>(offset);
    return offset;
}

}  // namespace mireth::receiver
