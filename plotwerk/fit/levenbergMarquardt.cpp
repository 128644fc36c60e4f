#include "plotwerk/fit/levenbergMarquardt.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace plotwerk {

using Vector = std::vector<double>;

namespace {

struct Strategy {
    double memory; // part of a parameter's scale that is kept when the column of J shrinks
    bool uphill;   // whether a step that goes on in the last one's direction may raise chi-square
    int steps;     // at most
};

} // namespace

// First scales that never shrink (More, The Levenberg-Marquardt algorithm, 1978) and descent only:
// the safe way. Then scales that follow J and uphill steps, which get out of long curved valleys
// but need more steps. Of the tests' certified sets all but one get by with less than half of the
// first 1000; the hardest takes 2761 in all.
static constexpr Strategy strategies[] = {{1, false, 1000}, {0.5, true, 4000}};

// Points times steps that a strategy may take, so that a hopeless problem with many points ends
// long before its time is over. However many points there are, leastSteps are
// allowed.
static constexpr double mostWork = 1e8;
static constexpr int leastSteps = 200;

// With the usual first damping of 1e-3 (Press et al., Numerical Recipes) the first trials are
// mostly too long: 37 of 52 runs of the certified sets need fewer steps with this one, 14 more;
// between 0.1 and 0.5 it makes little difference. The damping is lowered by more than it is raised
// ("delayed gratification", Transtrum and Sethna, arXiv:1201.5885).
static constexpr double firstLambda = 0.2;
static constexpr double leastLambda = 1e-30; // far from underflow, and nothing beside J'J in double
static constexpr double mostLambda = 1e10;   // steps are lost in rounding
static constexpr double raise = 3;
static constexpr double lower = 9;

// Of the geodesic acceleration, as arXiv:1201.5885 has them: the part of a step over which the
// second derivative is measured, and how long the correction may be, doubled, beside the step. The
// paper takes 0.75 and less for hard problems.
static constexpr double reach = 0.1;
static constexpr double mostCurvature = 0.5;
// Where the gain is within this fraction of the linear model's, the path hardly curves, and the
// acceleration isn't worth its evaluation of the formula.
static constexpr double straight = 0.1;

// The solver hands over to the polish when an undamped step promises to lower chi-square by less
// than this part of it, the square of Bates and Watts' relative offset: there undamped steps
// converge, and differences of chi-square begin to drown in its rounding. So they do for any step
// that is hardly damped, by a thousandth of J's scale, and promises far less than chi-square's
// rounding.
static constexpr double smallOffset = 1e-10;
static constexpr double smallDecrease = 1e-20;
static constexpr double hardlyDamped = 1e-3;

// The residuals of exact data are rounding alone: at most this fraction of the data's norm.
static constexpr double dataRounding = 1e-14;

// A parameter is known to its last digit when it is to this part of it: half of a double's.
static constexpr double lastDigit = 1e-16;

// Where at least this fraction of each column of J is independent of those before it, the triangle
// in double is exact enough for the last step and the covariance: three of its 16 digits are lost.
static constexpr double independence = 1e-3;

// A bound is let go of when the cosine between the residuals and the parameter's derivatives says
// that chi-square falls away from it: by more than the root of a double's rounding. Solver and
// polish then go on, mostRounds times at most: parameters can take turns at their bounds.
static constexpr double smallRelease = 1e-8;
static constexpr int mostRounds = 20;

namespace {

// An iterate: parameters, the triangle of J | r there, and the sum of squares.
template<class Real> struct Iterate {
    std::vector<Real> b;
    RowReduction<Real> triangle;
    Real chiSquare;
};

} // namespace

template<class Real>
static Iterate<Real> iterateAt(Residuals<Real> &residuals, std::vector<Real> b) {
    Iterate<Real> iterate{std::move(b), residuals.newTriangle(), 0};
    iterate.chiSquare = residuals.linearise(iterate.b, iterate.triangle);
    return iterate;
}

