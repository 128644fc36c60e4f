#include "plotwerk/drawing/curveSymbols.h"

#include "plotwerk/drawing/curveStrokes.h"
#include "plotwerk/drawing/denseImage.h"
#include "plotwerk/drawing/symbols.h"

#include <algorithm>
#include <vector>

namespace plotwerk {

static constexpr std::size_t mostSymbols = 20000; // that are drawn as vectors, not as an image

// The points inside the frame that have a symbol, those on the same spot once.
static std::vector<Point> symbolPoints(const Path &points, int increment, const ScaledFrame &frame,
                                       double resolution) {
    const double spot = std::max({0.1, 2 * resolution, std::max(frame.width, frame.height) / 6000});
    const Box inside = frame.box().grownBy(0.01);
    const auto columns = static_cast<std::size_t>(inside.width() / spot) + 1;
    const auto rows = static_cast<std::size_t>(inside.height() / spot) + 1;
    std::vector<bool> taken(columns * rows);
    std::vector<Point> chosen;
    std::size_t index = 0;
    for (const Point &p : points) {
        if (isBreak(p)) continue;
        if (index++ % static_cast<std::size_t>(increment) != 0 || !inside.contains(p)) continue;
        const std::size_t cell = static_cast<std::size_t>((p.y - inside.top) / spot) * columns +
                                 static_cast<std::size_t>((p.x - inside.left) / spot);
        if (taken[cell]) continue;
        taken[cell] = true;
        chosen.push_back(p);
    }
    return chosen;
}

void drawSymbolOf(cairo_t *cr, const CurveLook &look, const Point &at, const Colour &colour,
                  bool whiteInside) {
    const double thickness = std::max(look.lineThickness, 0.25);
    for (std::size_t i = 0; i < look.symbol.size(); ++i)
        if (i == 0 || look.symbol[i] > 0)
            drawSymbol(cr, look.symbol[i], at, look.symbolSize, thickness, colour, whiteInside);
}

void drawSymbols(cairo_t *cr, const Path &points, const CurveLook &look, const ScaledFrame &frame,
                 double resolution) {
    const double size = look.symbolSize;
    if (size == 0) return;
    const std::vector<Point> chosen = symbolPoints(points, look.symbolInc, frame, resolution);
    // as on paper, where symbols of an image aren't white inside
    const bool asImage = chosen.size() > mostSymbols ||
                         (resolution > 0 && points.size() > mostSymbols &&
                          symbolPoints(points, look.symbolInc, frame, 0).size() > mostSymbols);
    if (!asImage) {
        for (const Point &p : chosen) drawSymbolOf(cr, look, p, look.lineColour, true);
        return;
    }
    const double radius = size + std::max(look.lineThickness, 0.25);
    const Box box = frame.box().grownBy(radius + 10);
    DenseImage image =
        resolution > 0 ? DenseImage::onScreen(cr, box, resolution) : DenseImage(box, finestDpi);
    image.stamp(chosen, radius, [&](cairo_t *stamp) {
        drawSymbolOf(stamp, look, {0, 0}, Colour{}, false);
    });
    setColour(cr, look.lineColour);
    image.paintOn(cr);
}

} // namespace plotwerk
