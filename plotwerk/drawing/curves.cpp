#include "plotwerk/drawing/curves.h"

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/drawing/curvePoints.h"
#include "plotwerk/drawing/denseImage.h"
#include "plotwerk/drawing/symbols.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace plotwerk {

static constexpr double resolution = 0.06;  // of paths, in points: 1200 dpi
static constexpr size_t mostLines = 100000; // that are drawn as vectors
static constexpr size_t mostSymbols = 20000;
static constexpr double imageDpi = 600;        // of what is more
static constexpr double largestThickness = 50; // of lines, in points
static constexpr double largestSymbol = 200;

static double thicknessOf(const CurveLook &look) {
    return limited(look.lineThickness, 0, largestThickness, 1);
}

static double symbolSizeOf(const CurveLook &look) {
    return limited(look.symbolSize, 0, largestSymbol, 4);
}

static void setDash(cairo_t *cr, const CurveLook &look) {
    std::array<double, 4> dash{};
    double sum = 0;
    for (size_t i = 0; i < dash.size(); ++i) {
        dash[i] = limited(look.dashLength[i], 0, 1000, 0);
        sum += dash[i];
    }
    // shorter dashes can't be told from a line
    if (sum >= 0.2) cairo_set_dash(cr, dash.data(), static_cast<int>(dash.size()), 0);
}

// All of a pen but its colour.
static void setPen(cairo_t *cr, const CurveLook &look, bool dashed) {
    cairo_set_line_width(cr, thicknessOf(look));
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
    if (dashed) setDash(cr, look);
}

static void tracePath(cairo_t *cr, const Path &path, size_t begin, size_t end) {
    for (size_t i = begin; i < end; ++i) {
        if (isBreak(path[i])) continue;
        const bool joins = i > begin && !isBreak(path[i - 1]);
        if (joins)
            cairo_line_to(cr, path[i].x, path[i].y);
        else
            cairo_move_to(cr, path[i].x, path[i].y);
    }
}

// Points between two breaks: a line can't show them, but a dot can.
static void traceDots(cairo_t *cr, const Path &path, size_t begin, size_t end) {
    for (size_t i = begin; i < end; ++i) {
        const bool alone = !isBreak(path[i]) && (i == 0 || isBreak(path[i - 1])) &&
                           (i + 1 == path.size() || isBreak(path[i + 1]));
        if (!alone) continue;
        cairo_move_to(cr, path[i].x, path[i].y);
        cairo_line_to(cr, path[i].x, path[i].y);
    }
}

static void strokePart(cairo_t *cr, const Path &path, size_t begin, size_t end) {
    tracePath(cr, path, begin, end);
    cairo_stroke(cr);
    traceDots(cr, path, begin, end);
    cairo_save(cr);
    cairo_set_dash(cr, nullptr, 0, 0);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(cr, 3 * cairo_get_line_width(cr));
    cairo_stroke(cr);
    cairo_restore(cr);
}

// Without dashes, which can't be seen where lines are that dense.
static void strokeAsImage(cairo_t *cr, const Path &path, double thickness,
                          const PlacedFrame &frame) {
    double length = 0;
    for (size_t i = 1; i < path.size(); ++i)
        if (!isBreak(path[i]) && !isBreak(path[i - 1]))
            length += std::hypot(path[i].x - path[i - 1].x, path[i].y - path[i - 1].y);
    // kilometres of line leave nothing but black
    DenseImage image(frame.box().grownBy(thickness), length > 3e6 ? imageDpi / 2 : imageDpi);
    for (size_t i = 0; i < path.size(); ++i) {
        if (isBreak(path[i])) continue;
        const bool joins = i > 0 && !isBreak(path[i - 1]);
        image.addLine(joins ? path[i - 1] : path[i], path[i], thickness);
    }
    image.paintOn(cr);
}

static void strokePath(cairo_t *cr, const Path &path, const CurveLook &look, bool dashed,
                       const PlacedFrame &frame) {
    setColour(cr, look.lineColour);
    if (path.size() > mostLines) {
        strokeAsImage(cr, path, thicknessOf(look), frame);
        return;
    }
    // the cost of a stroke on a raster grows with the crossings in it; but where parts of it meet,
    // dashes would begin anew, and a colour that is not opaque would be painted twice
    const bool whole = dashed || look.lineColour.opacity < 1;
    const size_t atOnce = whole ? mostLines : 200;
    setPen(cr, look, dashed);
    for (size_t begin = 0; begin < path.size(); begin += atOnce)
        strokePart(cr, path, begin, std::min(begin + atOnce + 1, path.size()));
    cairo_set_dash(cr, nullptr, 0, 0);
}

static void drawLine(cairo_t *cr, const Path &path, const CurveLook &look,
                     const PlacedFrame &frame) {
    const double thickness = thicknessOf(look);
    if (thickness == 0) return;
    const Box box = frame.box().grownBy(thickness + 1);
    strokePath(cr, reducedPath(clippedPath(path, box), resolution), look, look.dashed, frame);
}

