// levenbergMarquardt.h - the minimum of a sum of squared residuals.
#ifndef PLOTWERK_FIT_LEVENBERGMARQUARDT_H
#define PLOTWERK_FIT_LEVENBERGMARQUARDT_H

#include "plotwerk/fit/residuals.h"

#include <vector>

namespace plotwerk {

enum class Ending {
    minimum,      // the parameters are the minimum's, to their last digits
    noStart,      // no finite sum of squares, or derivatives, at the start
    undetermined, // where the search ended, the data do not tell some of the parameters (apart)
    notFound      // no minimum after as many steps as are allowed
};

struct Minimum {
    Ending ending = Ending::notFound;
    std::vector<double> b;
    std::vector<double> deviations; // standard deviation of b per unit of residual variance
    double chiSquare = 0;
    double lambda = 0;      // damping of the last step that was taken
    int iterations = 0;     // steps tried
    std::vector<int> vague; // undetermined: which of b
};

// Searches from b on. In two parts: damped steps (Levenberg and Marquardt, with More's scaling,
// corrected for the curvature of the path as Transtrum and Sethna do) in double precision until the
// residuals barely change; from there undamped ones in extended precision until the numbers stand
// still. A search that strays into a region where the data no longer determine the parameters
// (an exponential that has died out, a rational function that has become flat) is begun anew, with
// steps that forget the first scales and may lead uphill.
//
// The two Residuals are those of the same problem. Needs at least as many points as parameters.
// Without parameters it ends at once.
Minimum minimise(Residuals<double> &residuals, Residuals<long double> &extended,
                 const std::vector<double> &start);

} // namespace plotwerk

#endif