static double scaledProduct(const Vector &scale, const Vector &u, const Vector &v) {
    double sum = 0;
    for (std::size_t j = 0; j < scale.size(); ++j) sum += scale[j] * u[j] * scale[j] * v[j];
    return sum;
}

// The triangle of J | r, less the columns that aren't varied, with the rows sqrt(lambda) * scale |
// 0 below. The others are moved as `moved` says.
static RowReduction<double> damped(const RowReduction<double> &triangle,
                                   const std::vector<int> &varied, const Vector &moved,
                                   double lambda, const Vector &scale) {
    const int p = triangle.columns();
    const int n = static_cast<int>(varied.size());
    RowReduction<double> result(n, p + n);
    std::vector<bool> isVaried(p);
    for (int k = 0; k < n; ++k) {
        const int j = varied[k];
        isVaried[j] = true;
        for (int i = 0; i <= j; ++i) result.column(k)[i] = triangle.R(i, j);
        result.column(k)[p + k] = std::sqrt(lambda) * scale[j];
    }
    for (int i = 0; i < p; ++i) result.column(n)[i] = triangle.q(i);
    for (int j = 0; j < p; ++j)
        if (!isVaried[j])
            for (int i = 0; i <= j; ++i) result.column(n)[i] -= triangle.R(i, j) * moved[j];
    result.absorb(p + n);
    return result;
}

// Decrease of the sum of squares along `step` in the linear model.
static double predictedDecrease(const RowReduction<double> &triangle, const Vector &step) {
    const int p = triangle.columns();
    double decrease = 0;
    for (int i = 0; i < p; ++i) {
        double along = 0;
        for (int j = i; j < p; ++j) along += triangle.R(i, j) * step[j];
        decrease += along * (2 * triangle.q(i) - along);
    }
    return decrease;
}

static double within(const Range &bounds, double value) {
    return std::fmin(std::fmax(value, bounds.min), bounds.max);
}

// Which parameters stand at a bound beyond which the sum of squares would fall. It falls along
// `descent`.
template<class Real>
static std::vector<bool> heldBack(const Vector &b, const std::vector<Real> &descent,
                                  const std::vector<Range> &bounds) {
    std::vector<bool> held(b.size());
    for (std::size_t j = 0; j < b.size(); ++j)
        held[j] = (b[j] == bounds[j].min && descent[j] <= 0) ||
                  (b[j] == bounds[j].max && descent[j] >= 0);
    return held;
}

static std::vector<int> notHeld(const std::vector<bool> &held) {
    std::vector<int> others;
    for (int j = 0; j < std::ssize(held); ++j)
        if (!held[j]) others.push_back(j);
    return others;
}

namespace {

// The damped steps.
class Solver {
  public:
    Solver(Residuals<double> &r, const Strategy &s, const Vector &start,
           const std::vector<Range> &parameterBounds)
        : residuals(r),
          strategy(s),
          bounds(parameterBounds),
          steps(std::min(s.steps, leastSteps + static_cast<int>(mostWork / r.points()))),
          current(iterateAt(r, start)),
          trial{start, r.newTriangle(), 0},
          scale(start.size()) {}

    bool hasStart() const { return std::isfinite(current.chiSquare); }

    // Until the residuals hardly change, or the steps are used up.
    void run() {
        updateScale();
        updateVaried();
        while (iterations < steps && lambda < mostLambda && step()) {
            ++iterations;
            residuals.countStep(current.chiSquare);
        }
    }

    const Iterate<double> &last() const { return current; }

    // Those at a bound that holds them back.
    std::vector<bool> held() const {
        return heldBack(current.b, current.triangle.descent(), bounds);
    }

    double lastLambda = firstLambda; // of the last step taken
    int iterations = 0;

