// Text laid out by Pango and drawn by Cairo, in the screen's pixels.
#include "phone/TextDrawing.hpp"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "phone/CairoSurface.hpp"

namespace mireth::phone {

namespace {

struct PangoRelease {
    void operator()(PangoLayout* layout) const { g_object_unref(layout); }
    void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
};
using Layout = std::unique_ptr<PangoLayout, PangoRelease>;
using FontDescription = std::unique_ptr<PangoFontDescription, PangoRelease>;

int toPango(double points) {
    return static_cast<int>(std::lround(points * PANGO_SCALE));
}

PangoAlignment toPango(platform::TextAlignment alignment) {
    switch (alignment) {
        case platform::TextAlignment::center:
            return PANGO_ALIGN_CENTER;
        case platform::TextAlignment::right:
            return PANGO_ALIGN_RIGHT;
        case platform::TextAlignment::left:
        case platform::TextAlignment::justified:
        case platform::TextAlignment::natural:
            break;
    }
    return PANGO_ALIGN_LEFT;
}

/// Outlines as they are: hinting would place glyphs differently at every scale.
void setFontOptions(PangoLayout* layout) {
    const CairoFontOptions options(cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(pango_layout_get_context(layout), options.get());
}

/// In pixels: under a scaled context Pango 1.50 takes lines to be lower than they are.
Layout makeLayout(cairo_t* context, const std::string& text, const TextStyle& style, double scale) {
    Layout layout(pango_cairo_create_layout(context));
    setFontOptions(layout.get());
    // The name may end in words for weight and slant, such as "Inter Semi-Bold".
    const FontDescription font(pango_font_description_from_string(style.font.name.c_str()));
    pango_font_description_set_absolute_size(font.get(), style.font.pointSize * scale * PANGO_SCALE);
    pango_layout_set_font_description(layout.get(), font.get());
    pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
    return layout;
}

/// `room` is in pixels.
Layout layOut(cairo_t* context, const std::string& text, const TextStyle& style, Size room, double scale) {
    Layout layout = makeLayout(context, text, style, scale);
    pango_layout_set_alignment(layout.get(), toPango(style.alignment));
    pango_layout_set_justify(layout.get(), style.alignment == platform::TextAlignment::justified);
    pango_layout_set_width(layout.get(), toPango(room.width));
    pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    if (style.wraps) {
        // At least one line shows, however low the view is.
        pango_layout_set_height(layout.get(), toPango(std::max(room.height, 1.0)));
        pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    } else {
        pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    }
    return layout;
}

/// In pixels, as the rest.
double topOf(PangoLayout* layout, const TextStyle& style, double height, double scale) {
    if (style.fromTop) {
        return style.inset * scale;
    }
    int textHeight = 0;
    pango_layout_get_size(layout, nullptr, &textHeight);
    return (height - static_cast<double>(textHeight) / PANGO_SCALE) / 2;
}

void draw(cairo_surface_t* surface, const std::string& text, const TextStyle& style, Size pixels,
          double scale) {
    const Cairo context(cairo_create(surface));
    const double inset = style.inset * scale;
    const Size room{std::max(pixels.width - 2 * inset, 1.0), pixels.height - (style.fromTop ? 2 * inset : 0)};
    const Layout layout = layOut(context.get(), text, style, room, scale);
    cairo_set_source_rgba(context.get(), style.color.red, style.color.green, style.color.blue,
                          style.color.alpha);
    cairo_move_to(context.get(), inset, topOf(layout.get(), style, pixels.height, scale));
    pango_cairo_show_layout(context.get(), layout.get());
    cairo_surface_flush(surface);
}

}  // namespace

Size measureLine(const std::string& text, const TextStyle& style, double scale) {
    const CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1));
    const Cairo context(cairo_create(surface.get()));
    // At the scale that it will be drawn at: glyphs are set on whole pixels, so a line's width depends on it.
    const Layout layout = makeLayout(context.get(), text, style, scale);
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    int width = 0;
    int height = 0;
    pango_layout_get_size(layout.get(), &width, &height);
    return {std::ceil(static_cast<double>(width) / PANGO_SCALE / scale),
            std::ceil(static_cast<double>(height) / PANGO_SCALE / scale)};
}

platform::Image drawText(const std::string& text, const TextStyle& style, Size size, double scale) {
    const auto width = static_cast<int>(std::ceil(size.width * scale));
    const auto height = static_cast<int>(std::ceil(size.height * scale));
    if (text.empty() || width <= 0 || height <= 0) {
        return {};
    }
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    {
        const CairoSurface surface(cairo_image_surface_create_for_data(
            reinterpret_cast<unsigned char*>(pixels.data()), CAIRO_FORMAT_ARGB32, width, height, width * 4));
        draw(surface.get(), text, style, {size.width * scale, size.height * scale}, scale);
    }
    return {static_cast<std::size_t>(width), static_cast<std::size_t>(height), std::move(pixels), scale};
}

}  // namespace mireth::phone
