// Surfaces that their owner forgets, in the library that draws text and frames.
#include <cairo.h>

int main() {
    int failures = 0;
    // More than one: the last one's address may still stand in a register.
    for (int i = 0; i < 10; ++i) {
        if (cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 16, 16) == nullptr) {
            ++failures;
        }
    }
    return failures;
}
