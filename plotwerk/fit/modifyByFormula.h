// modifyByFormula.h - data that a document's formula changes.
#ifndef PLOTWERK_FIT_MODIFYBYFORMULA_H
#define PLOTWERK_FIT_MODIFYBYFORMULA_H

#include "plotwerk/model/document.h"

namespace plotwerk {

// Sets y of every selected curve to the formula's value, at all points that have x and y; NaN where
// the formula has no value. Errors of y are multiplied by the magnitude of its derivative by y,
// unless they are selected, too, or it doesn't use y. Without yData it sets x instead, and of each
// table only the curve selected first counts. With multiDimFit the formula's variables are the
// columns of the curve's table. Refused: no formula, no selection, and more than 1e10 operations
// (points times those of the formula), which would take minutes.
void modifySelection(Document &document, bool yData);

} // namespace plotwerk

#endif
