// The coverages of the blocks met so far. Private to this folder.
#pragma once

#include <cstddef>
#include <optional>
#include <unordered_map>

#include "platforms/linux/media/BlockCoverage.hpp"

namespace mireth::platform {

/// A screen has blocks of a few shapes, again in each frame. One thread at a time.
class BlockCoverages {
  public:
    /// Null for a shape that is met for the first time: it may be that of a moving block and never come
    /// again, and to draw it once costs less than to know it. Good until the next call.
    const BlockCoverage* find(const BlockShape& shape);

  private:
    struct Hash {
        std::size_t operator()(const BlockShape& shape) const noexcept;
    };

    /// Without a value: met once.
    std::unordered_map<BlockShape, std::optional<BlockCoverage>, Hash> known_;
};

}  // namespace mireth::platform
