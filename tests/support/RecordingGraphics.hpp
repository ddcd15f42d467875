// Graphics that write down what is drawn instead of drawing it.
#pragma once

#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/Platform/Graphics.hpp"

namespace mireth::test {

using DrawLog = std::vector<std::string>;

/// One line an operation.
class RecordingContext final : public platform::GraphicsContext {
  public:
    /// `onEnd` runs when the context goes.
    explicit RecordingContext(DrawLog& log, bool valid = true, std::function<void()> onEnd = {})
        : log_(log), valid_(valid), onEnd_(std::move(onEnd)) {}
    ~RecordingContext() override {
        if (onEnd_) {
            onEnd_();
        }
    }
    RecordingContext(const RecordingContext&) = delete;
    RecordingContext& operator=(const RecordingContext&) = delete;

    bool isValid() const override { return valid_; }
    void saveState() override { add("save"); }
    void restoreState() override { add("restore"); }
    void concatenate(const AffineTransform& t) override {
        add("concatenate", t.a, t.b, t.c, t.d, t.tx, t.ty);
    }
    void clipToRoundedRect(const Rect& r, const platform::CornerRadii& radii) override {
        add("clip", r.x, r.y, r.width, r.height, radii[0]);
    }
    void fillRoundedRect(const Rect& r, const platform::CornerRadii& radii, const Color& c) override {
        add("fill", r.x, r.y, r.width, r.height, "radius", radii[0], "color", c.red, c.green, c.blue,
            c.alpha);
    }
    void strokeInsideRoundedRect(const Rect& r, const platform::CornerRadii&, double width,
                                 const Color& c) override {
        add("border", r.x, r.y, r.width, r.height, "width", width, "color", c.red, c.green, c.blue, c.alpha);
    }
    void strokeLine(Point from, Point to, double width, const Color& c) override {
        add("line", from.x, from.y, to.x, to.y, "width", width, "color", c.red, c.green, c.blue, c.alpha);
    }
    void fillRectWithPattern(const Rect& r, const platform::Image& tile) override {
        add("pattern", r.x, r.y, r.width, r.height, "tile", tile.pixelWidth(), tile.pixelHeight());
    }
    void drawImage(const platform::Image& image, const Rect& s, const Rect& d,
                   platform::Interpolation) override {
        add("image", image.pixelWidth(), image.pixelHeight(), "from", s.x, s.y, s.width, s.height, "to", d.x,
            d.y, d.width, d.height);
    }
    void drawShadow(const Rect& r, const platform::CornerRadii&, const Color&, double radius) override {
        add("shadow", r.x, r.y, r.width, r.height, radius);
    }
    void clearRect(const Rect& r) override { add("clear", r.x, r.y, r.width, r.height); }
    void beginGroup() override { add("group"); }
    void endGroup(double opacity) override { add("end group", opacity); }
    void endGroupMasked(double opacity, const std::function<void(GraphicsContext&)>& drawMask) override {
        add("mask");
        drawMask(*this);
        add("end group", opacity);
    }

  private:
    template <class... Parts>
    void add(const Parts&... parts) {
        std::ostringstream line;
        const char* gap = "";
        ((line << gap << parts, gap = " "), ...);
        log_.push_back(line.str());
    }

    DrawLog& log_;
    const bool valid_;
    const std::function<void()> onEnd_;
};

/// Must outlive what it makes. No answer to the contract, on purpose: it draws nothing, so that a test can
/// read what was asked for, in which order, and have any step of it fail.
class RecordingGraphics final : public platform::Graphics {
  public:
    /// What was drawn, by all contexts.
    DrawLog log;
    /// Size, scale, opaqueness and range of each renderer made.
    DrawLog renderers;
    /// The bitmaps that contexts were made on.
    std::vector<platform::BitmapDescription> bitmaps;
    bool hasRenderers = true;
    bool hasBitmapContexts = true;
    bool hasSurfaces = true;
    bool contextsAreValid = true;
    /// Runs when a bitmap context goes.
    std::function<void()> onBitmapContextEnd;
    /// That many renderings throw before one succeeds.
    int failures = 0;

    std::unique_ptr<platform::ImageRenderer> makeImageRenderer(
        Size size, platform::ImageRendererFormat format) override {
        std::ostringstream line;
        line << size.width << "x" << size.height << " scale " << format.scale
             << (format.opaque ? " opaque" : " alpha")
             << (format.preferredRange == platform::ImageRendererFormat::Range::standard ? " standard"
                                                                                         : " extended");
        renderers.push_back(line.str());
        return hasRenderers ? std::make_unique<Renderer>(*this, size) : nullptr;
    }
    std::unique_ptr<platform::GraphicsContext> makeBitmapContext(
        const platform::BitmapDescription& description) override {
        bitmaps.push_back(description);
        return hasBitmapContexts
                   ? std::make_unique<RecordingContext>(log, contextsAreValid, onBitmapContextEnd)
                   : nullptr;
    }

  private:
    class Renderer final : public platform::ImageRenderer {
      public:
        Renderer(RecordingGraphics& graphics, Size size) : graphics_(graphics), size_(size) {}
        platform::Image image(const std::function<void(platform::GraphicsContext&)>& actions) override {
            if (graphics_.failures > 0) {
                --graphics_.failures;
                throw std::runtime_error("no memory for the surface");
            }
            RecordingContext context(graphics_.log, graphics_.contextsAreValid);
            actions(context);
            if (!graphics_.hasSurfaces) {
                return {};
            }
            return platform::Image::filled(static_cast<std::size_t>(size_.width),
                                           static_cast<std::size_t>(size_.height), 0xFF000000U);
        }

      private:
        RecordingGraphics& graphics_;
        const Size size_;
    };
};

}  // namespace mireth::test
