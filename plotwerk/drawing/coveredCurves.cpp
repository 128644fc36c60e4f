#include "plotwerk/drawing/coveredCurves.h"

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/drawing/curvePoints.h"

#include <algorithm>

namespace plotwerk {

static constexpr double lengthOfPoint = 5; // of a line that weighs as much as a symbol

std::vector<double> coveredBy(const std::vector<Box> &boxes, const std::vector<DrawnCurve> &curves,
                              const ScaledFrame &frame) {
    std::vector<double> covered(boxes.size(), 0);
    if (boxes.empty()) return covered;
    for (const DrawnCurve &curve : curves) {
        const CurveLook &look = curve.column->look;
        Path points = pointsOnPaper(curve, frame);
        if (look.symbols || !look.line) {
            for (std::size_t i = 0; i < boxes.size(); ++i)
                covered[i] += static_cast<double>(std::ranges::count_if(
                    points, [&](const Point &p) { return boxes[i].contains(p); }));
        }
        if (!look.line && !look.filled) continue;
        const Path path = reducedPath(
            clippedPath(linePath(std::move(points), curve, frame), frame.box().grownBy(1)));
        for (std::size_t i = 0; i < boxes.size(); ++i)
            covered[i] += lengthOf(clippedPath(path, boxes[i])) / lengthOfPoint;
    }
    return covered;
}

} // namespace plotwerk
