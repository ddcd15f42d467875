// 2-D drawing: contexts to draw into, and renderers that turn drawing into images.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "MirethVex/Base/Color.hpp"
#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/Image.hpp"

namespace mireth::platform {

/// Radii of the corners of a rectangle in points: top left, top right, bottom right, bottom left. Radii
/// larger than half a side are cut to that.
using CornerRadii = std::array<double, 4>;

enum class Interpolation { nearest, linear };

/// A surface with a current transform, clip and group stack. Coordinates are points with the origin at the
/// top left and y pointing down. One thread at a time. Drawing never fails towards the caller; a context
/// that has run into an error says so in `isValid` and draws nothing more. A shape without an area, a width
/// that is not positive, a place that is not finite and an image without a bitmap draw nothing, without an
/// error.
class GraphicsContext {
  public:
    virtual ~GraphicsContext() = default;

    virtual bool isValid() const = 0;
    /// Keeps transform and clip for the `restoreState` that belongs to it.
    virtual void saveState() = 0;
    /// Ignored without a `saveState` since the group began.
    virtual void restoreState() = 0;
    /// What follows is transformed by `transform` first. One without an inverse hides what follows until the
    /// state is restored.
    virtual void concatenate(const AffineTransform& transform) = 0;
    /// What follows shows inside only, and inside the clips before. An empty one hides what follows.
    virtual void clipToRoundedRect(const Rect& rect, const CornerRadii& radii) = 0;

    virtual void fillRoundedRect(const Rect& rect, const CornerRadii& radii, const Color& color) = 0;
    /// A border of `width` that lies wholly inside `rect`.
    virtual void strokeInsideRoundedRect(const Rect& rect, const CornerRadii& radii, double width,
                                         const Color& color) = 0;
    /// With straight ends at the two points.
    virtual void strokeLine(Point from, Point to, double width, const Color& color) = 0;
    /// Fills `rect` with `tile` repeated from the origin, one tile pixel to one unit.
    virtual void fillRectWithPattern(const Rect& rect, const Image& tile) = 0;
    /// Draws the part `source` (unit coordinates of the image, 0 to 1) scaled into `destination`, upright.
    /// Edges are not blended with what lies outside the part.
    virtual void drawImage(const Image& image, const Rect& source, const Rect& destination,
                           Interpolation interpolation) = 0;
    /// A soft shadow of the rounded rectangle, under whatever is drawn next. `radius` is the blur's standard
    /// deviation in points.
    virtual void drawShadow(const Rect& rect, const CornerRadii& radii, const Color& color,
                            double radius) = 0;
    /// Makes every pixel of `rect` transparent black.
    virtual void clearRect(const Rect& rect) = 0;

    /// What is drawn between these two is composed as one picture with `opacity` (0 to 1). Groups nest; an
    /// end without its beginning is ignored.
    virtual void beginGroup() = 0;
    virtual void endGroup(double opacity) = 0;
    /// As `endGroup`, and multiplied by the alpha of what `drawMask` draws into this context.
    virtual void endGroupMasked(double opacity, const std::function<void(GraphicsContext&)>& drawMask) = 0;
};

struct ImageRendererFormat {
    /// Pixels per point.
    double scale = 1.0;
    /// True: the image starts black and keeps no alpha. False: it starts transparent.
    bool opaque = false;
    enum class Range { standard, extended } preferredRange = Range::standard;
};

/// Renders images of one size. One thread at a time. It may keep its surface between images.
class ImageRenderer {
  public:
    virtual ~ImageRenderer() = default;
    /// Runs `actions`, unless null, on a fresh context that lives no longer, and returns the result; an image
    /// without a bitmap when the surface could not be had or the size cannot be drawn (none, not finite, on
    /// Linux over 16,384 pixels a side). What `actions` throws reaches the caller.
    virtual Image image(const std::function<void(GraphicsContext&)>& actions) = 0;
};

/// The memory behind a bitmap context; pixels as in `Image`, rows `bytesPerRow` apart.
struct BitmapDescription {
    std::span<std::byte> bytes;
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t bytesPerRow = 0;
};

/// Makes contexts and renderers. Any thread.
class Graphics {
  public:
    virtual ~Graphics() = default;
    /// `size` in points; fractions of a pixel are rounded up. Never null: a size that cannot be drawn shows
    /// in the images.
    virtual std::unique_ptr<ImageRenderer> makeImageRenderer(Size size, ImageRendererFormat format) = 0;
    /// A context that draws into memory of the caller's, which must outlive it. Null when the description
    /// does not fit together (no size, rows too short or not of whole words, bytes too few).
    virtual std::unique_ptr<GraphicsContext> makeBitmapContext(const BitmapDescription& description) = 0;
};

}  // namespace mireth::platform