  private:
    // False when there is nothing left to gain.
    bool step() {
        const double undamped = lengthOfUndamped();
        if (undamped * undamped <= smallOffset * current.chiSquare) return false;

        const DampedStep next = dampedStep();
        const Vector &velocity = next.velocity;
        const double predicted = predictedDecrease(current.triangle, velocity);
        const bool promising = predicted > smallDecrease * current.chiSquare;
        if (!promising && !next.meetsBound && lambda <= hardlyDamped) return false;

        const double length = std::sqrt(scaledProduct(scale, velocity, velocity));
        bool tooCurved = next.meetsBound && !promising;
        trial.b = current.b;
        for (std::size_t j = 0; j < velocity.size(); ++j) trial.b[j] += velocity[j];
        if (curved && !next.meetsBound) {
            const Vector acceleration = accelerationBeside(next);
            const double correction = std::sqrt(scaledProduct(scale, acceleration, acceleration));
            tooCurved = !(2 * correction <= mostCurvature * length);
            for (std::size_t j = 0; j < velocity.size(); ++j) trial.b[j] -= acceleration[j] / 2;
        }
        for (std::size_t j = 0; j < velocity.size(); ++j)
            trial.b[j] = within(bounds[j], trial.b[j]);

        if (!tooCurved) trial.chiSquare = residuals.linearise(trial.b, trial.triangle);
        if (tooCurved || !acceptable(velocity, length)) {
            lambda *= raise;
            curved = true;
            return true;
        }

        const double gained = (current.chiSquare - trial.chiSquare) / predicted;
        curved = !(std::abs(gained - 1) < straight);
        std::swap(current, trial);
        lastLambda = lambda;
        lambda = std::max(lambda / lower, leastLambda);
        lastVelocity = velocity;
        lastLength = length;
        updateScale();
        updateVaried();
        return true;
    }

    struct DampedStep {
        RowReduction<double> model;
        std::vector<int> varied; // the columns of the model
        Vector velocity;
        bool meetsBound;
    };

    // Parameters that would cross a bound are put on it, and the others' step is found anew.
    DampedStep dampedStep() const {
        std::vector<int> rest = varied;
        Vector velocity(scale.size());
        for (;;) {
            RowReduction<double> model = damped(current.triangle, rest, velocity, lambda, scale);
            const Vector step = model.solve();
            std::vector<int> inside;
            for (std::size_t k = 0; k < rest.size(); ++k) {
                const int j = rest[k];
                const double end = current.b[j] + step[k];
                const double kept = within(bounds[j], end);
                velocity[j] = kept == end ? step[k] : kept - current.b[j];
                if (kept == end || std::isnan(end)) inside.push_back(j);
            }
            if (inside.size() == rest.size())
                return {std::move(model), rest, velocity, rest.size() < varied.size()};
            rest = std::move(inside);
        }
    }

    Vector accelerationBeside(const DampedStep &next) {
        const Vector side = residuals.accelerationSide(current.b, next.velocity, reach);
        Vector ofVaried;
        for (const int j : next.varied) ofVaried.push_back(side[j]);
        const Vector solved = next.model.solveNormal(std::move(ofVaried));
        Vector acceleration(side.size());
        for (std::size_t k = 0; k < solved.size(); ++k) acceleration[next.varied[k]] = solved[k];
        return acceleration;
    }

    // By how much an undamped step of what is varied shortens the residuals, in the linear model.
    double lengthOfUndamped() const {
        if (varied.size() == scale.size()) return current.triangle.lengthOfQ();
        return damped(current.triangle, varied, Vector(scale.size()), 0, scale).lengthOfQ();
    }

    void updateVaried() { varied = notHeld(held()); }

    // Downhill, or uphill by no more than arXiv:1201.5885 accepts with the exponent 2.
    bool acceptable(const Vector &velocity, double length) const {
        if (trial.chiSquare < current.chiSquare) return true;
        if (!strategy.uphill || lastVelocity.empty()) return false;
        const double cosine = scaledProduct(scale, velocity, lastVelocity) / (length * lastLength);
        return cosine > 0 && (1 - cosine) * (1 - cosine) * trial.chiSquare <= current.chiSquare;
    }

    void updateScale() {
        for (std::size_t j = 0; j < scale.size(); ++j) {
            const double column = current.triangle.length(static_cast<int>(j));
            scale[j] = std::max(column, strategy.memory * scale[j]);
            if (scale[j] == 0) scale[j] = 1;
        }
    }

