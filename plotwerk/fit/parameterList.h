// parameterList.h - the parameters of a formula as text, and the variables of a fit.
#ifndef PLOTWERK_FIT_PARAMETERLIST_H
#define PLOTWERK_FIT_PARAMETERLIST_H

#include "plotwerk/model/document.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

// Parameters of these names in that order. What `known` has of a name is kept, so that a formula
// can be edited without losing values; others are 1, free.
std::vector<FitParameter> parametersNamed(const std::vector<std::string> &names,
                                          const std::vector<FitParameter> &known);

// Reads assignments "name = value", one per line or between commas, as scanEquation does. A value
// that ends in '!', or is followed by a lone '!', is held fixed, one without is free; "+- error"
// behind a value is passed over. Parameters that the list does not name stay as they are, of two
// values for one the last counts, and a new value has no error.
//   "a = 1.5, b=2!"   "a = 1.50 +- 0.02\nb = 2 !"
// A comma separates; only when it is the decimal separator as well, one between two digits belongs
// to the number. A point is a decimal point in any case. Throws a Refusal, and leaves all
// parameters as they were, for a name that isn't a parameter's, for a value that isn't a finite
// number and for text that is no assignment.
void readParameterList(std::string_view text, char decimalSeparator,
                       std::vector<FitParameter> &parameters);

// Value of a variable of the fit, with all the digits that it carries and a decimal point: a
// parameter's name, NAME.error, chiq, iterations, lambda, points. What isn't known (no fit yet, the
// error of a fixed parameter) is "NAN". A parameter called like a variable hides it. Empty: there
// is no such variable.
std::optional<std::string> fitVariable(std::string_view name,
                                       const std::vector<FitParameter> &parameters,
                                       const FitResult &result);

} // namespace plotwerk

#endif
