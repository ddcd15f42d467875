// A file that is open for reading, as a source of bytes. Used for kept videos and exported ones.
#pragma once

#include <memory>

#include "base/UniqueFd.hpp"
#include "store/Store.hpp"

namespace mireth::receiver {

/// Fills `into` from `offset` on; false when the bytes are not all there or cannot be read.
bool readFully(int file, std::uint64_t offset, std::span<unsigned char> into);

class OpenFile final : public ByteSource {
  public:
    /// Its size is taken now; it stays readable when it is removed meanwhile. The error is the system's.
    static Stored<std::unique_ptr<OpenFile>> of(UniqueFd file);

    std::uint64_t size() const override { return size_; }
    bool readAt(std::uint64_t offset, std::span<unsigned char> into) override;

  private:
    OpenFile(UniqueFd file, std::uint64_t size);

    const UniqueFd file_;
    const std::uint64_t size_;
};

}  // namespace mireth::receiver
