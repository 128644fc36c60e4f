#include "plotwerk/drawing/curveSymbols.h"

#include "plotwerk/drawing/curveStrokes.h"
#include "plotwerk/drawing/denseImage.h"
#include "plotwerk/drawing/symbols.h"

#include <algorithm>
#include <vector>

namespace plotwerk {

static constexpr std::size_t mostSymbols = 20000; // that are drawn as vectors, not as an image

// The points inside the frame that have a symbol, those on the same spot once.
static std::vector<Point> symbolPoints(const Path &points, int increment,
                                       const ScaledFrame &frame) {
    const double spot = std::max(0.1, std::max(frame.width, frame.height) / 6000);
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

void drawSymbols(cairo_t *cr, const Path &points, const CurveLook &look, const ScaledFrame &frame) {
    const double size = look.symbolSize;
    if (size == 0) return;
    const double thickness = std::max(look.lineThickness, 0.25);
    const std::vector<Point> chosen = symbolPoints(points, look.symbolInc, frame);
    const bool asImage = chosen.size() > mostSymbols;
    // the second to fourth symbol are drawn over the first
    const auto drawAt = [&](cairo_t *target, const Point &at, const Colour &colour) {
        for (std::size_t i = 0; i < look.symbol.size(); ++i)
            if (i == 0 || look.symbol[i] > 0)
                drawSymbol(target, look.symbol[i], at, size, thickness, colour, !asImage);
    };
    if (!asImage) {
        for (const Point &p : chosen) drawAt(cr, p, look.lineColour);
        return;
    }
    const double radius = size + thickness;
    DenseImage image(frame.box().grownBy(radius + 10), finestDpi);
    image.stamp(chosen, radius, [&](cairo_t *stamp) { drawAt(stamp, {0, 0}, Colour{}); });
    setColour(cr, look.lineColour);
    image.paintOn(cr);
}

} // namespace plotwerk
