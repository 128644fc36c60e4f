#include "plotwerk/drawing/curvePoints.h"

#include "plotwerk/model/shownPoints.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace plotwerk {

static constexpr double mostInterpolatedPoints = 4e6; // 64 MB of path

static Path onPaper(std::span<const double> x, std::span<const double> y, const DrawnCurve &curve,
                    const ScaledFrame &frame) {
    Path path;
    path.reserve(y.size());
    for (std::size_t i = 0; i < y.size(); ++i) {
        const bool valid = std::isfinite(x[i]) && std::isfinite(y[i]);
        path.push_back(valid ? frame.at(x[i], y[i], curve.horizontalAxis(), curve.verticalAxis())
                             : pathBreak);
    }
    return path;
}

Path rowsOnPaper(const DrawnCurve &curve, const ScaledFrame &frame) {
    return onPaper(curve.table->x.values, curve.column->values, curve, frame);
}

Path rowsOnPaper(const DrawnCurve &curve, const ScaledFrame &frame, std::size_t begin,
                 std::size_t end) {
    const std::span<const double> x(curve.table->x.values);
    const std::span<const double> y(curve.column->values);
    return onPaper(x.subspan(begin, end - begin), y.subspan(begin, end - begin), curve, frame);
}

Path pointsOnPaper(const DrawnCurve &curve, const ScaledFrame &frame) {
    const ShownPoints points = shownPoints(*curve.table, *curve.column, {}, {});
    return onPaper(points.x, points.y, curve, frame);
}

// Second derivatives at the points of a natural cubic spline y(x) (Press et al., tridiagonal
// system).
static std::vector<double> splineCurvatures(const Point *p, std::size_t n) {
    std::vector<double> curvature(n, 0.0);
    std::vector<double> above(n, 0.0);
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const double left = p[i].x - p[i - 1].x;
        const double right = p[i + 1].x - p[i].x;
        const double pivot = 2 * (left + right) - left * above[i - 1];
        const double slopeChange = (p[i + 1].y - p[i].y) / right - (p[i].y - p[i - 1].y) / left;
        above[i] = right / pivot;
        curvature[i] = (6 * slopeChange - left * curvature[i - 1]) / pivot;
    }
    for (std::size_t i = n; i-- > 2;) curvature[i - 1] -= above[i - 1] * curvature[i];
    return curvature;
}

static bool isStrictlyMonotonic(const Point *p, std::size_t n) {
    for (std::size_t i = 2; i < n; ++i)
        if ((p[i].x - p[i - 1].x) * (p[1].x - p[0].x) <= 0) return false;
    return n > 2 && p[1].x != p[0].x;
}

namespace {

// Takes all points of a line, as ColumnExtremes takes those that can be seen.
class WholeLine {
  public:
    void reserve(std::size_t count) { path.reserve(count); }
    void add(const Point &p) { path.push_back(p); }
    static bool covers(const Point & /*p*/, double /*beyond*/) { return false; }
    Path take() { return std::move(path); }

  private:
    Path path;
};

} // namespace

// A cubic is off from the straight line between its ends by an eighth of its larger second
// derivative there, times the distance squared, at most.
template<class Line> static void addSpline(Line &line, const Point *p, std::size_t n, int between) {
    const std::vector<double> curvature = splineCurvatures(p, n);
    for (std::size_t i = 0; i + 1 < n; ++i) {
        const double h = p[i + 1].x - p[i].x;
        const double secondDerivative =
            std::max(std::abs(curvature[i]), std::abs(curvature[i + 1]));
        line.add(p[i]);
        if (line.covers(p[i + 1], secondDerivative * h * h / 8)) continue;
        for (int k = 1; k <= between; ++k) {
            const double b = static_cast<double>(k) / (between + 1);
            const double a = 1 - b;
            const double y =
                a * p[i].y + b * p[i + 1].y +
                ((a * a * a - a) * curvature[i] + (b * b * b - b) * curvature[i + 1]) * h * h / 6;
            line.add({p[i].x + b * h, y});
        }
    }
    line.add(p[n - 1]);
}

