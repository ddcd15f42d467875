// Owning handles of Cairo's objects. Private to this folder.
#pragma once

#include <cairo.h>

#include <memory>

namespace mireth::platform {

struct CairoDeleter {
    void operator()(cairo_t* context) const noexcept { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
    void operator()(cairo_pattern_t* pattern) const noexcept { cairo_pattern_destroy(pattern); }
};

using CairoHandle = std::unique_ptr<cairo_t, CairoDeleter>;
using CairoSurface = std::unique_ptr<cairo_surface_t, CairoDeleter>;
using CairoPattern = std::unique_ptr<cairo_pattern_t, CairoDeleter>;

}  // namespace mireth::platform
