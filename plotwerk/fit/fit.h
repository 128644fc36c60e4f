// fit.h - a formula's parameters fitted to data.
#ifndef PLOTWERK_FIT_FIT_H
#define PLOTWERK_FIT_FIT_H

#include "plotwerk/formula/formula.h"
#include "plotwerk/model/document.h"

#include <chrono>
#include <span>
#include <string>
#include <vector>

namespace plotwerk {

// x and y are of one length, and so are the errors, the standard deviations of y, unless they are
// empty: then all points weigh the same. Unset limits of the range are none.
struct FitData {
    std::span<const double> x;
    std::span<const double> y;
    std::span<const double> errors;
    Range range;
};

// As `startFit...` answers it.
enum FitStatus : int {
    fitConverged = 0,
    fitImpossible = 1,   // the formula, the data and the parameters don't make a problem
    fitWithoutValue = 2, // the formula has no finite value or derivative where the fit begins
    fitUndetermined = 3, // the data don't determine all parameters
    fitNotConverged = 4
};

struct FitOutcome {
    FitStatus status = fitConverged;
    std::string reason; // one line, unless it converged
    FitResult result;   // done when it converged; without that chiSquare is unset
};

// Minimises the sum of ((y - formula(x)) / error)^2 over the points of the range by the parameters
// that aren't fixed, from their values on. Converged, it sets their values and errors, and the
// fixed ones' errors to unset; otherwise the parameters stay as they were.
//
// Takes part: a point with finite x and y and, when there are errors, a finite one above 0 (a point
// without a known error has no known weight).
//
// An error is the parameter's standard deviation with the residuals as the measure of the scatter:
// sqrt(chiSquare / (points - free parameters) * diagonal of the inverse of J'J). That holds with
// given errors, too: they only tell the points' relative weights. Unset when there are as many
// parameters as points. With no free parameter nothing but chiSquare is found.
//
// parameters: one for each of formula.parameterNames(), in that order.
// There may be at most 500 free parameters, since the time for a step grows with their third power.
// limit: when it has passed the fit is given up as not converged; only millions of points come
// near.
FitOutcome fit(const Formula &formula, const FitData &data, std::vector<FitParameter> &parameters,
               std::chrono::seconds limit = std::chrono::seconds(120));

} // namespace plotwerk

#endif
