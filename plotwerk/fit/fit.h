// fit.h - a formula's parameters fitted to data.
#ifndef PLOTWERK_FIT_FIT_H
#define PLOTWERK_FIT_FIT_H

#include "plotwerk/base/bounds.h"
#include "plotwerk/fit/fitProgress.h"
#include "plotwerk/formula/formula.h"
#include "plotwerk/model/document.h"

#include <span>
#include <string>
#include <vector>

namespace plotwerk {

// x and y are of one length, and so are the errors, the standard deviations of y, unless they are
// empty: then all points weigh the same. Unset limits of the range are none. absoluteErrors: the
// errors are known as such, not only up to a common factor.
struct FitData {
    std::span<const double> x;
    std::span<const double> y;
    std::span<const double> errors;
    Range range;
    bool absoluteErrors = false;
    std::vector<std::span<const double>> columns{}; // that the formula reads
};

// The rows that take part in a fit: see fit.
std::vector<int> rowsOfFit(const FitData &data);

// As `startFit...` answers it.
enum FitStatus : int {
    fitConverged = 0,
    fitImpossible = 1,   // formula, data and parameters can't be fitted (reason says why)
    fitWithoutValue = 2, // the formula has no finite value or derivative at the start
    fitUndetermined = 3, // the data don't determine all parameters
    fitNotConverged = 4
};

struct FitOutcome {
    FitStatus status = fitConverged;
    std::string reason; // unless it converged: one line with the status, why, and what may help
    FitResult result;   // done when it converged; without that chiSquare is unset
};

// Minimises the sum of ((y - formula(x)) / error)^2 over the points of the range by varying the
// parameters that aren't fixed, starting from their values. When it has converged their values and
// errors are set, and the errors of fixed ones are unset; otherwise the parameters stay as they
// were.
//
// A point takes part when x, y and the columns are finite and its error, if there are errors, is
// finite and above 0: without a known error it has no known weight.
//
// Parameters keep to their bounds; one that ends at a bound has no error, and counts as fixed in
// what follows.
//
// A parameter's error is its standard deviation: the root of the diagonal of the inverse of J'J,
// times the scatter, estimated from the residuals as chiSquare / (points - free parameters). Given
// errors don't change that, being relative weights, unless they are absolute: then there is no such
// factor. Errors and covariance are unset when the scatter is to be estimated from as many points
// as free parameters. If all parameters are fixed only chiSquare is computed.
//
// parameters: one for each of formula.parameterNames(), in that order. At most 500 may be free.
// seconds: beyond this estimated time the fit is given up as not converged.
// run: has the search for the minimum done; empty: it is done at once. Cancelled, the fit counts as
// not converged.
FitOutcome fit(const Formula &formula, const FitData &data, std::vector<FitParameter> &parameters,
               double seconds = mostSeconds(), const FitRunner &run = {});

} // namespace plotwerk

#endif
