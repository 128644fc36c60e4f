// parameterText.h - the parameters of a formula, written as text.
#ifndef PLOTWERK_MODEL_PARAMETERTEXT_H
#define PLOTWERK_MODEL_PARAMETERTEXT_H

#include "plotwerk/model/document.h"

#include <string>
#include <vector>

namespace plotwerk {

// A line for each parameter, which readParameterList reads again: what valueText gives, then
// " [least; most]" of bounds that there are, " |" where a fit has ended at one, " !" behind fixed
// ones. Numbers have the decimal separator. No line feed at the end.
//   {a, 1.5, 0.02}, {b, 2, fixed} -> "a = 1.500 +- 0.020\nb = 2 !"    {c, 5, [0, 5]} -> "c = 5 [0;
//   5]"
std::string parameterList(const std::vector<FitParameter> &parameters, char decimalSeparator);

// "name = value +- error" with the digits that the error justifies, or "name = value" with all that
// it carries when there is no error above 0.
std::string valueText(const FitParameter &parameter, char decimalSeparator);

// The shortest text that gives the same double again, with a decimal point; "NAN".
std::string allDigits(double value);

} // namespace plotwerk

#endif