    Residuals<double> &residuals;
    Strategy strategy;
    const std::vector<Range> &bounds;
    int steps;
    Iterate<double> current;
    Iterate<double> trial;   // where the step being tried leads
    Vector scale;            // of the parameters: lengths of J's columns
    std::vector<int> varied; // parameters that no bound holds back
    double lambda = firstLambda;
    Vector lastVelocity; // of the last step taken
    double lastLength = 0;
    bool curved = true; // the last step's gain was not what the linear model had promised
};

// The undamped steps, until the parameters no longer change.
template<class Real> class Polish {
    // Enough for all of a double's digits where each step is at least a sixth shorter than the last
    // one, as is the case unless the residuals are very large.
    static constexpr int mostIterations = 200;
    // Steps halved so often without a gain are within rounding.
    static constexpr int mostFailures = 4;

    // At the minimum the relative offset is at most this, a ten thousandth of what the solver
    // leaves. And the factor by which the residual may have grown on the way: rounding, but no
    // other valley.
    static constexpr Real stationaryOffset = Real(1e-9L);
    static constexpr Real mostGrowth = Real(1.000001L);

    // Of the length of a column that depends on earlier ones some 1e-19, the rounding of a long
    // double, is left in the triangle, in determined problems at least 1e-12. And the part of such
    // a column that an earlier one must contribute to be named beside it.
    static constexpr Real dependence = Real(1e-15L);
    static constexpr Real partnership = Real(0.01L);

  public:
    Polish(Residuals<Real> &r, Iterate<Real> start)
        : residuals(r),
          best(std::move(start)),
          trial{best.b, r.newTriangle(), 0},
          startResidual(std::sqrt(best.chiSquare)) {}

    // Until every parameter is known to `tolerance` of its value, or will be to `withAnother` after
    // one more step, or rounding allows no more. contraction: by how much a step shortens the next
    // one, as far as known. False when this does not lead to where the gradient vanishes.
    bool run(Real tolerance, Real withAnother, Real contraction) {
        if (!std::isfinite(best.chiSquare)) return false;
        step = best.triangle.solve();
        Real fraction = 1; // of the undamped step that is taken
        int failures = 0;
        while (iterations < mostIterations && failures < mostFailures &&
               remaining(contraction) > std::max(tolerance, withAnother / contraction)) {
            if (!stepIsFinite()) return false;
            advance(trial, fraction);
            trial.chiSquare = residuals.linearise(trial.b, trial.triangle);
            ++iterations;
            const Real ratio = trial.triangle.lengthOfQ() / best.triangle.lengthOfQ();
            if (std::isfinite(trial.chiSquare) && ratio < 1) {
                if (iterations == 1) contraction = firstRatio = ratio;
                std::swap(best, trial);
                step = best.triangle.solve();
                failures = 0;
            } else {
                // too far where the residuals are large and the formula is strongly curved
                fraction /= 2;
                ++failures;
            }
            residuals.countStep(best.chiSquare);
        }
        if (failures == 0) advance(best, 1);
        return atMinimum();
    }

    // By how much the first step shortened the second one; 1 when there was none.
    Real contractionSeen() const { return firstRatio; }

    const std::vector<Real> &parameters() const { return best.b; }

    // The parameters that the data do not determine, empty when all are: those whose column of J
    // vanishes, and those whose column depends on earlier ones, with these.
    std::vector<int> undetermined() const {
        std::vector<int> found;
        if (!std::isfinite(best.chiSquare)) return found;
        const RowReduction<Real> &triangle = best.triangle;
        const int p = triangle.columns();
        std::vector<bool> dependent(p), partner(p);
        for (int j = 0; j < p; ++j) {
            const Real length = triangle.length(j);
            dependent[j] = std::abs(triangle.R(j, j)) <= dependence * length;
            if (!dependent[j]) continue;

            std::vector<Real> share(j); // of the earlier columns in this one
            for (int i = j - 1; i >= 0; --i) {
                if (dependent[i]) continue;
                share[i] = triangle.R(i, j);
                for (int k = i + 1; k < j; ++k) share[i] -= triangle.R(i, k) * share[k];
                share[i] /= triangle.R(i, i);
                if (std::abs(share[i]) * triangle.length(i) > partnership * length)
                    partner[i] = true;
            }
        }
        for (int j = 0; j < p; ++j)
            if (dependent[j] || partner[j]) found.push_back(j);
        return found;
    }

    const Iterate<Real> &last() const { return best; }

    int iterations = 0;

  private:
    void advance(Iterate<Real> &iterate, Real fraction) const {
        for (std::size_t j = 0; j < step.size(); ++j) iterate.b[j] = best.b[j] + fraction * step[j];
    }

    // What is left to gain is negligible beside the residuals or the rounding of the data, and the
    // steps have not led to another stationary point that is worse than the start.
    bool atMinimum() const {
        const Real rounding = dataRounding * residuals.dataLength();
        const Real residual = std::sqrt(best.chiSquare);
        const bool stationary =
            best.triangle.lengthOfQ() <= std::max(stationaryOffset * residual, rounding);
        return stationary && residual <= std::max(mostGrowth * startResidual, rounding);
    }

    bool stepIsFinite() const {
        return std::ranges::all_of(step, [](Real part) { return std::isfinite(part); });
    }

    // The largest relative error of a parameter that the next step leaves.
    Real remaining(Real contraction) const {
        Real most = 0;
        for (std::size_t j = 0; j < best.b.size(); ++j)
            if (step[j] != 0) most = std::max(most, contraction * std::abs(step[j] / best.b[j]));
        return stepIsFinite() ? most : 1;
    }

    Residuals<Real> &residuals;
    Iterate<Real> best;
    Iterate<Real> trial;
    std::vector<Real> step; // the undamped one from the best iterate
    Real startResidual;
    Real firstRatio = 1;
};

} // namespace

