// documentFit.h - a document's formula fitted to its data.
#ifndef PLOTWERK_FIT_DOCUMENTFIT_H
#define PLOTWERK_FIT_DOCUMENTFIT_H

#include "plotwerk/fit/fit.h"
#include "plotwerk/model/document.h"

namespace plotwerk {

// Fits the formula to the curve that curveToFit finds. Points outside the fit range don't take
// part. The errors are in the table's column "NAME error", if there is one.
//
// With multiDimFit the names of the table's columns are variables of the formula: their values at
// the point, x and y (which a fit refuses) included. Points without them take no part.
//
// A fit that has converged sets the parameters and the result, and shows what fitTables makes of
// them in a source "Fit".
//
// The next fit replaces these curves, keeping names, looks and selection, unless the user has made
// the source his own: by adding columns to one of these tables or rows to the source, by reading
// other data into it, or by marking one of the curves as fit data. A fit that fails changes nothing
// but the document's fitStatus. The log tells of points in the range that were left out. Refused:
// no formula, no curve to fit. While `run` (see fit) has the minimum searched for, the document
// must stay as it is.
FitOutcome fitDocument(Document &document, const FitRunner &run = {});

} // namespace plotwerk

#endif
