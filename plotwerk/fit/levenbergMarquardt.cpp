#include "plotwerk/fit/levenbergMarquardt.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace plotwerk {

namespace {

using Vector = std::vector<double>;

struct Strategy {
    double memory; // part of a parameter's scale that a step leaves when the column of J shrinks
    bool uphill;   // whether a step that goes on in the last one's direction may raise chi-square
    int steps;     // at most
};

// The first is the more careful one; the second gets out of long curved valleys.
constexpr Strategy strategies[] = {{1, false, 1000}, {0.5, true, 4000}};

// Points times steps that a strategy may take, so that a hopeless search of many points ends.
constexpr double mostWork = 1e8;

constexpr double firstLambda = 1e-3;
constexpr double leastLambda = 1e-30;
constexpr double mostLambda = 1e10; // steps are lost in rounding
constexpr double raise = 3;
constexpr double lower = 9;
constexpr double reach = 0.1;         // part of a step over which its path's curvature is measured
constexpr double mostCurvature = 0.5; // length of the correction over the step's, doubled

// Parameters, the triangle of J | r there, and the sum of squares.
template<class Real> struct Place {
    std::vector<Real> b;
    RowReduction<Real> triangle;
    Real chiSquare;
};

double scaledProduct(const Vector &scale, const Vector &u, const Vector &v) {
    double sum = 0;
    for (std::size_t j = 0; j < scale.size(); j++) sum += scale[j] * u[j] * scale[j] * v[j];
    return sum;
}

// The triangle of J | r with the rows sqrt(lambda) * scale | 0 below.
RowReduction<double> damped(const RowReduction<double> &triangle, double lambda,
                            const Vector &scale) {
    const int p = triangle.columns();
    RowReduction<double> result(p, 2 * p);
    for (int j = 0; j < p; j++) {
        for (int i = 0; i <= j; i++) result.column(j)[i] = triangle.R(i, j);
        result.column(j)[p + j] = std::sqrt(lambda) * scale[j];
        result.column(p)[j] = triangle.q(j);
    }
    result.absorb(2 * p);
    return result;
}

// Decrease of the sum of squares along `step` in the linear model.
double predictedDecrease(const RowReduction<double> &triangle, const Vector &step) {
    const int p = triangle.columns();
    double decrease = 0;
    for (int i = 0; i < p; i++) {
        double along = 0;
        for (int j = i; j < p; j++) along += triangle.R(i, j) * step[j];
        decrease += along * (2 * triangle.q(i) - along);
    }
    return decrease;
}

class Search {
  public:
    Search(Residuals<double> &r, const Strategy &s, const Vector &start)
        : residuals(r),
          strategy(s),
          steps(std::min(s.steps, 200 + static_cast<int>(mostWork / r.points()))),
          here{start, r.newTriangle(), 0},
          there{start, r.newTriangle(), 0},
          scale(start.size()) {
        here.chiSquare = residuals.linearise(here.b, here.triangle);
    }

    bool hasStart() const { return std::isfinite(here.chiSquare); }

    // Until the residuals barely change, or steps are spent.
    void run() {
        updateScale();
        while (iterations < steps && lambda < mostLambda && step()) iterations++;
    }

    const Vector &parameters() const { return here.b; }

    double lastLambda = firstLambda; // of the last step taken
    int iterations = 0;

