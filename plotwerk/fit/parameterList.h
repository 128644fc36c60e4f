// parameterList.h - the parameters of a formula, read from text.
#ifndef PLOTWERK_FIT_PARAMETERLIST_H
#define PLOTWERK_FIT_PARAMETERLIST_H

#include "plotwerk/model/document.h"

#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

// Parameters of these names in that order. What `known` has of a name is kept, so that a formula
// can be edited without losing values; others are 1, free.
std::vector<FitParameter> parametersNamed(const std::vector<std::string> &names,
                                          const std::vector<FitParameter> &known);

// Reads assignments "name = value", one per line or between commas, as scanEquation does. A value
// that ends in '!', or is followed by a lone '!', is held fixed, one without is free; bounds may
// follow a value, "[least, most]" with a comma or a semicolon between, of which one may be left
// out, and a value without them has none. "+- error" and "|" behind a value are passed over.
// Parameters that the list does not name stay as they are, of two values for one the last counts,
// and a new value has no error. A line `absolute` or `scaled` says what errors of the data are
// worth.
//   "a = 1.5, b=2!"   "a = 1.50 +- 0.02 [0; 5]\nb = 2 !\nabsolute"
// A comma separates; only when it is the decimal separator as well, one between two digits belongs
// to the number. A point is a decimal point in any case. Throws a Refusal, and changes nothing, for
// a name that isn't a parameter's, for a value or bound that isn't a finite number, for a value
// beyond its bounds or bounds without a way between them, and for text that is no assignment.
void readParameterList(std::string_view text, char decimalSeparator,
                       std::vector<FitParameter> &parameters, bool &absoluteErrors);

} // namespace plotwerk

#endif
