#include "plotwerk/drawing/drawnCurves.h"

#include "plotwerk/model/curves.h"

#include <algorithm>
#include <cmath>

namespace plotwerk {

std::vector<DrawnCurve> drawnCurvesOf(const Document &document) {
    std::vector<DrawnCurve> curves;
    for (const PlottedCurve &each : plottedCurves(document))
        curves.push_back({&document.sources[each.curve.source], &tableOf(document, each.curve),
                          &columnOf(document, each.curve), each.xErrors, each.yErrors,
                          each.curve.index});
    std::stable_sort(curves.begin(), curves.end(), [](const DrawnCurve &a, const DrawnCurve &b) {
        return a.column->look.layer < b.column->look.layer;
    });
    return curves;
}

double baseValue(const Frame &frame) {
    return std::isnan(frame.xAxisPos) ? 0 : frame.xAxisPos;
}

} // namespace plotwerk