  private:
    // False when there is nothing to be gained any more.
    bool step() {
        const double undamped = here.triangle.lengthOfQ();
        if (undamped * undamped <= 1e-12 * here.chiSquare) return false;

        const RowReduction<double> model = damped(here.triangle, lambda, scale);
        const Vector velocity = model.solve();
        const double predicted = predictedDecrease(here.triangle, velocity);
        if (predicted <= 1e-20 * here.chiSquare && lambda <= firstLambda) return false;

        const double length = std::sqrt(scaledProduct(scale, velocity, velocity));
        bool tooCurved = false;
        there.b = here.b;
        for (std::size_t j = 0; j < velocity.size(); j++) there.b[j] += velocity[j];
        if (curved) {
            const Vector bent = model.solveNormal(residuals.bend(here.b, velocity, reach));
            const double correction = std::sqrt(scaledProduct(scale, bent, bent));
            tooCurved = !(2 * correction <= mostCurvature * length);
            for (std::size_t j = 0; j < velocity.size(); j++) there.b[j] -= bent[j] / 2;
        }

        if (!tooCurved) there.chiSquare = residuals.linearise(there.b, there.triangle);
        if (tooCurved || !acceptable(velocity, length)) {
            lambda *= raise;
            curved = true;
            return true;
        }

        const double gained = (here.chiSquare - there.chiSquare) / predicted;
        curved = !(std::abs(gained - 1) < 0.1);
        std::swap(here, there);
        lastLambda = lambda;
        lambda = std::max(lambda / lower, leastLambda);
        lastVelocity = velocity;
        lastLength = length;
        updateScale();
        return true;
    }

    bool acceptable(const Vector &velocity, double length) const {
        if (there.chiSquare < here.chiSquare) return true;
        if (!strategy.uphill || lastVelocity.empty()) return false;
        const double cosine = scaledProduct(scale, velocity, lastVelocity) / (length * lastLength);
        return cosine > 0 && (1 - cosine) * (1 - cosine) * there.chiSquare <= here.chiSquare;
    }

    void updateScale() {
        for (std::size_t j = 0; j < scale.size(); j++) {
            const double column = here.triangle.length(static_cast<int>(j));
            scale[j] = std::max(column, strategy.memory * scale[j]);
            if (scale[j] == 0) scale[j] = 1;
        }
    }

