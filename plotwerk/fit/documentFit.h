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
// what the last fit has drawn doesn't count as a curve there. Points outside of the fit range don't
// take part; the column "NAME error" of the table, if there is one, has the errors.
//
// Converged, it sets the parameters and the result and draws the formula over the fit range, or as
// far as the points go, as the only curve "Fit" of a last source "Fit". The next fit puts its own
// in that place, keeping name, look and selection, unless the user has made the curve his own: by
// adding columns or rows to its table, by reading other data into it, or as fit data. Otherwise
// nothing is changed. Refused: no formula, no curve to be fitted.
FitOutcome fitDocument(Document &document);

// In every selected curve, y of all points with x and y becomes the formula's value there; NaN
// where it has none. Or x does, and then of each table only the curve selected first counts.
// Refused without a formula and without a selection, and when all points times the formula's
// operations are more than 1e10, which would take minutes.
void modifySelection(Document &document, bool yData);

// A variable as text, with all digits and a decimal point: what fitVariable knows, and the limits
// xmin, xmax, ymin, ymax, x2min, x2max (upper x axis), y2min, y2max (right y axis), fitmin and
// fitmax as they are shown. Refused: any other name.
std::string variableOf(const Document &document, const std::string &name);

} // namespace plotwerk

#endif
