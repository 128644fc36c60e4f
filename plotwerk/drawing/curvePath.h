// curvePath.h - paths of curves on paper: stepped, clipped, and cut down to what can be seen.
#ifndef PLOTWERK_DRAWING_CURVEPATH_H
#define PLOTWERK_DRAWING_CURVEPATH_H

#include "plotwerk/drawing/geometry.h"

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

// The same lines in fewer points. Of neighbours in a column as wide as the resolution only the
// first, the lowest, the highest and the last stay; points that lie within half the resolution of
// the line between others go.
Path reducedPath(const Path &path);

} // namespace plotwerk

#endif
