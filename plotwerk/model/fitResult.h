// fitResult.h - what the result of a fit says about its parameters together.
#ifndef PLOTWERK_MODEL_FITRESULT_H
#define PLOTWERK_MODEL_FITRESULT_H

#include "plotwerk/model/document.h"

#include <string>
#include <vector>

namespace plotwerk {

// Indexes of the parameters that the fit has varied: neither fixed nor at a bound.
std::vector<int> variedParameters(const FitResult &fit);

// Covariance of the varied parameters number i and j (not their indexes). Unset where it isn't
// known.
double covarianceOf(const FitResult &fit, int i, int j);

// How many points were left out, and why: "3 points without an error above 0, 1 point without a
// finite value". Empty where all took part.
std::string leftOutOf(const FitResult &fit);

// The factor by which a standard deviation becomes half of the interval that holds 95 % of what may
// be: Student's t, or the normal distribution's where the errors of the data were absolute. Unset
// without degrees of freedom.
double factorOf95Percent(const FitResult &fit);

} // namespace plotwerk

#endif