template<class Real>
static void report(Real chiSquare, const RowReduction<Real> &triangle, Minimum &minimum) {
    const int p = triangle.columns();
    minimum.chiSquare = static_cast<double>(chiSquare);
    minimum.covariance.clear();
    for (int i = 0; i < p; ++i) {
        std::vector<Real> unit(p);
        unit[i] = 1;
        const std::vector<Real> row = triangle.solveNormal(unit);
        for (int j = 0; j <= i; ++j) minimum.covariance.push_back(static_cast<double>(row[j]));
    }
}

static bool isWellConditioned(const RowReduction<double> &triangle) {
    for (int j = 0; j < triangle.columns(); ++j)
        if (!(std::abs(triangle.R(j, j)) > independence * triangle.length(j))) return false;
    return true;
}

// The extended polish in less time, by one step of which only the direction of descent, which is
// what cancels out at a minimum, is computed in extended precision. False, and nothing has changed,
// where that may not settle the last digits of b.
static bool refined(const Polish<double> &rough, Residuals<long double> &extended, Vector &b,
                    Minimum &minimum) {
    const RowReduction<double> &triangle = rough.last().triangle;
    if (!isWellConditioned(triangle)) return false;

    std::vector<long double> descent;
    const long double chiSquare = extended.descend({b.begin(), b.end()}, descent);
    const Vector step = triangle.solveNormal({descent.begin(), descent.end()});
    for (std::size_t j = 0; j < b.size(); ++j)
        if (!(rough.contractionSeen() * std::abs(step[j]) <= lastDigit * std::abs(b[j])))
            return false;
    for (std::size_t j = 0; j < b.size(); ++j) b[j] += step[j];
    report(static_cast<double>(chiSquare), triangle, minimum);
    return true;
}

