// documentVariables.h - a document's variables: what its last fit found, and its ranges.
#ifndef PLOTWERK_FIT_DOCUMENTVARIABLES_H
#define PLOTWERK_FIT_DOCUMENTVARIABLES_H

#include "plotwerk/model/document.h"

#include <string>

namespace plotwerk {

// A variable as text, with all digits and a decimal point: what fitVariable knows, the status of
// the last fit, "NAN" before, and the limits xmin, xmax, ymin, ymax, x2min, x2max (upper x axis),
// y2min, y2max (right y axis), fitmin and fitmax as they are shown. Refused: any other name.
std::string variableOf(const Document &document, const std::string &name);

} // namespace plotwerk

#endif
