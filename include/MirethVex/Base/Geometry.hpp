// Points, sizes, rectangles and transforms, in the sense of 2-D layers: x to the right, y downwards. Lengths
// are in points where nothing else is said. Nothing checks the values: they may be negative or not finite.
#pragma once

#include <array>
#include <optional>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(const Rect&) const = default;

    Point origin() const { return {x, y}; }
    Size size() const { return {width, height}; }
    /// The left and the upper edge belong to it, the others do not.
    bool contains(Point point) const {
        return point.x >= x && point.x < x + width && point.y >= y && point.y < y + height;
    }
};

/// Maps (x, y) to (a·x + c·y + tx, b·x + d·y + ty).
struct MIRETH_EXPORT AffineTransform {
    double a = 1;
    double b = 0;
    double c = 0;
    double d = 1;
    double tx = 0;
    double ty = 0;
    bool operator==(const AffineTransform&) const = default;

    static AffineTransform translation(double x, double y) { return {1, 0, 0, 1, x, y}; }
    static AffineTransform scale(double x, double y) { return {x, 0, 0, y, 0, 0}; }
    /// Turns by `radians`, clockwise as seen on screen (y points down).
    static AffineTransform rotation(double radians);

    /// First this transform, then `next`.
    AffineTransform concatenating(const AffineTransform& next) const;
    /// What undoes this transform. Nothing for one that squeezes the plane into a line or a point, or that
    /// holds a value which is not finite.
    std::optional<AffineTransform> inverted() const;
    Point apply(Point point) const {
        return {a * point.x + c * point.y + tx, b * point.x + d * point.y + ty};
    }
    /// The smallest rectangle that holds the image of `rect`.
    Rect boundingBox(const Rect& rect) const;
};

/// A 4 × 4 matrix of a layer in row-vector form: element [row][column], translation in the last row.
struct MIRETH_EXPORT Transform3D {
    std::array<std::array<double, 4>, 4> m{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    bool operator==(const Transform3D&) const = default;

    static Transform3D identity() { return {}; }
    static Transform3D fromAffine(const AffineTransform& transform);
    bool isIdentity() const { return *this == Transform3D{}; }
    /// The part of the matrix that acts in the plane; depth and perspective are left out.
    AffineTransform affine() const { return {m[0][0], m[0][1], m[1][0], m[1][1], m[3][0], m[3][1]}; }
};

}  // namespace mireth