// Both polishes of the parameters that aren't held, from `start` on, and what is the minimum then:
// its b goes to the others' places in b. False when they don't lead to one.
static bool polished(Residuals<double> &residuals, Residuals<long double> &extended,
                     const Iterate<double> &start, Vector &b, const std::vector<bool> &held,
                     Minimum &minimum) {
    const std::vector<int> varied = notHeld(held);
    const auto move = [&](const auto &to) {
        for (std::size_t k = 0; k < varied.size(); ++k) b[varied[k]] = static_cast<double>(to[k]);
    };
    minimum.undetermined.clear();

    // to some fifty roundings, or to what the other polish makes none
    Polish<double> rough(residuals, start);
    const bool settled = rough.run(1e-14, 1e-17, 1);
    minimum.iterations += rough.iterations;
    Vector near = rough.parameters();
    if (settled && refined(rough, extended, near, minimum)) {
        move(near);
        return true;
    }
    Polish<long double> polish(extended, iterateAt(extended, {near.begin(), near.end()}));
    const bool stationary = polish.run(lastDigit, 0, rough.contractionSeen());
    minimum.iterations += polish.iterations;
    move(polish.parameters());

    for (const int k : polish.undetermined()) minimum.undetermined.push_back(varied[k]);
    if (!stationary || !minimum.undetermined.empty()) return false;
    report(polish.last().chiSquare, polish.last().triangle, minimum);
    return true;
}

// Lets go of bounds that the sum of squares falls away from, by more than rounding and what the
// polish leaves. False when there are none.
static bool release(Residuals<double> &residuals, const Vector &b, const std::vector<Range> &bounds,
                    std::vector<bool> &held) {
    if (std::ranges::find(held, true) == held.end()) return false;

    RowReduction<double> triangle = residuals.newTriangle();
    const double length = std::sqrt(residuals.linearise(b, triangle));
    const double small = std::max(smallRelease * length, dataRounding * residuals.dataLength());
    const Vector descent = triangle.descent();
    const std::vector<bool> needed = heldBack(b, descent, bounds);
    bool any = false;
    for (int j = 0; j < std::ssize(b); ++j) {
        if (!held[j] || needed[j] || std::abs(descent[j]) <= small * triangle.length(j)) continue;
        held[j] = false;
        any = true;
    }
    return any;
}

// Puts parameters that have left their bounds on them. False when all keep to them.
static bool putBack(Vector &b, const std::vector<Range> &bounds, std::vector<bool> &held) {
    bool any = false;
    for (std::size_t j = 0; j < b.size(); ++j) {
        const double inside = within(bounds[j], b[j]);
        if (inside == b[j] || std::isnan(b[j])) continue;
        b[j] = inside;
        held[j] = any = true;
    }
    return any;
}

Minimum minimise(Residuals<double> &residuals, Residuals<long double> &extended,
                 const Vector &start, const std::vector<Range> &bounds) {
    Minimum minimum;
    for (const Strategy &strategy : strategies) {
        Vector b = start;
        for (int round = 0; round < mostRounds; ++round) {
            Solver solver(residuals, strategy, b, bounds);
            if (!solver.hasStart()) {
                minimum.termination = Termination::noStart;
                return minimum;
            }
            solver.run();
            minimum.iterations += solver.iterations;
            minimum.lambda = solver.lastLambda;
            b = solver.last().b;
            std::vector<bool> held = solver.held();

            bool found = false;
            do {
                if (std::ranges::find(held, true) == held.end()) {
                    found = polished(residuals, extended, solver.last(), b, held, minimum);
                } else {
                    Residuals<double> less = residuals.holding(b, held);
                    Residuals<long double> lessExtended = extended.holding(b, held);
                    Vector rest;
                    for (const int j : notHeld(held)) rest.push_back(b[j]);
                    found = polished(less, lessExtended, iterateAt(less, std::move(rest)), b, held,
                                     minimum);
                }
            } while (putBack(b, bounds, held));
            minimum.termination = minimum.undetermined.empty() ? Termination::notConverged
                                                               : Termination::undetermined;
            if (!found) break;
            if (release(residuals, b, bounds, held)) continue;

            minimum.termination = Termination::converged;
            minimum.b = std::move(b);
            minimum.atBound = std::move(held);
            return minimum;
        }
    }
    return minimum;
}

} // namespace plotwerk
