// curves.h - the curves of a document: addressing them, and their points.
//
// References and indexes here count from 0 and hold until curves are added or deleted.
#ifndef PLOTWERK_MODEL_CURVES_H
#define PLOTWERK_MODEL_CURVES_H

#include "plotwerk/model/document.h"
#include "plotwerk/model/errorColumns.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace plotwerk {

Table &tableOf(Document &document, const CurveRef &curve);
const Table &tableOf(const Document &document, const CurveRef &curve);
Column &columnOf(Document &document, const CurveRef &curve);
const Column &columnOf(const Document &document, const CurveRef &curve);

// All curves in the document's order.
std::vector<CurveRef> curvesOf(const Document &document);

int numberOfCurves(const Document &document);

// Nothing for a negative index or one beyond the last curve. The search begins at `from`, a curve
// at that index or before it.
std::optional<CurveRef> curveAt(const Document &document, int index, CurveRef from = {});

// The selected curves by their rank in the selection.
std::vector<CurveRef> selectedCurves(const Document &document);

// As selectedCurves; refused when there are none.
std::vector<CurveRef> requireSelection(const Document &document);

// Of curves, the first one of each table.
std::vector<CurveRef> firstOfEachTable(std::vector<CurveRef> curves);

std::optional<CurveRef> firstSelectedCurve(const Document &document);

struct PlottedCurve {
    CurveRef curve;
    Errors yErrors{}; // drawn as bars
    Errors xErrors{};
};

// The visible curves, columns of errors aside.
std::vector<PlottedCurve> plottedCurves(const Document &document);

// The only curve of the document, columns of errors aside and, beside others, those that a fit has
// drawn.
std::optional<CurveRef> onlyCurve(const Document &document);

// The fit data; at most one curve.
std::optional<CurveRef> fitCurve(const Document &document);

// The curve that a point message means by its series: an index, or -1 for the first selected curve,
// or else the only one. Refused when there is no such curve.
CurveRef curveOfSeries(const Document &document, int series);

// The errors of a curve, which is a column of the table: one for each row, for a pair of columns
// the mean of both. They may be held in `means`. Empty without errors.
std::span<const double> yErrorsOf(const Table &table, const Column &curve,
                                  std::vector<double> &means);

// Rows of a table.
int rowsOf(const Table &table);

// Gives x other values: what was known about their order is forgotten.
void setX(Table &table, std::vector<double> values);

// Brings table.xOrder up to date with rows that were added since, and returns it.
const XOrder &orderOfX(const Table &table);

// The points of a curve that have both x and y, in order, and the rows that they stand in.
struct ValidPoints {
    int n = 0;
    std::vector<double> x;
    std::vector<double> y;
    std::vector<int> row;
};

ValidPoints validPoints(const Table &table, const Column &y);

// The values of these rows, in that order.
std::vector<double> atRows(std::span<const double> values, const std::vector<int> &rows);

} // namespace plotwerk

#endif