// The height on paper from which areas and marker lines rise: the x axis where it has a position,
// else zero, at the nearest edge of the frame.
static double baseOf(const DrawnCurve &curve, const PlacedFrame &frame, const Frame &settings) {
    const Scale &scale = frame.axes[curve.verticalAxis()].scale;
    const double value = std::isnan(settings.xAxisPos) ? 0 : settings.xAxisPos;
    const double lowest = scale.reversed ? scale.length : 0;
    return frame.height - limited(scale.position(value), 0, scale.length, lowest);
}

static void fillRings(cairo_t *cr, const std::vector<Path> &rings) {
    for (const Path &ring : rings) {
        tracePath(cr, ring, 0, ring.size());
        cairo_close_path(cr);
        cairo_fill(cr);
    }
}

static void fillArea(cairo_t *cr, const Path &path, double base, const CurveLook &look,
                     const PlacedFrame &frame) {
    std::vector<Path> rings = areasBetween(path, base, frame.box());
    size_t size = 0;
    for (Path &ring : rings) {
        ring = reducedPath(ring, resolution);
        size += ring.size();
    }
    setColour(cr, look.fillColour);
    if (size <= mostLines) {
        fillRings(cr, rings);
    } else {
        const DenseImage image(frame.box(), imageDpi);
        fillRings(image.context(), rings);
        image.paintOn(cr);
    }
}

namespace {

// A straight line along one direction of the paper, at a place in the other.
struct Bar {
    double at = 0;
    double low = 0; // low <= high
    double high = 0;
};

} // namespace

static int64_t columnOf(const Bar &bar) {
    return static_cast<int64_t>(std::floor(bar.at / resolution));
}

static Bar barBetween(double at, double from, double to) {
    return {at, std::min(from, to), std::max(from, to)};
}

// Bars in the same column that overlap become one.
static std::vector<Bar> mergedBars(const std::vector<Bar> &bars) {
    std::vector<std::pair<int64_t, const Bar *>> sorted;
    sorted.reserve(bars.size());
    for (const Bar &bar : bars) sorted.emplace_back(columnOf(bar), &bar);
    std::sort(sorted.begin(), sorted.end(), [](const auto &a, const auto &b) {
        return a.first != b.first ? a.first < b.first : a.second->low < b.second->low;
    });
    std::vector<Bar> merged;
    int64_t column = 0;
    for (const auto &[barColumn, bar] : sorted) {
        if (!merged.empty() && column == barColumn && bar->low <= merged.back().high)
            merged.back().high = std::max(merged.back().high, bar->high);
        else
            merged.push_back(*bar);
        column = barColumn;
    }
    return merged;
}

static void addBars(Path &path, const std::vector<Bar> &bars, bool upright) {
    for (const Bar &bar : mergedBars(bars)) {
        path.push_back(upright ? Point{bar.at, bar.low} : Point{bar.low, bar.at});
        path.push_back(upright ? Point{bar.at, bar.high} : Point{bar.high, bar.at});
        path.push_back(pathBreak);
    }
}

static void strokeBars(cairo_t *cr, const std::vector<Bar> &upright, const std::vector<Bar> &level,
                       const CurveLook &look, const PlacedFrame &frame) {
    if (thicknessOf(look) == 0) return;
    Path path;
    addBars(path, upright, true);
    addBars(path, level, false);
    strokePath(cr, clippedPath(path, frame.box().grownBy(thicknessOf(look))), look, false, frame);
}

static void drawMarkers(cairo_t *cr, const Path &points, double base, const CurveLook &look,
                        const PlacedFrame &frame) {
    std::vector<Bar> bars;
    for (const Point &p : points)
        if (p.x >= 0 && p.x <= frame.width) bars.push_back(barBetween(p.x, base, p.y));
    strokeBars(cr, bars, {}, look, frame);
}

// Both ends of an error bar as positions on an axis. What reaches below the values of a logarithmic
// axis goes far beyond its lower end.
static void errorEnds(double value, double error, const Scale &scale, double &low, double &high) {
    low = scale.position(value - error);
    high = scale.position(value + error);
    if (std::isnan(low)) low = scale.reversed ? 1e6 : -1e6;
}

