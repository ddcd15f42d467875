// A graphics context on a Cairo surface. Private to this folder; CairoGraphics hands it out.
#pragma once

#include <optional>
#include <vector>

#include "MirethVex/Platform/Graphics.hpp"
#include "platforms/linux/media/CairoHandles.hpp"
#include "platforms/linux/media/OpaqueBlocks.hpp"

namespace mireth::platform {

/// Takes any value: what is not finite, or squeezed into a line, is not drawn, and what is huge is drawn as
/// far as the clip shows it. Calls without their counterpart are ignored.
class CairoContext final : public GraphicsContext {
  public:
    /// Keeps a reference to `surface`. `blocks` may be shared with contexts before and after this one.
    explicit CairoContext(cairo_surface_t* surface,
                          std::shared_ptr<BlockCoverages> blocks = std::make_shared<BlockCoverages>());
    ~CairoContext() override;

    bool isValid() const override;
    void saveState() override;
    void restoreState() override;
    void concatenate(const AffineTransform& transform) override;
    void clipToRoundedRect(const Rect& rect, const CornerRadii& radii) override;
    void fillRoundedRect(const Rect& rect, const CornerRadii& radii, const Color& color) override;
    void strokeInsideRoundedRect(const Rect& rect, const CornerRadii& radii, double width,
                                 const Color& color) override;
    void strokeLine(Point from, Point to, double width, const Color& color) override;
    void fillRectWithPattern(const Rect& rect, const Image& tile) override;
    void drawImage(const Image& image, const Rect& source, const Rect& destination,
                   Interpolation interpolation) override;
    void drawShadow(const Rect& rect, const CornerRadii& radii, const Color& color, double radius) override;
    void clearRect(const Rect& rect) override;
    void beginGroup() override;
    void endGroup(double opacity) override;
    void endGroupMasked(double opacity, const std::function<void(GraphicsContext&)>& drawMask) override;

  private:
    /// What a restore or the end of a group returns to.
    struct Scope {
        bool isGroup = false;
        bool wasCollapsed = false;
        std::optional<DeviceRect> clip;
    };

    /// Draws into the same surface as `outer`, with states and groups of its own, which end with it.
    explicit CairoContext(const CairoContext& outer);

    /// True when nothing drawn now could be seen, or drawing would be an error.
    bool drawsNothing() const;
    /// Leaves the innermost group, with the states saved in it; null when there is none.
    CairoPattern popGroup();
    void popScope();
    cairo_matrix_t matrix() const;
    void narrowClip(const Rect& rect, const CornerRadii& radii);
    /// True when the block was drawn without a path.
    bool drawDirectly(const OpaqueBlocks::Block& block);
    /// Multiplies what the innermost group holds.
    void fade(double opacity);

    CairoHandle cairo_;
    std::optional<OpaqueBlocks> blocks_;
    /// The clip, where it consists of whole pixels of the surface itself, not of a group's picture.
    std::optional<DeviceRect> clip_;
    std::vector<Scope> scopes_;
    /// True under a transform that has no area.
    bool collapsed_ = false;
};

}  // namespace mireth::platform
