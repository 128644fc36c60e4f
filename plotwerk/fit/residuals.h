// residuals.h - what a least-squares fit minimises: formula against data, with exact derivatives.
#ifndef PLOTWERK_FIT_RESIDUALS_H
#define PLOTWERK_FIT_RESIDUALS_H

#include "plotwerk/fit/fitProgress.h"
#include "plotwerk/fit/rowReduction.h"
#include "plotwerk/formula/evaluator.h"
#include "plotwerk/formula/formula.h"

#include <optional>
#include <vector>

namespace plotwerk {

// Thrown by FitWork when it is used up.
struct FitTooLong {};

// How much a fit may still do, in nanoseconds. What it does is estimated, not measured, so that its
// result doesn't depend on the load of the machine.
class FitWork {
  public:
    FitWork(double nanoseconds, FitProgress &shown) : progress(shown), left(nanoseconds) {}
    void take(double nanoseconds) {
        left -= nanoseconds;
        if (left < 0) throw FitTooLong{};
    }

    FitProgress &progress;

  private:
    double left;
};

// What one run over the points takes, in nanoseconds.
struct RunTime {
    double values;
    double derivatives; // and their products with the residuals
    double reduction;   // to a triangle, and what is done with that
};

// The points of a fit: all finite, the vectors of one length; columns are those that the formula
// reads, weight is empty (all 1) or 1 / error.
struct FitPoints {
    std::vector<double> x;
    std::vector<double> y;
    std::vector<std::vector<double>> columns;
    std::vector<double> weight;

    Inputs inputs() const { return {x, {}, {columns.begin(), columns.end()}}; }
};

// The residuals r = weight * (y - f(x; b)) as a function of the free parameters b, and J, the
// derivatives of weight * f by them. Takes memory for one block of points, however many there are.
// Real is double or long double. Formula, points and work must outlive it.
template<class Real> class Residuals {
  public:
    // parameters: all of the formula's; free: the indexes of those that b holds.
    Residuals(const Formula &formula, const FitPoints &fitted,
              const std::vector<double> &parameters, const std::vector<int> &free, FitWork &work);

    // The same with parameters held at their values in b: those that are left are its b.
    Residuals holding(const std::vector<double> &b, const std::vector<bool> &held) const;

    int points() const { return static_cast<int>(data.x.size()); }
    int parameters() const { return static_cast<int>(free.size()); }

    // Reduces J | r to a triangle, and returns the sum of the squared residuals; NaN when there is
    // a residual or a derivative without a finite value.
    Real linearise(const std::vector<Real> &b, RowReduction<Real> &triangle);

    // Sets `side` to the descent of the sum of squares, J' r, and returns the sum, NaN where it
    // isn't finite: much of what linearise does, in less time.
    Real descend(const std::vector<Real> &b, std::vector<Real> &side);

    // A triangle of the size that linearise() fills.
    RowReduction<Real> newTriangle() const { return {parameters(), evaluator.blockSize()}; }

    // The right-hand side of the geodesic acceleration (Transtrum and Sethna, arXiv:1201.5885): J'
    // times the second derivative of weight * f along v, from the difference between f at
    // b + reach * v and the tangent there.
    std::vector<Real> accelerationSide(const std::vector<Real> &b, const std::vector<Real> &v,
                                       Real reach);

    // A step has led to this sum of squares.
    void countStep(Real chiSquare) const {
        work.progress.countStep(static_cast<double>(chiSquare));
    }

    // Euclidean length of the weighted data.
    Real dataLength() const;

  private:
    void setParameters(Evaluator<Real> &to, const std::vector<Real> &b);
    void addProducts(std::vector<Real> &r, int first, int count, std::vector<Real> &side) const;

    const FitPoints &data;
    Inputs inputs;
    std::vector<int> free;
    std::vector<Real> all; // parameters, the free ones overwritten by b
    Evaluator<Real> evaluator;
    std::optional<Evaluator<Real>> ahead; // at b + reach * v
    FitWork &work;
    RunTime time;
};

} // namespace plotwerk

#endif
