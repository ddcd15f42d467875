// Random access to bytes that are too many to hold in memory. The MP4 check reads an uploaded file through
// it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace mireth::receiver {

class ByteSource {
  public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    virtual ~ByteSource() = default;

    virtual std::uint64_t size() const = 0;
    /// Fills `into` with the bytes from `offset` on; false when they are not all there or cannot be read.
    virtual bool readAt(std::uint64_t offset, std::span<unsigned char> into) = 0;
};

}  // namespace mireth::receiver
