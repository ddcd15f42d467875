// A colour of the device's standard RGB range.
#pragma once

namespace mireth {

/// Red, green, blue and alpha, each from 0 to 1, not premultiplied.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    bool operator==(const Color&) const = default;

    static constexpr Color gray(double level) { return {level, level, level, 1}; }
};

}  // namespace mireth
