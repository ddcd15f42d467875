// Notices when the captured window changes its size.
#pragma once

#include <optional>

#include "MirethVex/Platform/Image.hpp"
#include "PrivateSide/Collection/Timeline/DimensionConverter.hpp"
#include "PrivateSide/Collection/Timeline/TimelineEvent.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Main thread.
class WindowDimensionsDetector {
  public:
    WindowDimensionsDetector(MirethLog& log, DimensionConverter dimensionConverter)
        : dimensionConverter_(dimensionConverter),
          memoryUse_(log, "PrivateSide/Detection/WindowDimentions/WindowDimensionsDetector") {}

    /// The image's size in pixels of the screen, when it differs from the image's before; nothing when it
    /// does not. The first image after `clear` always yields details.
    std::optional<WindowDimensionsDetails> detectWindowDimensionsChange(const platform::Image& image);

    void clear() { currentImageDimensions_.reset(); }

  private:
    const DimensionConverter dimensionConverter_;
    std::optional<Size> currentImageDimensions_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
