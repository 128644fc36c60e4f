// drawnCurves.h - which curves of a document a picture shows, and against which axes.
#ifndef PLOTWERK_DRAWING_DRAWNCURVES_H
#define PLOTWERK_DRAWING_DRAWNCURVES_H

#include "plotwerk/model/errorColumns.h"

#include <vector>

namespace plotwerk {

struct DrawnCurve {
    const Source *source = nullptr;
    const Table *table = nullptr;
    const Column *column = nullptr;
    Errors xErrors{}; // shown as bars
    Errors yErrors{};
    int index = 0; // among all curves of the document

    AxisCode horizontalAxis() const { return column->look.upperX ? upperXAxis : xAxis; }
    AxisCode verticalAxis() const { return column->look.rightY ? rightYAxis : yAxis; }
};

// The plotted curves of the document from the lowest layer up.
std::vector<DrawnCurve> drawnCurvesOf(const Document &document);

// The value from which areas and drop lines rise: where the x axis stands, else zero.
double baseValue(const Frame &frame);

} // namespace plotwerk

#endif
