// documentFormula.h - a document's formula and its parameters: set, read, and compiled for a curve.
#ifndef PLOTWERK_FIT_DOCUMENTFORMULA_H
#define PLOTWERK_FIT_DOCUMENTFORMULA_H

#include "plotwerk/formula/formula.h"
#include "plotwerk/model/attributes.h"
#include "plotwerk/model/document.h"

#include <optional>
#include <string>
#include <vector>

namespace plotwerk {

// Whether a fit has made the column.
bool isOfFit(const Column &column);

// The fit data, or else the first selected curve, or else the only one; what the last fit has drawn
// doesn't count as a curve there.
std::optional<CurveRef> curveToFit(const Document &document);

// Refused: no formula.
void requireFormula(const Document &document);

// The formula as it is for that curve: with multiDimFit the names of its table's columns are
// variables. Refused as Formula refuses.
Formula formulaFor(const Document &document, const CurveRef &curve);

// The time of that, in nanoseconds.
double compilingTime(const Document &document, const CurveRef &curve);

// The document's parameters as that formula takes them.
std::vector<FitParameter> parametersFor(const Document &document, const Formula &formula);

std::vector<double> valuesOf(const std::vector<FitParameter> &parameters);

// Parameters that the old formula had, too, keep their values. Another text than before forgets the
// last fit and its errors. Refused as Formula refuses.
void setFormula(Document &document, const std::string &text);

// Refused as readParameterList refuses.
void setParameters(Document &document, const std::string &list, char decimalSeparator);

// What setParameters reads again, also with line feeds turned into blanks.
std::string parametersOf(const Document &document, char decimalSeparator);

// Changes settings of the frame. Where multiDimFit changes, so does what the formula's names stand
// for: see formulaFor.
void changeFrameWithFormula(Document &document, const FrameChange &change);

} // namespace plotwerk

#endif
