// levenbergMarquardt.h - the minimum of a sum of squared residuals.
#ifndef PLOTWERK_FIT_LEVENBERGMARQUARDT_H
#define PLOTWERK_FIT_LEVENBERGMARQUARDT_H

#include "plotwerk/fit/residuals.h"
#include "plotwerk/model/document.h"

#include <vector>

namespace plotwerk {

enum class Termination {
    converged,    // the parameters are those of the minimum, to their last digits
    noStart,      // no finite sum of squares, or derivatives, at the start
    undetermined, // at the last iterate the data leave some parameters undetermined
    notConverged  // no minimum within the number of steps allowed
};

struct Minimum {
    Termination termination = Termination::notConverged;
    std::vector<double> b;
    std::vector<bool> atBound; // for each of b
    // Of the others, per unit of residual variance: the lower triangle, row by row.
    std::vector<double> covariance;
    double chiSquare = 0;
    double lambda = 0;             // damping of the last step that was taken
    int iterations = 0;            // steps tried
    std::vector<int> undetermined; // which of b, when some are
};

// Minimises from `start` on, in two stages. The solver takes damped steps in double precision
// (Levenberg and Marquardt, with More's scaling and the geodesic acceleration of Transtrum and
// Sethna) until the residuals hardly change. From there the polish takes undamped Gauss-Newton
// steps, in double and then in extended precision, until the parameters no longer change; where
// the problem is well conditioned one step with the descent in extended precision is enough. If
// that leads into a region where the data don't determine the parameters (an exponential that has
// decayed to nothing, a rational function that has become flat), both stages are run once more from
// the start with a bolder strategy: scales may shrink again, and a step may go uphill.
//
// Bounds hold at every step: parameters at a bound beyond which the sum would fall are left out of
// the next step (the active set of Bertsekas' projected Newton method, SIAM J. Control Optim. 20,
// 1982), and one whose step would lead over its bound goes there, while the others take the best
// step beside it. The polish holds the former fixed; a bound that turns out to hold nothing back is
// let go of, and both stages go on from there.
//
// The two Residuals are those of the same problem. bounds: one for each of b, unset limits are
// none, and `start` keeps to them. Needs at least as many points as parameters. Without parameters
// it converges at once.
Minimum minimise(Residuals<double> &residuals, Residuals<long double> &extended,
                 const std::vector<double> &start, const std::vector<Range> &bounds);

} // namespace plotwerk

#endif
