#include "platforms/linux/media/BlockCoverages.hpp"

#include <cstdint>
#include <functional>

namespace mireth::platform {

namespace {

/// Some hundred kB. More shapes than these are those of things in motion.
constexpr std::size_t mostKnown = 1024;

}  // namespace

const BlockCoverage* BlockCoverages::find(const BlockShape& shape) {
    const auto found = known_.find(shape);
    if (found == known_.end()) {
        if (known_.size() >= mostKnown) {
            known_.clear();
        }
        known_.emplace(shape, std::nullopt);
        return nullptr;
    }
    if (!found->second) {
        found->second.emplace(shape);
    }
    return &*found->second;
}

std::size_t BlockCoverages::Hash::operator()(const BlockShape& shape) const noexcept {
    const auto sides = std::uint32_t{shape.left} | std::uint32_t{shape.top} << 8U |
                       std::uint32_t{shape.right} << 16U | std::uint32_t{shape.bottom} << 24U;
    const std::hash<double> hash;
    return (std::hash<std::uint32_t>()(sides) * 31 + hash(shape.radius)) * 31 + hash(shape.border);
}

}  // namespace mireth::platform
