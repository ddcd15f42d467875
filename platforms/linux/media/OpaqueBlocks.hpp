// Fills blocks of one opaque colour, which is most of what a masked frame is made of. Private to this folder.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>

#include "MirethVex/Platform/Graphics.hpp"
#include "platforms/linux/media/BlockCoverages.hpp"
#include "platforms/linux/media/DeviceRect.hpp"

namespace mireth::platform {

/// Writes the pixels that Cairo would, without following a path for them, if Cairo has drawn a block of the
/// same shape before. Works beside a cairo_t on the same surface. One thread at a time.
class OpaqueBlocks {
  public:
    /// `surface` outlives this object.
    OpaqueBlocks(cairo_surface_t* surface, std::shared_ptr<BlockCoverages> coverages);

    /// The whole surface; empty for one whose pixels cannot be written to.
    const DeviceRect& area() const noexcept { return area_; }

    /// What is to be drawn. The rectangle's sides are not negative.
    struct Block {
        Rect rect;
        CornerRadii radii;
        /// 0: filled.
        double border = 0;
        Color color;
    };

    /// False for a block that Cairo has to draw; nothing was drawn then. `clip` lies in the area.
    bool draw(const Block& block, const cairo_matrix_t& toDevice, const DeviceRect& clip);

  private:
    void drawRows(const DeviceRect& block, const DeviceRect& shown, const BlockCoverage& coverage,
                  std::uint32_t pixel);

    cairo_surface_t* const surface_;
    DeviceRect area_;
    const std::shared_ptr<BlockCoverages> coverages_;
};

}  // namespace mireth::platform
