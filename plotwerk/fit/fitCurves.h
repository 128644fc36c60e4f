// fitCurves.h - the curves that a fit draws: the formula's line, and what it leaves of the data.
#ifndef PLOTWERK_FIT_FITCURVES_H
#define PLOTWERK_FIT_FITCURVES_H

#include "plotwerk/fit/fit.h"
#include "plotwerk/formula/formula.h"
#include "plotwerk/model/document.h"

#include <vector>

namespace plotwerk {

// The two tables of a source "Fit".
struct FitTables {
    Table line;
    Table residuals;
};

// Those for the formula with these parameters, fitted to a curve's data. The first has the formula
// as its only curve "Fit": over the range, or as far as the points go where that has no limit; with
// variables beside x at the points. The second has the hidden curve "Residuals" at the points, and
// with errors another, "Residuals/σ".
FitTables fitTables(const Document &document, const CurveRef &fitted, const FitData &data,
                    const Formula &formula, const std::vector<double> &parameters);

// Puts them into the source that the last fit has drawn in, in the place of its tables, whose
// names, looks and selection they keep; without one they are a new last source "Fit". A source that
// the user has made his own is left alone: see fitDocument.
void showFit(FitTables tables, const CurveRef &fitted, Document &document);

} // namespace plotwerk

#endif
