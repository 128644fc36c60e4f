// geometry.h - points and boxes on paper, in points of 1/72 inch.
//
// x runs to the right, y downwards, as cairo has it; (0, 0) is the upper left corner of the frame.
#ifndef PLOTWERK_DRAWING_GEOMETRY_H
#define PLOTWERK_DRAWING_GEOMETRY_H

#include <algorithm>
#include <cmath>
#include <limits>

namespace plotwerk {

// A path is a list of points; a point with NaN breaks it.
struct Point {
    double x = 0;
    double y = 0;
};

constexpr Point pathBreak{std::numeric_limits<double>::quiet_NaN(),
                          std::numeric_limits<double>::quiet_NaN()};

inline bool isBreak(const Point &p) {
    return std::isnan(p.x) || std::isnan(p.y);
}

struct Box {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    double width() const { return right - left; }
    double height() const { return bottom - top; }
    bool contains(const Point &p) const {
        return p.x >= left && p.x <= right && p.y >= top && p.y <= bottom;
    }
    Box grownBy(double margin) const {
        return {left - margin, top - margin, right + margin, bottom + margin};
    }
};

// The smallest box that holds both.
inline Box united(const Box &a, const Box &b) {
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

// The value within low..high; the value for NaN.
inline double limited(double value, double low, double high, double forNaN) {
    return std::isnan(value) ? forNaN : std::clamp(value, low, high);
}

constexpr double pointsPerCm = 72 / 2.54;

} // namespace plotwerk

#endif