    Residuals<double> &residuals;
    Strategy strategy;
    int steps;
    Place<double> here;
    Place<double> there; // where the step under trial leads
    Vector scale;        // of the parameters: lengths of J's columns
    double lambda = firstLambda;
    Vector lastVelocity; // of the last step taken
    double lastLength = 0;
    bool curved = true; // the last step's gain was not what the linear model had promised
};

// The end of a search: undamped steps until the numbers stand still.
template<class Real> class Finish {
  public:
    Finish(Residuals<Real> &r, const Vector &start)
        : residuals(r), best{{start.begin(), start.end()}, r.newTriangle(), 0}, trial(best) {
        evaluate(best);
        startResidual = std::sqrt(best.chiSquare);
    }

    // Until a parameter's error is at most `tolerance` of its value, or rounding forbids more.
    // contraction: by how much a step shortens the next one, as far as known. False when it does
    // not get to where the gradient vanishes.
    bool run(Real tolerance, Real contraction) {
        if (!std::isfinite(best.chiSquare)) return false;
        step = best.triangle.solve();
        Real fraction = 1; // of the undamped step that is taken
        int failures = 0;
        while (iterations < 200 && failures < 4 && remaining(contraction) > tolerance) {
            if (!stepIsFinite()) return false;
            go(trial, fraction);
            evaluate(trial);
            iterations++;
            const Real ratio = trial.triangle.lengthOfQ() / best.triangle.lengthOfQ();
            if (std::isfinite(trial.chiSquare) && ratio < 1) {
                if (iterations == 1) contraction = firstRatio = ratio;
                std::swap(best, trial);
                step = best.triangle.solve();
                failures = 0;
            } else {
                // too far where the residuals are large and the formula is strongly curved
                fraction /= 2;
                failures++;
            }
        }
        if (failures == 0) go(best, 1);
        return atMinimum();
    }

    // By how much the first step shortened the second one; 1 when there was none.
    Real contractionSeen() const { return firstRatio; }

    std::vector<double> parameters() const { return {best.b.begin(), best.b.end()}; }

    // The parameters that the data do not determine there, empty when all are: those whose column
    // of J vanishes, and those whose column depends on earlier ones, with these. Of a column that
    // depends some 1e-19 of its length is left in the triangle, in honest problems at least 1e-12.
    std::vector<int> vague() const {
        std::vector<int> found;
        if (!std::isfinite(best.chiSquare)) return found;
        const RowReduction<Real> &triangle = best.triangle;
        const int p = triangle.columns();
        std::vector<bool> dependent(p), partner(p);
        for (int j = 0; j < p; j++) {
            const Real length = triangle.length(j);
            dependent[j] = std::abs(triangle.R(j, j)) <= Real(1e-15L) * length;
            if (!dependent[j]) continue;

            std::vector<Real> share(j); // of the earlier columns in this one
            for (int i = j - 1; i >= 0; i--) {
                if (dependent[i]) continue;
                share[i] = triangle.R(i, j);
                for (int k = i + 1; k < j; k++) share[i] -= triangle.R(i, k) * share[k];
                share[i] /= triangle.R(i, i);
                if (std::abs(share[i]) * triangle.length(i) > Real(0.01L) * length)
                    partner[i] = true;
            }
        }
        for (int j = 0; j < p; j++)
            if (dependent[j] || partner[j]) found.push_back(j);
        return found;
    }

    void report(Minimum &minimum) const {
        const int p = best.triangle.columns();
        minimum.b = parameters();
        minimum.chiSquare = static_cast<double>(best.chiSquare);
        minimum.deviations.resize(p);
        for (int j = 0; j < p; j++) {
            std::vector<Real> unit(p);
            unit[j] = 1;
            const Real variance = best.triangle.solveNormal(unit)[j];
            minimum.deviations[j] = static_cast<double>(std::sqrt(variance));
        }
    }

    int iterations = 0;

  private:
    void evaluate(Place<Real> &place) {
        place.chiSquare = residuals.linearise(place.b, place.triangle);
    }

    void go(Place<Real> &place, Real fraction) const {
        for (std::size_t j = 0; j < step.size(); j++) place.b[j] = best.b[j] + fraction * step[j];
    }

    // What is left to gain is nothing beside the residuals, or beside the rounding of the data; and
    // the steps have not led away to where the gradient vanishes at a worse place.
    bool atMinimum() const {
        const Real rounding = Real(1e-14L) * residuals.dataLength();
        const Real residual = std::sqrt(best.chiSquare);
        const bool stationary =
            best.triangle.lengthOfQ() <= std::max(Real(1e-9L) * residual, rounding);
        return stationary && residual <= std::max(Real(1.000001L) * startResidual, rounding);
    }

    bool stepIsFinite() const {
        return std::ranges::all_of(step, [](Real part) { return std::isfinite(part); });
    }

    // Of a parameter's value, the most that is missing after the next step.
    Real remaining(Real contraction) const {
        Real most = 0;
        for (std::size_t j = 0; j < best.b.size(); j++)
            if (step[j] != 0) most = std::max(most, contraction * std::abs(step[j] / best.b[j]));
        return stepIsFinite() ? most : 1;
    }

    Residuals<Real> &residuals;
    Place<Real> best;
    Place<Real> trial;
    std::vector<Real> step; // the undamped one from the best place
    Real startResidual;
    Real firstRatio = 1;
};

} // namespace

Minimum minimise(Residuals<double> &residuals, Residuals<long double> &extended,
                 const Vector &start) {
    Minimum minimum;
    for (const Strategy &strategy : strategies) {
        Search search(residuals, strategy, start);
        if (!search.hasStart()) {
            minimum.ending = Ending::noStart;
            return minimum;
        }
        search.run();
        Finish<double> approach(residuals, search.parameters());
        approach.run(1e-14, 1);
        Finish<long double> finish(extended, approach.parameters());
        const bool stationary = finish.run(1e-16L, approach.contractionSeen());
        minimum.iterations += search.iterations + approach.iterations + finish.iterations;
        minimum.lambda = search.lastLambda;

        minimum.vague = finish.vague();
        if (stationary && minimum.vague.empty()) {
            minimum.ending = Ending::minimum;
            finish.report(minimum);
            return minimum;
        }
        minimum.ending = minimum.vague.empty() ? Ending::notFound : Ending::undetermined;
    }
    return minimum;
}

} // namespace plotwerk
