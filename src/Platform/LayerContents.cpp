#include "Platform/LayerContents.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "Platform/LayerShape.hpp"

namespace mireth::platform {

namespace {

constexpr Rect whole{0, 0, 1, 1};

/// The drawn part in points, as if nothing had to be scaled.
Size naturalSize(const Layer& layer) {
    const double given = layer.geometry.contentsScale;
    const double scale = std::isfinite(given) && given > 0 ? given : 1.0;
    const Rect& part = layer.content.contentsRect;
    return {static_cast<double>(layer.content.contents.pixelWidth()) * part.width / scale,
            static_cast<double>(layer.content.contents.pixelHeight()) * part.height / scale};
}

bool stretches(ContentsGravity gravity) {
    return gravity == ContentsGravity::resize || gravity == ContentsGravity::resizeAspect ||
           gravity == ContentsGravity::resizeAspectFill;
}

Size placedSize(ContentsGravity gravity, const Rect& bounds, const Size& natural) {
    if (!stretches(gravity)) {
        return natural;
    }
    if (gravity == ContentsGravity::resize) {
        return bounds.size();
    }
    const double horizontal = bounds.width / natural.width;
    const double vertical = bounds.height / natural.height;
    const double scale = gravity == ContentsGravity::resizeAspect ? std::min(horizontal, vertical)
                                                                  : std::max(horizontal, vertical);
    return {natural.width * scale, natural.height * scale};
}

/// 0 at the left or the top, 1 at the right or the bottom, ½ in the middle.
Point alignment(ContentsGravity gravity) {
    switch (gravity) {
        case ContentsGravity::top:
            return {0.5, 0};
        case ContentsGravity::bottom:
            return {0.5, 1};
        case ContentsGravity::left:
            return {0, 0.5};
        case ContentsGravity::right:
            return {1, 0.5};
        case ContentsGravity::topLeft:
            return {0, 0};
        case ContentsGravity::topRight:
            return {1, 0};
        case ContentsGravity::bottomLeft:
            return {0, 1};
        case ContentsGravity::bottomRight:
            return {1, 1};
        case ContentsGravity::resize:
        case ContentsGravity::resizeAspect:
        case ContentsGravity::resizeAspectFill:
        case ContentsGravity::center:
            break;
    }
    return {0.5, 0.5};
}

Interpolation interpolationFor(const Layer& layer, const Rect& place) {
    const auto natural = static_cast<double>(layer.content.contents.pixelWidth());
    const bool magnified = place.width > natural * layer.content.contentsRect.width;
    const LayerFilter filter =
        magnified ? layer.filters.magnificationFilter : layer.filters.minificationFilter;
    return filter == LayerFilter::nearest ? Interpolation::nearest : Interpolation::linear;
}

/// One axis of a picture cut in three: the ends keep their size, the middle stretches.
struct Cuts {
    /// Begin and length of each third within the part, 0 to 1.
    std::array<std::array<double, 2>, 3> source{};
    /// Where the thirds begin and end in the layer.
    std::array<double, 4> place{};
};

Cuts cut(double centerBegin, double centerLength, double pixels, double natural, double begin,
         double length) {
    const double first = std::clamp(centerBegin, 0.0, 1.0);
    const double second = std::clamp(centerBegin + centerLength, first, 1.0);
    Cuts cuts;
    cuts.source = {{{0, first}, {first, second - first}, {second, 1 - second}}};
    if (second - first < 1e-6) {
        // A centre without width stretches the pixel at the cut.
        cuts.source[1] = {std::min(first, 1 - 1 / pixels), 1 / pixels};
    }
    const double ends = (first + 1 - second) * natural;
    const double shrink = ends > length ? length / ends : 1.0;
    // Whole points leave no soft seam between the parts.
    const double firstCut = std::round(begin + first * natural * shrink);
    const double secondCut = std::round(begin + length - (1 - second) * natural * shrink);
    cuts.place = {begin, std::clamp(firstCut, begin, begin + length), 0, begin + length};
    cuts.place[2] = std::clamp(secondCut, cuts.place[1], begin + length);
    return cuts;
}

void drawNineParts(GraphicsContext& context, const Layer& layer, const Rect& place) {
    const Image& image = layer.content.contents;
    const Rect& part = layer.content.contentsRect;
    const Rect& center = layer.content.contentsCenter;
    const Size natural = naturalSize(layer);
    const Cuts across = cut(center.x, center.width, static_cast<double>(image.pixelWidth()) * part.width,
                            natural.width, place.x, place.width);
    const Cuts down = cut(center.y, center.height, static_cast<double>(image.pixelHeight()) * part.height,
                          natural.height, place.y, place.height);
    const Interpolation interpolation = interpolationFor(layer, place);
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            const auto& [sourceX, sourceWidth] = across.source[column];
            const auto& [sourceY, sourceHeight] = down.source[row];
            const Rect source{part.x + sourceX * part.width, part.y + sourceY * part.height,
                              sourceWidth * part.width, sourceHeight * part.height};
            const Rect target{across.place[column], down.place[row],
                              across.place[column + 1] - across.place[column],
                              down.place[row + 1] - down.place[row]};
            context.drawImage(image, source, target, interpolation);
        }
    }
}

}  // namespace

Rect contentsPlace(const Layer& layer) {
    const Rect& bounds = layer.geometry.bounds;
    const ContentsGravity gravity = layer.appearance.contentsGravity;
    const Size size = placedSize(gravity, bounds, naturalSize(layer));
    const Point align = alignment(gravity);
    return {bounds.x + (bounds.width - size.width) * align.x,
            bounds.y + (bounds.height - size.height) * align.y, size.width, size.height};
}

void drawContents(GraphicsContext& context, const Layer& layer) {
    const auto& content = layer.content;
    const Rect place = contentsPlace(layer);
    const auto isDrawable = [](const Rect& rect) {
        return isFinite(rect) && rect.width > 0 && rect.height > 0;
    };
    if (!isDrawable(place) || !isDrawable(content.contentsRect) || !isFinite(content.contentsCenter)) {
        return;
    }
    if (content.contentsCenter != whole && stretches(layer.appearance.contentsGravity)) {
        drawNineParts(context, layer, place);
        return;
    }
    context.drawImage(content.contents, content.contentsRect, place, interpolationFor(layer, place));
}

}  // namespace mireth::platform
