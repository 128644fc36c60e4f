// documentFit.h - a document's formula: set, fitted to its data, applied to its data.
#ifndef PLOTWERK_FIT_DOCUMENTFIT_H
#define PLOTWERK_FIT_DOCUMENTFIT_H

#include "plotwerk/fit/fit.h"
#include "plotwerk/model/attributes.h"
#include "plotwerk/model/document.h"

#include <string>

namespace plotwerk {

// Parameters that the old formula had, too, keep their values. Another text than before forgets the
// last fit and its errors. Refused as Formula refuses.
void setFormula(Document &document, const std::string &text);

// Refused as readParameterList refuses.
void setParameters(Document &document, const std::string &list, char decimalSeparator);

// What setParameters reads again, also with line feeds turned into blanks.
std::string parametersOf(const Document &document, char decimalSeparator);

// Changes settings of the frame. Where multiDimFit changes, so does what the formula's names stand
// for: see fitDocument.
void changeFrameWithFormula(Document &document, const FrameChange &change);

// Fits the formula to the fit data, or else to the first selected curve, or else to the only one;
// what the last fit has drawn doesn't count as a curve there. Points outside the fit range don't
// take part. The errors are in the table's column "NAME error", if there is one.
//
// With multiDimFit the names of the table's columns are variables of the formula: their values at
// the point, x and y (which a fit refuses) included. Points without them take no part.
//
// A fit that has converged sets the parameters and the result, and makes a new last source "Fit" of
// two tables. The first has the formula as the only curve "Fit": over the fit range, or as far as
// the points go where that has no limit; with variables beside x at the points. The second has the
// hidden curve "Residuals" at the points, and with errors another, "Residuals/σ".
//
// The next fit replaces these curves, keeping names, looks and selection, unless the user has made
// the source his own: by adding columns to one of these tables or rows to the source, by reading
// other data into it, or by marking one of the curves as fit data. A fit that fails changes nothing
// but the document's fitStatus. Refused: no formula, no curve to fit. While `run` (see fit) has the
// minimum searched for, the document must stay as it is.
FitOutcome fitDocument(Document &document, const FitRunner &run = {});

// Sets y of every selected curve to the formula's value, at all points that have x and y; NaN where
// the formula has no value. Errors of y are multiplied by the magnitude of its derivative by y,
// unless they are selected, too, or it doesn't use y. Without yData it sets x instead, and of each
// table only the curve selected first counts. With multiDimFit the formula's variables are the
// columns of the curve's table. Refused: no formula, no selection, and more than 1e10 operations
// (points times those of the formula), which would take minutes.
void modifySelection(Document &document, bool yData);

// A variable as text, with all digits and a decimal point: what fitVariable knows, the status of
// the last fit, "NAN" before, and the limits xmin, xmax, ymin, ymax, x2min, x2max (upper x axis),
// y2min, y2max (right y axis), fitmin and fitmax as they are shown. Refused: any other name.
std::string variableOf(const Document &document, const std::string &name);

} // namespace plotwerk

#endif
