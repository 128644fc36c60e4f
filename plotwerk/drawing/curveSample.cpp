#include "plotwerk/drawing/curveSample.h"

#include "plotwerk/drawing/curveStrokes.h"
#include "plotwerk/drawing/curveSymbols.h"
#include "plotwerk/drawing/symbols.h"

#include <algorithm>
#include <numeric>

namespace plotwerk {

static constexpr double leastWidth = 22;
static constexpr double mostWidth = 60;
static constexpr double largestSymbol = 10;
static constexpr double thickestLine = 6;

bool showsAnything(const CurveLook &look) {
    return look.line || look.filled || look.symbols || look.marker || look.yError || look.xError;
}

double sampleWidthOf(const CurveLook &look) {
    if (!look.line || !look.dashed) return leastWidth;
    // two periods and the dash that ends them
    const double period = std::accumulate(look.dashLength.begin(), look.dashLength.end(), 0.0);
    return std::clamp(2 * period + look.dashLength[0], leastWidth, mostWidth);
}

void drawSample(cairo_t *cr, const CurveLook &look, const Point &at, double width) {
    CurveLook drawn = look;
    drawn.symbolSize = std::min(look.symbolSize, largestSymbol);
    drawn.lineThickness = std::min(look.lineThickness, thickestLine);
    const Point middle{at.x + width / 2, at.y - sampleHeight / 2};
    const Box box = Box{at.x, at.y - sampleHeight, at.x + width, at.y}.grownBy(thickestLine);
    const bool upright = drawn.marker || drawn.yError;

    cairo_save(cr);
    if (drawn.filled) {
        setColour(cr, drawn.fillColour);
        cairo_rectangle(cr, at.x, at.y - sampleHeight, width, sampleHeight);
        cairo_fill(cr);
    }
    if (drawn.lineThickness > 0) {
        if (drawn.line)
            strokePath(cr, {{at.x, middle.y}, {at.x + width, middle.y}}, drawn, drawn.dashed, box);
        else if (upright && !drawn.symbols)
            strokePath(cr, {{middle.x, at.y}, {middle.x, at.y - sampleHeight}}, drawn, false, box);
        else if (drawn.xError && !drawn.symbols)
            strokePath(cr, {{at.x, middle.y}, {at.x + width, middle.y}}, drawn, false, box);
    }
    if (drawn.symbols && drawn.symbolSize > 0)
        drawSymbolOf(cr, drawn, middle, drawn.lineColour, true);
    cairo_restore(cr);
}

} // namespace plotwerk
