#include "plotwerk/fit/residuals.h"

#include "plotwerk/formula/evaluationTime.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <type_traits>

namespace plotwerk {

// About the nanoseconds of one run over the points: p parameters and the residuals are p + 1
// columns.
template<class Real>
static RunTime runTime(const Tape &tape, std::size_t points, std::size_t parameters) {
    // Extended numbers are computed one at a time: the processor has no vectors of them.
    constexpr double slowness = std::is_same_v<Real, double> ? 1 : 10;
    const auto n = static_cast<double>(points);
    const auto p = static_cast<double>(parameters + 1);
    const EvaluationTime one = evaluationTime<Real>(tape);
    return {n * one.values, n * (one.derivatives + slowness * 2 * p),
            slowness * (0.7 * p * p * n + 6 * p * p * p)};
}

template<class Real>
Residuals<Real>::Residuals(const Formula &formula, const FitPoints &fitted,
                           const std::vector<double> &parameters,
                           const std::vector<int> &freeParameters, FitWork &fitWork)
    : data(fitted),
      inputs(fitted.inputs()),
      free(freeParameters),
      all(parameters.begin(), parameters.end()),
      evaluator(formula.tape()),
      work(fitWork),
      time(runTime<Real>(formula.tape(), data.x.size(), free.size())) {
}

template<class Real>
Residuals<Real> Residuals<Real>::holding(const std::vector<double> &b,
                                         const std::vector<bool> &held) const {
    Residuals less = *this;
    less.free.clear();
    for (std::size_t j = 0; j < free.size(); ++j) {
        less.all[free[j]] = b[j];
        if (!held[j]) less.free.push_back(free[j]);
    }
    return less;
}

template<class Real>
void Residuals<Real>::setParameters(Evaluator<Real> &to, const std::vector<Real> &b) {
    for (std::size_t j = 0; j < free.size(); ++j) all[free[j]] = b[j];
    to.setParameters(all);
}

template<class Real>
Real Residuals<Real>::linearise(const std::vector<Real> &b, RowReduction<Real> &triangle) {
    const int n = points();
    const int p = parameters();
    work.take(time.values + time.derivatives + time.reduction);
    triangle.clear();
    setParameters(evaluator, b);

    Real chiSquare = 0;
    for (int i = 0; i < n; i += evaluator.blockSize()) {
        work.progress.requireWanted();
        const int count = std::min(evaluator.blockSize(), n - i);
        const Real *f = evaluator.values(inputs, i, count);
        evaluator.differentiate();

        Real *r = triangle.column(p);
        for (int k = 0; k < count; ++k) r[k] = data.y[i + k] - f[k];
        for (int j = 0; j < p; ++j)
            std::copy_n(evaluator.derivative(free[j]), count, triangle.column(j));
        if (!data.weight.empty())
            for (int j = 0; j <= p; ++j)
                for (int k = 0; k < count; ++k) triangle.column(j)[k] *= data.weight[i + k];

        chiSquare += sumOfSquares(r, count);
        triangle.absorb(count);
    }
    for (int j = 0; j < p; ++j) // NaN and infinities spread along their column
        if (!std::isfinite(triangle.R(j, j))) return std::numeric_limits<Real>::quiet_NaN();
    return std::isfinite(chiSquare) ? chiSquare : std::numeric_limits<Real>::quiet_NaN();
}

// Adds to `side` J' r of a block, of which r has weights once. It is lost.
template<class Real>
void Residuals<Real>::addProducts(std::vector<Real> &r, int first, int count,
                                  std::vector<Real> &side) const {
    if (!data.weight.empty())
        for (int k = 0; k < count; ++k) r[k] *= data.weight[first + k];
    for (int j = 0; j < parameters(); ++j)
        side[j] += dot(evaluator.derivative(free[j]), r.data(), count);
}

template<class Real>
Real Residuals<Real>::descend(const std::vector<Real> &b, std::vector<Real> &side) {
    const int n = points();
    work.take(time.values + time.derivatives);
    setParameters(evaluator, b);
    side.assign(parameters(), 0);

    Real chiSquare = 0;
    std::vector<Real> r(evaluator.blockSize());
    for (int i = 0; i < n; i += evaluator.blockSize()) {
        work.progress.requireWanted();
        const int count = std::min(evaluator.blockSize(), n - i);
        const Real *f = evaluator.values(inputs, i, count);
        evaluator.differentiate();
        for (int k = 0; k < count; ++k) r[k] = data.y[i + k] - f[k];
        if (!data.weight.empty())
            for (int k = 0; k < count; ++k) r[k] *= data.weight[i + k];
        chiSquare += sumOfSquares(r.data(), count);
        addProducts(r, i, count, side);
    }
    return std::isfinite(chiSquare) ? chiSquare : std::numeric_limits<Real>::quiet_NaN();
}

template<class Real>
std::vector<Real> Residuals<Real>::accelerationSide(const std::vector<Real> &b,
                                                    const std::vector<Real> &v, Real reach) {
    const int n = points();
    const int p = parameters();
    work.take(2 * time.values + time.derivatives);
    std::vector<Real> further(b);
    for (int j = 0; j < p; ++j) further[j] += reach * v[j];
    if (!ahead) ahead = evaluator;
    setParameters(*ahead, further);
    setParameters(evaluator, b);

    std::vector<Real> side(p);
    std::vector<Real> second(evaluator.blockSize());
    for (int i = 0; i < n; i += evaluator.blockSize()) {
        work.progress.requireWanted();
        const int count = std::min(evaluator.blockSize(), n - i);
        const Real *f = evaluator.values(inputs, i, count);
        const Real *fAhead = ahead->values(inputs, i, count);
        evaluator.differentiate();

        for (int k = 0; k < count; ++k) second[k] = (fAhead[k] - f[k]) / reach;
        for (int j = 0; j < p; ++j) {
            const Real *slope = evaluator.derivative(free[j]);
            for (int k = 0; k < count; ++k) second[k] -= slope[k] * v[j];
        }
        for (int k = 0; k < count; ++k) {
            const Real weight = data.weight.empty() ? 1 : Real(data.weight[i + k]);
            second[k] *= 2 / reach * weight;
        }
        addProducts(second, i, count, side);
    }
    return side;
}

template<class Real> Real Residuals<Real>::dataLength() const {
    Real sum = 0;
    for (std::size_t i = 0; i < data.y.size(); ++i) {
        const Real weight = data.weight.empty() ? 1 : Real(data.weight[i]);
        sum += weight * data.y[i] * weight * data.y[i];
    }
    return std::sqrt(sum);
}

template class Residuals<double>;
template class Residuals<long double>;

} // namespace plotwerk