static void drawErrorBars(cairo_t *cr, const DrawnCurve &curve, const PlacedFrame &frame) {
    const CurveLook &look = curve.column->look;
    const Column *yError = curve.yErrors;
    const Column *xError = curve.xErrors;
    if (!yError && !xError) return;

    const double halfCap = std::max(symbolSizeOf(look), 3.0) / 2;
    const Scale &horizontal = frame.axes[curve.horizontalAxis()].scale;
    const Scale &vertical = frame.axes[curve.verticalAxis()].scale;
    const std::vector<double> &x = curve.table->x.values;
    const std::vector<double> &y = curve.column->values;
    const Box near = frame.box().grownBy(halfCap);
    std::vector<Bar> upright;
    std::vector<Bar> level;
    double low = 0;
    double high = 0;
    for (size_t i = 0; i < std::min(x.size(), y.size()); ++i) {
        const Point at{horizontal.position(x[i]), frame.height - vertical.position(y[i])};
        if (isBreak(at)) continue;
        if (yError && yError->values[i] > 0 && at.x >= near.left && at.x <= near.right) {
            errorEnds(y[i], yError->values[i], vertical, low, high);
            upright.push_back(barBetween(at.x, frame.height - low, frame.height - high));
            for (const double end : {frame.height - low, frame.height - high})
                level.push_back({end, at.x - halfCap, at.x + halfCap});
        }
        if (xError && xError->values[i] > 0 && at.y >= near.top && at.y <= near.bottom) {
            errorEnds(x[i], xError->values[i], horizontal, low, high);
            level.push_back(barBetween(at.y, low, high));
            for (const double end : {low, high})
                upright.push_back({end, at.y - halfCap, at.y + halfCap});
        }
    }
    strokeBars(cr, upright, level, look, frame);
}

// The points inside the frame that have a symbol, those on the same spot once.
static std::vector<Point> symbolPoints(const Path &points, int increment,
                                       const PlacedFrame &frame) {
    const double spot = std::max(0.1, std::max(frame.width, frame.height) / 6000);
    const Box inside = frame.box().grownBy(0.01);
    const auto columns = static_cast<size_t>(inside.width() / spot) + 1;
    const auto rows = static_cast<size_t>(inside.height() / spot) + 1;
    std::vector<bool> taken(columns * rows);
    std::vector<Point> chosen;
    size_t index = 0;
    for (const Point &p : points) {
        if (isBreak(p)) continue;
        if (index++ % static_cast<size_t>(std::max(increment, 1)) != 0 || !inside.contains(p))
            continue;
        const size_t cell = static_cast<size_t>((p.y - inside.top) / spot) * columns +
                            static_cast<size_t>((p.x - inside.left) / spot);
        if (taken[cell]) continue;
        taken[cell] = true;
        chosen.push_back(p);
    }
    return chosen;
}

static void drawSymbols(cairo_t *cr, const Path &points, const CurveLook &look,
                        const PlacedFrame &frame) {
    const double size = symbolSizeOf(look);
    if (size == 0) return;
    const double thickness = std::max(thicknessOf(look), 0.25);
    const std::vector<Point> chosen = symbolPoints(points, look.symbolInc, frame);
    const bool asImage = chosen.size() > mostSymbols;
    // the second to fourth symbol are drawn over the first
    const auto drawAt = [&](cairo_t *target, const Point &at, const Colour &colour) {
        for (size_t i = 0; i < look.symbol.size(); ++i)
            if (i == 0 || look.symbol[i] > 0)
                drawSymbol(target, look.symbol[i], at, size, thickness, colour, !asImage);
    };
    if (!asImage) {
        for (const Point &p : chosen) drawAt(cr, p, look.lineColour);
        return;
    }
    const double radius = size + thickness;
    DenseImage image(frame.box().grownBy(radius + 10), imageDpi);
    image.stamp(chosen, radius, [&](cairo_t *stamp) { drawAt(stamp, {0, 0}, Colour{}); });
    setColour(cr, look.lineColour);
    image.paintOn(cr);
}

double reachOf(const DrawnCurve &curve) {
    const CurveLook &look = curve.column->look;
    return std::max(thicknessOf(look) / 2, look.symbols ? 0.75 * symbolSizeOf(look) : 0);
}

void drawCurve(cairo_t *cr, const DrawnCurve &curve, const PlacedFrame &frame,
               const Frame &settings) {
    const CurveLook &look = curve.column->look;
    cairo_save(cr);
    const Box clip = frame.box().grownBy(thicknessOf(look) / 2);
    cairo_rectangle(cr, clip.left, clip.top, clip.width(), clip.height());
    cairo_clip(cr);
    if (look.line || look.filled) {
        Path path = interpolatedPath(pointsOnPaper(curve, frame), curve, frame);
        if (look.stepped) path = steppedPath(path);
        if (look.filled) fillArea(cr, path, baseOf(curve, frame, settings), look, frame);
        if (look.line) {
            if (settings.noLineOnReverse)
                path = brokenOnReverse(path, frame.axes[curve.horizontalAxis()].scale.reversed);
            drawLine(cr, path, look, frame);
        }
    }
    // anew, so that a long curve isn't held twice while its line is drawn
    const Path points = look.marker || look.symbols ? pointsOnPaper(curve, frame) : Path();
    if (look.marker) drawMarkers(cr, points, baseOf(curve, frame, settings), look, frame);
    drawErrorBars(cr, curve, frame);
    cairo_restore(cr);

    if (look.symbols) drawSymbols(cr, points, look, frame);
}

} // namespace plotwerk
