#include "plotwerk/fit/rowReduction.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace plotwerk {

// The processor adds the parts side by side, as many as it has registers for.
template<class Real> Real dot(const Real *a, const Real *b, int n) {
    constexpr int parts = std::is_same_v<Real, double> ? 8 : 4;
    Real part[parts] = {};
    int i = 0;
    for (; i + parts <= n; i += parts)
        for (int k = 0; k < parts; ++k) part[k] += a[i + k] * b[i + k];

    Real rest = 0;
    for (; i < n; ++i) rest += a[i] * b[i];
    for (int half = parts / 2; half > 0; half /= 2)
        for (int k = 0; k < half; ++k) part[k] += part[k + half];
    return part[0] + rest;
}

template<class Real>
RowReduction<Real>::RowReduction(int columns, int maxRows)
    : size(columns),
      rowsPerBlock(maxRows),
      triangle(static_cast<std::size_t>(size) * (size + 1)),
      block(static_cast<std::size_t>(size + 1) * maxRows) {
}

template<class Real> void RowReduction<Real>::clear() {
    std::ranges::fill(triangle, 0);
}

// One Householder reflection per column; of the triangle, only row j takes part in the j-th.
template<class Real> void RowReduction<Real>::absorb(int n) {
    for (int j = 0; j < size; ++j) {
        Real *v = column(j);
        const Real below = sumOfSquares(v, n);
        if (below == 0) continue;

        const Real alpha = R(j, j);
        const Real norm = std::sqrt(alpha * alpha + below);
        const Real beta = alpha > 0 ? -norm : norm;
        const Real first = alpha - beta;
        const Real halfSquare = -beta * first; // of the length of first | v

        triangle[index(j, j)] = beta;
        for (int k = j + 1; k <= size; ++k) {
            Real *w = column(k);
            Real &above = triangle[index(j, k)];
            const Real along = (first * above + dot(v, w, n)) / halfSquare;
            above -= along * first;
            if (j + 1 == size) break; // what is left of r isn't needed
            for (int i = 0; i < n; ++i) w[i] -= along * v[i];
        }
    }
}

template<class Real> Real RowReduction<Real>::length(int j) const {
    Real sum = 0;
    for (int i = 0; i <= std::min(j, size - 1); ++i) sum += R(i, j) * R(i, j);
    return std::sqrt(sum);
}

template<class Real> std::vector<Real> RowReduction<Real>::descent() const {
    std::vector<Real> g(size);
    for (int i = 0; i < size; ++i)
        for (int j = i; j < size; ++j) g[j] += R(i, j) * q(i);
    return g;
}

template<class Real> void RowReduction<Real>::substituteBack(std::vector<Real> &d) const {
    for (int i = size - 1; i >= 0; --i) {
        for (int j = i + 1; j < size; ++j) d[i] -= R(i, j) * d[j];
        d[i] /= R(i, i);
    }
}

template<class Real> std::vector<Real> RowReduction<Real>::solve() const {
    std::vector<Real> d(size);
    for (int i = 0; i < size; ++i) d[i] = q(i);
    substituteBack(d);
    return d;
}

template<class Real> std::vector<Real> RowReduction<Real>::solveNormal(std::vector<Real> g) const {
    for (int i = 0; i < size; ++i) {
        for (int k = 0; k < i; ++k) g[i] -= R(k, i) * g[k];
        g[i] /= R(i, i);
    }
    substituteBack(g);
    return g;
}

template class RowReduction<double>;
template class RowReduction<long double>;
template double dot(const double *, const double *, int);
template long double dot(const long double *, const long double *, int);

} // namespace plotwerk