// The place of a point on an axis, between two others, by its value; part is in (0, 1).
static double between(double from, double to, double part, const Scale &scale) {
    if (!scale.logarithmic) return from + part * (to - from);
    const double sign = scale.reversed ? -1 : 1;
    const double ratio = std::pow(10.0, sign * (to - from) / scale.factor);
    const double step =
        std::isinf(ratio) ? to - from : sign * std::log10(1 + part * (ratio - 1)) * scale.factor;
    return from + step;
}

template<class Line>
static void addStraight(Line &line, const Point *p, std::size_t n, int points,
                        const Scale &horizontal, const Scale &vertical) {
    for (std::size_t i = 0; i + 1 < n; ++i) {
        line.add(p[i]);
        if (line.covers(p[i + 1], 0)) continue;
        for (int k = 1; k <= points; ++k) {
            const double part = static_cast<double>(k) / (points + 1);
            // y on paper runs against the axis
            line.add({between(p[i].x, p[i + 1].x, part, horizontal),
                      -between(-p[i].y, -p[i + 1].y, part, vertical)});
        }
    }
    line.add(p[n - 1]);
}

// How many points are drawn between two neighbours of a curve that has this many.
static int pointsBetween(const DrawnCurve &curve, const ScaledFrame &frame, std::size_t points) {
    const CurveLook &look = curve.column->look;
    const bool logarithmic = frame.scales[curve.horizontalAxis()].logarithmic ||
                             frame.scales[curve.verticalAxis()].logarithmic;
    if (look.interpolationType != 1 && !logarithmic) return 0;
    const double most =
        mostInterpolatedPoints / static_cast<double>(std::max<std::size_t>(points, 1));
    return static_cast<int>(std::min(look.interpolationPoints, most));
}

bool hasPointsBetween(const DrawnCurve &curve, const ScaledFrame &frame) {
    return pointsBetween(curve, frame, curve.column->values.size()) > 0;
}

double pointsOfLine(const DrawnCurve &curve, const ScaledFrame &frame) {
    const std::size_t rows = curve.column->values.size();
    return static_cast<double>(rows) * (1 + pointsBetween(curve, frame, rows));
}

template<class Line>
static Path interpolated(Line line, const Path &path, int points, const DrawnCurve &curve,
                         const ScaledFrame &frame) {
    const bool spline = curve.column->look.interpolationType == 1;
    for (std::size_t begin = 0; begin < path.size();) {
        std::size_t end = begin;
        while (end < path.size() && !isBreak(path[end])) ++end;
        const Point *part = path.data() + begin;
        const std::size_t n = end - begin;
        if (spline && isStrictlyMonotonic(part, n))
            addSpline(line, part, n, points);
        else if (n > 0)
            addStraight(line, part, n, points, frame.scales[curve.horizontalAxis()],
                        frame.scales[curve.verticalAxis()]);
        if (end < path.size()) line.add(pathBreak);
        begin = end + 1;
    }
    return line.take();
}

Path linePath(Path points, const DrawnCurve &curve, const ScaledFrame &frame, double resolution) {
    const CurveLook &look = curve.column->look;
    // as many as between all rows: the points may be some of them
    const std::size_t rows = look.sum > 1 ? 0 : curve.column->values.size();
    const int between = pointsBetween(curve, frame, std::max(points.size(), rows));
    if (between > 0 && resolution > 0) {
        points = interpolated(ColumnExtremes(resolution), points, between, curve, frame);
    } else if (between > 0) {
        WholeLine line;
        line.reserve(points.size() * static_cast<std::size_t>(between + 1));
        points = interpolated(std::move(line), points, between, curve, frame);
    }
    return look.stepped ? steppedPath(points) : points;
}

Path brokenOnReverse(const Path &path, bool reversedAxis) {
    Path broken;
    broken.reserve(path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (i > 0) {
            const double step = path[i].x - path[i - 1].x;
            if (reversedAxis ? step > 0 : step < 0) broken.push_back(pathBreak);
        }
        broken.push_back(path[i]);
    }
    return broken;
}

} // namespace plotwerk
