#include "plotwerk/drawing/curves.h"

#include "plotwerk/drawing/curveBars.h"
#include "plotwerk/drawing/curvePoints.h"
#include "plotwerk/drawing/curveStrokes.h"
#include "plotwerk/drawing/curveSymbols.h"
#include "plotwerk/drawing/denseImage.h"
#include "plotwerk/drawing/fittedCurve.h"
#include "plotwerk/drawing/screenStrokes.h"
#include "plotwerk/drawing/symbols.h"
#include "plotwerk/drawing/visiblePoints.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace plotwerk {

static Path linePoints(const DrawnCurve &curve, const ScaledFrame &frame, const Frame &settings,
                       double resolution) {
    return resolution > 0 ? visiblePoints(curve, frame, settings.noLineOnReverse, resolution)
                          : pointsOnPaper(curve, frame);
}

static Path lineOf(const DrawnCurve &curve, const ScaledFrame &frame, const Frame &settings,
                   double resolution) {
    return resolution > 0 ? visibleLine(curve, frame, settings.noLineOnReverse, resolution)
                          : linePath(pointsOnPaper(curve, frame), curve, frame);
}

// What a path may leave out: where dots are shaded, corners show that are off by more than a
// fraction of one.
static Path reducedFor(const Path &path, double resolution) {
    return reducedPath(path, std::max(resolution / 8, pathResolution));
}

static void drawLine(cairo_t *cr, const Path &path, const CurveLook &look, const ScaledFrame &frame,
                     double resolution) {
    if (look.lineThickness == 0) return;
    const Box box = frame.box().grownBy(look.lineThickness + 1);
    const Path visible = reducedFor(clippedPath(path, box), resolution);
    if (resolution > 0)
        strokeOnScreen(cr, visible, look, box, resolution);
    else
        strokePath(cr, visible, look, look.dashed, box);
}

// The height on paper from which areas and drop lines rise: the x axis where it has a position,
// else zero, at the nearest edge of the frame.
static double baseOf(const DrawnCurve &curve, const ScaledFrame &frame, const Frame &settings) {
    const Scale &scale = frame.scales[curve.verticalAxis()];
    const double lowest = scale.reversed ? scale.length : 0;
    return frame.height - limited(scale.position(baseValue(settings)), 0, scale.length, lowest);
}

static void fillRings(cairo_t *cr, std::vector<Path> rings, const CurveLook &look,
                      const ScaledFrame &frame, double resolution) {
    constexpr std::size_t mostOnScreen = 1000; // points of what is drawn as vectors
    std::size_t size = 0;
    double length = 0;
    for (Path &ring : rings) {
        ring = reducedFor(ring, resolution);
        size += ring.size();
        length += lengthOf(ring);
    }
    setColour(cr, look.fillColour);
    if (size > (resolution > 0 ? mostOnScreen : mostAtOnce)) {
        DenseImage image = resolution > 0 ? DenseImage::onScreen(cr, frame.box(), resolution)
                                          : DenseImage(frame.box(), dpiFor(length));
        image.fill(rings);
        image.paintOn(cr);
        return;
    }
    for (const Path &ring : rings) {
        tracePath(cr, ring, 0, ring.size());
        cairo_close_path(cr);
        cairo_fill(cr);
    }
}

static void clipToFrame(cairo_t *cr, const ScaledFrame &frame) {
    cairo_rectangle(cr, 0, 0, frame.width, frame.height);
    cairo_clip(cr);
}

double reachOf(const DrawnCurve &curve) {
    return curve.column->look.symbols ? 0.75 * curve.column->look.symbolSize : 0;
}

void drawBand(cairo_t *cr, const DrawnCurve &curve, const ScaledFrame &frame,
              const Document &document, double resolution) {
    const CurveLook &look = curve.column->look;
    if (!look.filled) return;
    const auto fitted = FittedCurve::of(document, curve);
    if (!fitted) return;
    cairo_save(cr);
    clipToFrame(cr, frame);
    fillRings(cr, fitted->band(curve, frame), look, frame, resolution);
    cairo_restore(cr);
}

void drawCurve(cairo_t *cr, const DrawnCurve &curve, const ScaledFrame &frame,
               const Document &document, double resolution) {
    const CurveLook &look = curve.column->look;
    const Frame &settings = document.frame;
    cairo_save(cr);
    clipToFrame(cr, frame);
    if (look.line || look.filled) {
        const auto fitted = FittedCurve::of(document, curve);
        Path path =
            fitted ? fitted->line(curve, frame) : lineOf(curve, frame, settings, resolution);
        if (look.filled && !fitted)
            fillRings(cr, areasBetween(path, baseOf(curve, frame, settings), frame.box()), look,
                      frame, resolution);
        if (look.line) {
            if (settings.noLineOnReverse && !fitted) // a formula never runs back
                path = brokenOnReverse(path, frame.scales[curve.horizontalAxis()].reversed);
            drawLine(cr, path, look, frame, resolution);
        }
    }
    // anew, so that a long curve isn't held twice while its line is drawn
    if (look.marker)
        drawDropLines(cr, linePoints(curve, frame, settings, resolution),
                      baseOf(curve, frame, settings), look, frame);
    drawErrorBars(cr, curve, frame);
    cairo_restore(cr);

    if (look.symbols) drawSymbols(cr, pointsOnPaper(curve, frame), look, frame, resolution);
}

} // namespace plotwerk
