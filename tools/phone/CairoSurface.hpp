// Owners of Cairo's objects, for the files that draw.
#pragma once

#include <cairo.h>

#include <memory>

namespace mireth::phone {

struct CairoRelease {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
};

using CairoSurface = std::unique_ptr<cairo_surface_t, CairoRelease>;
using Cairo = std::unique_ptr<cairo_t, CairoRelease>;
using CairoFontOptions = std::unique_ptr<cairo_font_options_t, CairoRelease>;

}  // namespace mireth::phone
