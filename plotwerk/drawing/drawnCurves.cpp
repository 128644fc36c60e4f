#include "plotwerk/drawing/drawnCurves.h"

#include "plotwerk/model/curves.h"

#include <algorithm>

namespace plotwerk {

static bool isShownAsError(const Table &table, const Column &column) {
    return std::any_of(table.y.begin(), table.y.end(), [&](const Column &curve) {
        const CurveLook &look = curve.look;
        return look.visible && ((look.yError && yErrorOf(table, curve) == &column) ||
                                (look.xError && xErrorOf(table) == &column));
    });
}

std::vector<DrawnCurve> drawnCurvesOf(const Document &document) {
    std::vector<DrawnCurve> curves;
    for (const Source &source : document.sources)
        for (const Table &table : source.tables)
            for (const Column &column : table.y)
                if (column.look.visible && !isShownAsError(table, column))
                    curves.push_back({&table, &column});
    std::stable_sort(curves.begin(), curves.end(), [](const DrawnCurve &a, const DrawnCurve &b) {
        return a.column->look.layer < b.column->look.layer;
    });
    return curves;
}

} // namespace plotwerk
