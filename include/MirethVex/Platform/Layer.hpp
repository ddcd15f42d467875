// A node of the retained layer tree: what a view looks like, and where.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "MirethVex/Base/Color.hpp"
#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/Graphics.hpp"
#include "MirethVex/Platform/Image.hpp"

namespace mireth::platform {

class Layer;

enum class ContentsGravity {
    resize,
    resizeAspect,
    resizeAspectFill,
    center,
    top,
    bottom,
    left,
    right,
    topLeft,
    topRight,
    bottomLeft,
    bottomRight
};

/// Bits of `LayerAppearance::maskedCorners`: the corners that `cornerRadius` rounds.
enum CornerMask : std::uint8_t {
    topLeftCorner = 1,
    topRightCorner = 2,
    bottomLeftCorner = 4,
    bottomRightCorner = 8,
    allCorners = 15
};

/// Bits of `LayerRendering::edgeAntialiasingMask`.
enum EdgeMask : std::uint8_t { leftEdge = 1, rightEdge = 2, bottomEdge = 4, topEdge = 8, allEdges = 15 };

/// How an image is resampled when it is drawn larger or smaller.
enum class LayerFilter { linear, nearest, trilinear };

// Lengths are points of the layer's own coordinates where nothing else is said; unit coordinates go from 0 to
// 1 over the bounds or the contents. Opacities lie between 0 and 1: what is above counts as 1, what is below
// or not a number as 0. Widths and radii that are not positive draw nothing and round nothing.

/// A rounded rectangle that stands in for the layer's own outline when its shadow is drawn.
struct ShadowPath {
    Rect rect;
    double cornerRadius = 0;
    bool operator==(const ShadowPath&) const = default;
};

struct LayerContent {
    /// Drawn into the bounds as the gravity says; none without a bitmap.
    Image contents;
    /// The part of the contents that is drawn, in unit coordinates.
    Rect contentsRect{0, 0, 1, 1};
    /// The part that stretches when the contents are resized, in unit coordinates.
    Rect contentsCenter{0, 0, 1, 1};
};

struct LayerAppearance {
    bool allowsEdgeAntialiasing = false;
    /// True: the layer and its sublayers fade as one picture. False: each by itself.
    bool allowsGroupOpacity = true;
    std::optional<Color> borderColor;
    /// The border lies inside the bounds, above the sublayers.
    double borderWidth = 0;
    ContentsGravity contentsGravity = ContentsGravity::resize;
    /// False: not drawn while its back is turned to the viewer.
    bool isDoubleSided = true;
    bool hidden = false;
    /// Its alpha cuts out the layer and its sublayers; in the layer's coordinates.
    std::shared_ptr<const Layer> mask;
    std::uint8_t maskedCorners = allCorners;
    /// True: sublayers are clipped to the rounded bounds.
    bool masksToBounds = false;
    /// Of the layer with its sublayers.
    double opacity = 1;
    std::optional<Color> shadowColor = Color{0, 0, 0, 1};
    /// To the right and down.
    Size shadowOffset{0, -3};
    /// 0: no shadow. A layer casts none either when it masks to its bounds, or shows nothing and has no path.
    double shadowOpacity = 0;
    std::optional<ShadowPath> shadowPath;
    /// The standard deviation of the blur.
    double shadowRadius = 3;
    /// Values of the toolkit's own, carried along and not interpreted.
    std::map<std::string, std::string> style;
    /// Of the corners in `maskedCorners`; at most half the shorter side is drawn.
    double cornerRadius = 0;
    std::optional<Color> backgroundColor;
};

/// Named filters of the toolkit. They are carried along and not drawn.
struct LayerFilters {
    std::vector<std::string> backgroundFilters;
    std::string compositingFilter;
    std::vector<std::string> filters;
    LayerFilter magnificationFilter = LayerFilter::linear;
    double minificationFilterBias = 0;
    LayerFilter minificationFilter = LayerFilter::linear;
};

struct LayerRendering {
    bool opaque = false;
    std::uint8_t edgeAntialiasingMask = allEdges;
    /// True: sublayers are placed with y pointing up.
    bool isGeometryFlipped = false;
    bool drawsAsynchronously = false;
    bool shouldRasterize = false;
    double rasterizationScale = 1;
};

struct LayerGeometry {
    /// Carried along and not drawn.
    double anchorPointZ = 0;
    /// The point of the bounds that lies at `position`, in unit coordinates.
    Point anchorPoint{0.5, 0.5};
    /// The layer's own coordinates.
    Rect bounds;
    /// Pixels of the contents per point.
    double contentsScale = 1;
    /// Where the anchor point lies in the superlayer.
    Point position;
    /// Among siblings a higher value is nearer to the viewer; equal ones stand in list order.
    double zPosition = 0;
    bool operator==(const LayerGeometry&) const = default;
};

struct LayerTransform {
    /// Acts about the anchor point.
    Transform3D transform;
    /// Acts on the sublayers about the layer's anchor point.
    Transform3D sublayerTransform;
    bool operator==(const LayerTransform&) const = default;
};

/// A drawable node. Main thread only while it belongs to a live view; a detached copy may be used by one
/// thread at a time.
class MIRETH_EXPORT Layer {
  public:
    LayerContent content;
    LayerAppearance appearance;
    LayerFilters filters;
    LayerRendering rendering;
    LayerGeometry geometry;
    LayerTransform transform;

    /// Back to front.
    const std::vector<std::shared_ptr<Layer>>& sublayers() const noexcept { return sublayers_; }
    /// In front of the others. Null is ignored. The layer itself must not be below it.
    void addSublayer(std::shared_ptr<Layer> sublayer);
    void removeAllSublayers() noexcept { sublayers_.clear(); }
    void reserveSublayers(std::size_t count) { sublayers_.reserve(count); }

    /// The smallest rectangle of the superlayer that holds the transformed bounds.
    Rect frame() const;
    /// Moves and resizes the layer so that, but for its transform, it fills `frame`.
    void setFrame(const Rect& frame);

    /// Maps the layer's coordinates to its superlayer's.
    AffineTransform transformToSuperlayer() const;

    /// Draws the layer and its sublayers as if it were the root: its bounds' origin at the context's origin,
    /// its own position and transform left out.
    void render(GraphicsContext& context) const;

  private:
    std::vector<std::shared_ptr<Layer>> sublayers_;
};

}  // namespace mireth::platform
