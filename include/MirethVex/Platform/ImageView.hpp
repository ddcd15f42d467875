// A view that shows one image.
#pragma once

#include <optional>

#include "MirethVex/Platform/Image.hpp"
#include "MirethVex/Platform/View.hpp"

namespace mireth::platform {

/// Main thread only. Setting the image also sets the layer's contents.
class MIRETH_EXPORT ImageView : public View {
  public:
    explicit ImageView(const ViewClass& viewClass = ViewClass::imageView()) : View(viewClass) {}

    /// Without a bitmap until one is set.
    const Image& image() const noexcept { return image_; }
    void setImage(Image image);

    /// With a tint the image's alpha is drawn in one colour; its own colours do not show.
    const std::optional<Color>& tint() const noexcept { return tint_; }
    void setTint(std::optional<Color> tint);

    bool usesTintForImage() const noexcept { return tint_.has_value() && image_.hasBitmap(); }
    /// The image in its tint, made on first use and kept until the image or the tint changes.
    const Image& tintedImage() const;

  private:
    Image image_;
    std::optional<Color> tint_;
    mutable Image tinted_;
};

}  // namespace mireth::platform
