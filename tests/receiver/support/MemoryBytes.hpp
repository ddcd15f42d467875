// Bytes in memory that are read as those of a store are. Used by tests of what reads videos.
#pragma once

#include <algorithm>
#include <string>
#include <utility>

#include "base/ByteSource.hpp"

namespace mireth::receiver::test {

class MemoryBytes final : public ByteSource {
  public:
    explicit MemoryBytes(std::string bytes) : bytes_(std::move(bytes)) {}
    std::uint64_t size() const override { return bytes_.size(); }
    bool readAt(std::uint64_t offset, std::span<unsigned char> into) override {
        if (offset > bytes_.size() || bytes_.size() - offset < into.size()) {
            return false;
        }
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), into.size(), into.begin());
        return true;
    }

  private:
    const std::string bytes_;
};

}  // namespace mireth::receiver::test
