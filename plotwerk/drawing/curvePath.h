// curvePath.h - paths of curves on paper: stepped, clipped, and cut down to what can be seen.
#ifndef PLOTWERK_DRAWING_CURVEPATH_H
#define PLOTWERK_DRAWING_CURVEPATH_H

#include "plotwerk/drawing/geometry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

namespace plotwerk {

using Path = std::vector<Point>;

// Of all its lines, in points.
double lengthOf(std::span<const Point> path);

// From each point level to the next one's x, then up or down to it.
Path steppedPath(const Path &path);

// What of the path's lines lies in the box; breaks where it leaves. Single points stay if they are
// inside.
Path clippedPath(const Path &path, const Box &box);

// A polygon between the path and the level line y = base, part by part, cut at the box: closed
// rings, one after the other.
std::vector<Path> areasBetween(const Path &path, double base, const Box &box);

constexpr double pathResolution = 0.06; // in points: 1200 dpi

// Makes a path of the points that are added to it, breaks among them. Of neighbours in a column of
// that width only the first, the lowest, the highest and the last stay, in their order; of breaks
// in a row one.
class ColumnExtremes {
  public:
    explicit ColumnExtremes(double columnWidth) : width(columnWidth) {}

    void add(const Point &p) {
        ++count;
        const double place =
            isBreak(p) ? pathBreak.x : std::floor(p.x / width); // NaN: in no column
        if (place == column) {
            last = {p, count};
            if (p.y < lowest.p.y) lowest = last;
            if (p.y > highest.p.y) highest = last;
        } else {
            beginColumn(p, place);
        }
    }

    // Whether the points between the last one added and p can be left out, none of them lying
    // further than `beyond` above or below both: they would change nothing, or less than 1/16 of
    // the width.
    bool covers(const Point &p, double beyond) const {
        if (std::floor(p.x / width) != column) return false;
        const auto [low, high] = std::minmax(last.p.y, p.y);
        const double unseen = width / 16;
        return low - beyond >= std::min(lowest.p.y, p.y) - unseen &&
               high + beyond <= std::max(highest.p.y, p.y) + unseen;
    }

    // All that was added.
    Path take();

  private:
    struct Placed {
        Point p;
        std::size_t index = 0;
    };

    void beginColumn(const Point &p, double place);
    void endColumn();

    double width;
    std::size_t count = 0;
    double column = pathBreak.x; // of the neighbours that are added
    Placed first;
    Placed lowest;
    Placed highest;
    Placed last;
    Path kept;
};

// The same lines in fewer points: the extremes of columns as wide as the resolution, without points
// that lie within half the resolution of the line between others.
Path reducedPath(const Path &path, double resolution = pathResolution);

} // namespace plotwerk

#endif
