#include "plotwerk/drawing/coveredCurves.h"

#include "plotwerk/drawing/curvePoints.h"

#include <algorithm>
#include <utility>

namespace plotwerk {

static constexpr double lengthOfPoint = 5; // of a line that weighs as much as a symbol
static constexpr std::size_t enoughPoints = 20000;

// Leaves every step-th point, and the breaks between those left.
static void thin(Path &points, std::size_t step) {
    std::size_t index = 0;
    bool broken = false;
    Path left;
    for (const Point &p : points) {
        broken = broken || isBreak(p);
        if (isBreak(p) || index++ % step != 0) continue;
        if (broken && !left.empty()) left.push_back(pathBreak);
        broken = false;
        left.push_back(p);
    }
    points = std::move(left);
}

std::vector<CurveInk> inkOf(const std::vector<DrawnCurve> &curves, const ScaledFrame &frame) {
    std::vector<CurveInk> inks;
    for (const DrawnCurve &curve : curves) {
        const CurveLook &look = curve.column->look;
        Path points = pointsOnPaper(curve, frame);
        const auto count = static_cast<std::size_t>(
            std::ranges::count_if(points, [](const Point &p) { return !isBreak(p); }));
        const std::size_t step = count / enoughPoints + 1;
        thin(points, step);

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
