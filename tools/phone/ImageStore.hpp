// The pictures of one scenario, each read once, and the memory that all its bitmaps may take.
#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "MirethVex/Platform/Image.hpp"
#include "phone/ViewSpec.hpp"

namespace mireth::phone {

/// Main thread only.
class ImageStore {
  public:
    /// `scale` is pixels per point of the window's screen.
    explicit ImageStore(double scale) : scale_(scale) {}

    double scale() const noexcept { return scale_; }
    /// The picture; copies share one bitmap. Throws ScenarioError when it cannot be read.
    platform::Image load(const ImageSource& source);
    /// Counts a bitmap of `size` points that is about to be made, or is no more when `isMade` is false.
    /// Throws ScenarioError when the scenario's bitmaps together would be too large.
    void account(Size size, bool isMade);

  private:
    void reserve(std::size_t pixels);

    const double scale_;
    std::map<std::string, platform::Image> files_;
    std::size_t pixelsInUse_ = 0;
};

}  // namespace mireth::phone
