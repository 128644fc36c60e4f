// drawnCurves.h - which curves of a document a picture shows, and against which axes.
#ifndef PLOTWERK_DRAWING_DRAWNCURVES_H
#define PLOTWERK_DRAWING_DRAWNCURVES_H

#include "plotwerk/model/document.h"

#include <vector>

namespace plotwerk {

struct DrawnCurve {
    const Table *table = nullptr;
    const Column *column = nullptr;

    AxisCode horizontalAxis() const { return column->look.upperX ? upperXAxis : xAxis; }
    AxisCode verticalAxis() const { return column->look.rightY ? rightYAxis : yAxis; }
};

// The visible curves from the lowest layer up, without the columns that another visible curve of
// their table shows as its error bars.
std::vector<DrawnCurve> drawnCurvesOf(const Document &document);

// The column with the errors of a curve: "NAME error". Null if there is none.
const Column *yErrorOf(const Table &table, const Column &curve);

// The column with the errors of x: "X error", with the x column's name or with a plain X.
const Column *xErrorOf(const Table &table);

} // namespace plotwerk

#endif
