#include "plotwerk/drawing/screenStrokes.h"

#include "plotwerk/drawing/curveStrokes.h"
#include "plotwerk/drawing/denseImage.h"
#include "plotwerk/drawing/symbols.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace plotwerk {

static constexpr std::size_t fewPoints = 500;
static constexpr std::size_t mostAsVectors = 20000; // of lines that aren't upright
static constexpr int boxesAtOnce = 50;              // of overlapping ones: the fastest
static constexpr std::size_t linesAtOnce = 20;
static constexpr double thickestBox = 16; // resolutions: the ends are off by less than a dot then

// With as much ink beyond its ends as round joins have.
static void addUpright(cairo_t *cr, const Point &a, const Point &b, double thickness) {
    const auto [top, bottom] = std::minmax(a.y, b.y);
    const double beyond = std::numbers::pi / 8 * thickness;
    cairo_rectangle(cr, (a.x + b.x - thickness) / 2, top - beyond, thickness,
                    bottom - top + 2 * beyond);
}

// Fills the lines whose ends are at most `widest` apart in x, as boxes, and gives the rest of the
// path. A point at which only such lines end isn't in it: it would be a dot.
static Path fillUprights(cairo_t *cr, const Path &path, double thickness, double widest) {
    Path rest;
    int boxes = 0;
    bool begun = false; // the last point of the rest is the one before
    const auto begin = [&](const Point &p) {
        if (!rest.empty()) rest.push_back(pathBreak);
        rest.push_back(p);
    };
    for (std::size_t i = 0; i < path.size(); ++i) {
        const bool joins = i > 0 && !isBreak(path[i]) && !isBreak(path[i - 1]);
        const bool goesOn = i + 1 < path.size() && !isBreak(path[i + 1]);
        if (joins && std::abs(path[i].x - path[i - 1].x) <= widest) {
            addUpright(cr, path[i - 1], path[i], thickness);
            if (++boxes % boxesAtOnce == 0) cairo_fill(cr);
            begun = false;
        } else if (joins) {
            if (!begun) begin(path[i - 1]);
            rest.push_back(path[i]);
            begun = true;
        } else {
            begun = false;
            if (!isBreak(path[i]) && !goesOn) begin(path[i]); // alone
        }
    }
    cairo_fill(cr);
    return rest;
}

static void strokeOpaque(cairo_t *cr, const Path &path, const CurveLook &look, const Box &box,
                         double resolution) {
    const Path rest = look.lineThickness <= thickestBox * resolution
                          ? fillUprights(cr, path, look.lineThickness, 2 * resolution)
                          : path;
    if (rest.size() > mostAsVectors) {
        strokeAsImage(cr, rest, look.lineThickness,
                      DenseImage::onScreen(cr, withRoomForDots(box, rest, look), resolution));
        return;
    }
    setPen(cr, look);
    strokeInParts(cr, rest, look, false, linesAtOnce);
}

// Not where the line covers half of the box.
static bool showsDashes(const Path &path, const CurveLook &look, const Box &box) {
    return look.dashed && lengthOf(path) * look.lineThickness < box.width() * box.height() / 2;
}

void strokeOnScreen(cairo_t *cr, const Path &path, const CurveLook &look, const Box &box,
                    double resolution) {
    if (path.size() <= fewPoints || showsDashes(path, look, box)) {
        strokePath(cr, path, look, look.dashed, box);
        return;
    }
    Colour colour = look.lineColour;
    const double opacity = std::exchange(colour.opacity, 1);
    if (opacity < 1) cairo_push_group(cr); // what overlaps is painted once
    setColour(cr, colour);
    strokeOpaque(cr, path, look, box, resolution);
    if (opacity < 1) {
        cairo_pop_group_to_source(cr);
        cairo_paint_with_alpha(cr, opacity);
    }
}

} // namespace plotwerk
