// A colour of the standard RGB space.
#pragma once

namespace mireth {

/// Red, green, blue and alpha in sRGB (IEC 61966-2-1), each from 0 to 1, not premultiplied. Drawing takes
/// what lies outside for the nearer end, and what is not a number for 0.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    bool operator==(const Color&) const = default;

    static constexpr Color gray(double level) { return {level, level, level, 1}; }
};

}  // namespace mireth
