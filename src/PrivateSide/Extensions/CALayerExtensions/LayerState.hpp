// What of one layer is looked at when two states of a window are compared.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "MirethVex/Platform/Layer.hpp"

namespace mireth {

/// Tells one mask from all others without keeping it, or the bitmap it may show, alive.
class MaskIdentity {
  public:
    MaskIdentity() = default;
    explicit MaskIdentity(const std::shared_ptr<const platform::Layer>& mask)
        : mask_(mask.get()), owner_(mask) {}

    /// The same object, or no mask in both. A mask that is made later at the place of one that is gone is
    /// another one.
    friend bool operator==(const MaskIdentity& left, const MaskIdentity& right) noexcept {
        return left.mask_ == right.mask_ && !left.owner_.owner_before(right.owner_) &&
               !right.owner_.owner_before(left.owner_);
    }

  private:
    const void* mask_ = nullptr;
    std::weak_ptr<const platform::Layer> owner_;
};

/// A value of its own: it neither follows the layer nor holds anything of the app's.
struct LayerState {
    /// Without sublayers.
    explicit LayerState(const platform::Layer& layer);

    std::size_t sublayerCount = 0;

    Rect contentsRect;
    Rect contentsCenter;

    std::optional<Color> borderColor;
    std::optional<Color> backgroundColor;
    platform::ContentsGravity contentsGravity;
    bool isHidden;
    bool masksToBounds;
    MaskIdentity mask;
    bool isDoubleSided;
    double cornerRadius;
    std::uint8_t maskedCorners;
    double borderWidth;

    platform::LayerRendering rendering;

    Rect frame;
    Rect bounds;
    Point position;
    double zPosition;

    /// Null for the identity, which nearly all layers have.
    std::unique_ptr<const Transform3D> transform;
};

}  // namespace mireth
