#include "platforms/linux/media/CairoContext.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platforms/linux/media/CairoImage.hpp"
#include "platforms/linux/media/CairoPath.hpp"
#include "platforms/linux/media/CairoShadow.hpp"

namespace mireth::platform {

namespace {

bool isInvertible(const cairo_matrix_t& matrix) {
    const double determinant = matrix.xx * matrix.yy - matrix.yx * matrix.xy;
    return std::isfinite(determinant) && std::isfinite(1 / determinant) && std::isfinite(matrix.x0) &&
           std::isfinite(matrix.y0);
}

/// True for a point that Cairo's stroker can follow.
bool isNear(cairo_t* cairo, Point point) {
    cairo_user_to_device(cairo, &point.x, &point.y);
    constexpr double far = 1e6;
    return std::abs(point.x) < far && std::abs(point.y) < far;
}

}  // namespace

CairoContext::CairoContext(cairo_surface_t* surface, std::shared_ptr<BlockCoverages> blocks)
    : cairo_(cairo_create(surface)),
      blocks_(std::in_place, surface, std::move(blocks)),
      clip_(blocks_->area()) {}

CairoContext::CairoContext(const CairoContext& outer)
    : cairo_(cairo_reference(outer.cairo_.get())), collapsed_(outer.collapsed_) {}

CairoContext::~CairoContext() {
    while (popGroup() != nullptr) {
    }
    while (!scopes_.empty()) {
        restoreState();
    }
}

bool CairoContext::isValid() const {
    return cairo_status(cairo_.get()) == CAIRO_STATUS_SUCCESS;
}

bool CairoContext::drawsNothing() const {
    return collapsed_ || !isValid();
}

cairo_matrix_t CairoContext::matrix() const {
    cairo_matrix_t matrix;
    cairo_get_matrix(cairo_.get(), &matrix);
    return matrix;
}

void CairoContext::saveState() {
    cairo_save(cairo_.get());
    scopes_.push_back({false, collapsed_, clip_});
}

void CairoContext::popScope() {
    collapsed_ = scopes_.back().wasCollapsed;
    clip_ = scopes_.back().clip;
    scopes_.pop_back();
}

void CairoContext::restoreState() {
    if (scopes_.empty() || scopes_.back().isGroup) {
        return;
    }
    popScope();
    cairo_restore(cairo_.get());
}

void CairoContext::concatenate(const AffineTransform& transform) {
    if (drawsNothing()) {
        return;
    }
    cairo_matrix_t matrix = this->matrix();
    cairo_matrix_t own;
    cairo_matrix_init(&own, transform.a, transform.b, transform.c, transform.d, transform.tx, transform.ty);
    cairo_matrix_multiply(&matrix, &own, &matrix);
    if (!isInvertible(own) || !isInvertible(matrix)) {
        collapsed_ = true;
        return;
    }
    cairo_set_matrix(cairo_.get(), &matrix);
}

void CairoContext::clipToRoundedRect(const Rect& rect, const CornerRadii& radii) {
    if (drawsNothing()) {
        return;
    }
    const auto visible = visiblePart(cairo_.get(), rect);
    if (!visible) {
        // An empty clip; Cairo has a cheaper way to draw nothing.
        collapsed_ = true;
        return;
    }
    addRoundedRect(cairo_.get(), *visible, radii);
    cairo_clip(cairo_.get());
    narrowClip(rect, radii);
}

void CairoContext::narrowClip(const Rect& rect, const CornerRadii& radii) {
    const auto pixels = clip_ && radii == CornerRadii{} ? DeviceRect::inPixels(rect, matrix()) : std::nullopt;
    clip_ = pixels ? std::optional(clip_->intersected(*pixels)) : std::nullopt;
}

bool CairoContext::drawDirectly(const OpaqueBlocks::Block& block) {
    return clip_ && blocks_->draw(block, matrix(), *clip_);
}

void CairoContext::fillRoundedRect(const Rect& rect, const CornerRadii& radii, const Color& color) {
    if (drawsNothing() || drawDirectly({rect, radii, 0, color})) {
        return;
    }
    const auto visible = visiblePart(cairo_.get(), rect);
    if (!visible) {
        return;
    }
    setColor(cairo_.get(), color);
    addRoundedRect(cairo_.get(), *visible, radii);
    cairo_fill(cairo_.get());
}

void CairoContext::strokeInsideRoundedRect(const Rect& rect, const CornerRadii& radii, double width,
                                           const Color& color) {
    if (drawsNothing() || !(width > 0) || drawDirectly({rect, radii, width, color})) {
        return;
    }
    const auto visible = visiblePart(cairo_.get(), rect);
    if (!visible) {
        return;
    }
    setColor(cairo_.get(), color);
    fillRing(cairo_.get(), *visible, radii, width);
}

void CairoContext::strokeLine(Point from, Point to, double width, const Color& color) {
    if (drawsNothing() || !(width > 0) || !std::isfinite(width) || !isNear(cairo_.get(), from) ||
        !isNear(cairo_.get(), to)) {
        return;
    }
    setColor(cairo_.get(), color);
    cairo_set_line_width(cairo_.get(), std::min(width, 1e6));
    cairo_move_to(cairo_.get(), from.x, from.y);
    cairo_line_to(cairo_.get(), to.x, to.y);
    cairo_stroke(cairo_.get());
}

void CairoContext::fillRectWithPattern(const Rect& rect, const Image& tile) {
    if (!drawsNothing()) {
        fillWithCairoPattern(cairo_.get(), rect, tile);
    }
}

void CairoContext::drawImage(const Image& image, const Rect& source, const Rect& destination,
                             Interpolation interpolation) {
    if (!drawsNothing()) {
        drawCairoImage(cairo_.get(), image, source, destination, interpolation);
    }
}

void CairoContext::drawShadow(const Rect& rect, const CornerRadii& radii, const Color& color, double radius) {
    if (!drawsNothing()) {
        drawCairoShadow(cairo_.get(), rect, radii, color, radius);
    }
}

void CairoContext::clearRect(const Rect& rect) {
    if (drawsNothing()) {
        return;
    }
    const auto visible = visiblePart(cairo_.get(), rect);
    if (!visible) {
        return;
    }
    cairo_set_operator(cairo_.get(), CAIRO_OPERATOR_CLEAR);
    cairo_rectangle(cairo_.get(), visible->x, visible->y, visible->width, visible->height);
    cairo_fill(cairo_.get());
    cairo_set_operator(cairo_.get(), CAIRO_OPERATOR_OVER);
}

void CairoContext::beginGroup() {
    cairo_push_group(cairo_.get());
    scopes_.push_back({true, collapsed_, clip_});
    clip_.reset();
}

CairoPattern CairoContext::popGroup() {
    if (std::ranges::none_of(scopes_, &Scope::isGroup)) {
        return nullptr;
    }
    while (!scopes_.back().isGroup) {
        restoreState();
    }
    popScope();
    return CairoPattern(cairo_pop_group(cairo_.get()));
}

void CairoContext::endGroup(double opacity) {
    const CairoPattern picture = popGroup();
    if (picture == nullptr || drawsNothing()) {
        return;
    }
    cairo_set_source(cairo_.get(), picture.get());
    cairo_paint_with_alpha(cairo_.get(), clampedToUnit(opacity));
}

void CairoContext::endGroupMasked(double opacity, const std::function<void(GraphicsContext&)>& drawMask) {
    const CairoPattern picture = popGroup();
    if (picture == nullptr) {
        return;
    }
    cairo_push_group_with_content(cairo_.get(), CAIRO_CONTENT_ALPHA);
    scopes_.push_back({true, collapsed_, clip_});
    clip_.reset();
    saveState();
    if (drawMask) {
        CairoContext inner(*this);
        drawMask(inner);
    }
    restoreState();
    fade(opacity);
    const CairoPattern mask = popGroup();
    if (mask == nullptr || drawsNothing()) {
        return;
    }
    cairo_set_source(cairo_.get(), picture.get());
    cairo_mask(cairo_.get(), mask.get());
}

void CairoContext::fade(double opacity) {
    cairo_set_source_rgba(cairo_.get(), 0, 0, 0, clampedToUnit(opacity));
    cairo_set_operator(cairo_.get(), CAIRO_OPERATOR_DEST_IN);
    cairo_paint(cairo_.get());
    cairo_set_operator(cairo_.get(), CAIRO_OPERATOR_OVER);
}

}  // namespace mireth::platform
