// documentFit.h - a document's formula: set, fitted to its data, applied to its data.
#ifndef PLOTWERK_FIT_DOCUMENTFIT_H
#define PLOTWERK_FIT_DOCUMENTFIT_H

#include "plotwerk/fit/fit.h"
#include "plotwerk/model/document.h"

#include <string>

namespace plotwerk {

// Parameters that the old formula had, too, keep their values. Another text than before forgets the
// last fit and its errors. Refused as Formula refuses.
void setFormula(Document &document, const std::string &text);

// Refused as readParameterList refuses.
void setParameters(Document &document, const std::string &list, char decimalSeparator);

// Fits the formula to the fit data, or else to the first selected curve, or else to the only one;
// what the last fit has drawn doesn't count as a curve there. Points outside the fit range don't
// take part. The errors are in the table's column "NAME error", if there is one.
//
// A fit that has converged sets the parameters and the result, and draws the formula over the fit
// range, or as far as the points go where that has no limit, as the only curve "Fit" of a new last
// source "Fit". The next fit replaces that curve, keeping name, look and selection, unless the user
// has made it his own: by adding columns or rows to its table, by reading other data into it, or by
// marking it as fit data. A fit that fails changes nothing. Refused: no formula, no curve to fit.
FitOutcome fitDocument(Document &document);

// Sets y of every selected curve to the formula's value, at all points that have x and y; NaN where
// the formula has no value. Without yData it sets x instead, and of each table only the curve
// selected first counts. Refused: no formula, no selection, and more than 1e10 operations (points
// times those of the formula), which would take minutes.
void modifySelection(Document &document, bool yData);

// A variable as text, with all digits and a decimal point: what fitVariable knows, and the limits
// xmin, xmax, ymin, ymax, x2min, x2max (upper x axis), y2min, y2max (right y axis), fitmin and
// fitmax as they are shown. Refused: any other name.
std::string variableOf(const Document &document, const std::string &name);

} // namespace plotwerk

#endif
