#include "plotwerk/drawing/coveredCurves.h"

#include "plotwerk/drawing/curvePoints.h"

#include <algorithm>

namespace plotwerk {

static constexpr double lengthOfPoint = 5; // of a line that weighs as much as a symbol
static constexpr std::size_t enoughPoints = 20000;

std::vector<CurveInk> inkOf(const std::vector<DrawnCurve> &curves, const ScaledFrame &frame) {
    std::vector<CurveInk> inks;
    for (const DrawnCurve &curve : curves) {
        const CurveLook &look = curve.column->look;
        Path points = pointsOnPaper(curve, frame);
        const std::size_t step = points.size() / enoughPoints + 1;
        for (std::size_t i = 0; i * step < points.size(); ++i) points[i] = points[i * step];
        points.resize((points.size() + step - 1) / step);

        CurveInk &ink = inks.emplace_back();
        ink.pointsPerMark = static_cast<double>(step);
        if (look.symbols || !look.line) ink.marks = points;
        if (look.line || look.filled)
            ink.line = reducedPath(
                clippedPath(linePath(std::move(points), curve, frame), frame.box().grownBy(1)));
    }
    return inks;
}

double coveredBy(const Box &box, const std::vector<CurveInk> &inks) {
    double covered = 0;
    for (const CurveInk &ink : inks) {
        const auto marks =
            std::ranges::count_if(ink.marks, [&](const Point &p) { return box.contains(p); });
        covered += static_cast<double>(marks) * ink.pointsPerMark;
        covered += lengthOf(clippedPath(ink.line, box)) / lengthOfPoint;
    }
    return covered;
}

} // namespace plotwerk
