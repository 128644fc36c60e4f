// fitVariables.h - what a fit has found out, as text.
#ifndef PLOTWERK_FIT_FITVARIABLES_H
#define PLOTWERK_FIT_FITVARIABLES_H

#include "plotwerk/model/document.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

// Value of a variable of the fit, with all the digits that it carries and a decimal point: a
// parameter's name, NAME.error; of the result iterations, lambda, chiq, points, ndf, redchi,
// rsquared, covariance.A.B and correlation.A.B of the parameters A and B, report. What isn't known
// (no fit yet, the error of a fixed parameter) is "NAN". A parameter called like a variable hides
// it. Empty: there is no such variable.
std::optional<std::string> fitVariable(std::string_view name,
                                       const std::vector<FitParameter> &parameters,
                                       const FitResult &result);

// What a paper tells of the fit, a line each: formula; points, those left out of its range, and
// why; degrees of freedom; chi-square, reduced too, and with errors of the data the probability of
// a larger one by chance; R-squared; how the parameters' errors were found; each parameter with
// error and relative error; pairs whose correlation is above 0.9. "no fit" without one.
std::string fitReport(const FitResult &fit);

} // namespace plotwerk

#endif
