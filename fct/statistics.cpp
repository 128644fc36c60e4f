#include "fct/statistics.h"

#include "fct/completeness.h"
#include "fct/fmaClones.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace plw {

PLW_FMA_CLONES
void linRegFct(const Fct *f, double *intercept, double *slope, double *correlation, double *sigma) {
    requireComplete(f, "ERROR in linRegFct: function incomplete");
    double sumT = 0, sumTT = 0, sumTY = 0, sumY = 0, sumYY = 0;
    for (int i = 0; i < f->n; ++i) {
        const double t = f->t[i];
        const double y = f->y[i];
        sumT += t;
        sumTT = std::fma(t, t, sumTT);
        sumTY = std::fma(t, y, sumTY);
        sumY += y;
        sumYY = std::fma(y, y, sumYY);
    }

    const double count = f->n;
    const double meanT = sumT / count;
    const double meanY = sumY / count;
    const double sigmaT = std::sqrt(sumTT / count - meanT * meanT);
    const double sigmaY = std::sqrt(sumYY / count - meanY * meanY);
    const double covarianceTY = sumTY / count - meanT * meanY;

    *correlation = covarianceTY / (sigmaT * sigmaY);
    *slope = covarianceTY / (sigmaT * sigmaT);
    *intercept = meanY - meanT * *slope;
    *sigma = sigmaY;
}

double covariance(const double *a, const double *b, int n) {
    double sumA = 0, sumB = 0, sumAB = 0, sumAA = 0, sumBB = 0;
    for (int i = 0; i < n; ++i) {
        sumA += a[i];
        sumB += b[i];
        sumAB += a[i] * b[i];
        sumAA += a[i] * a[i];
        sumBB += b[i] * b[i];
    }

    const double w = 1.0 / n;
    const double meanA = w * sumA;
    const double meanB = w * sumB;
    return (w * sumAB - meanA * meanB) /
           std::sqrt((w * sumAA - meanA * meanA) * (w * sumBB - meanB * meanB));
}

void miniStatitic(const double *v, int n, char *increasing, double *min, double *max) {
    *increasing = 1;
    *min = DBL_MAX;
    *max = -DBL_MAX;
    if (n <= 0 || v == nullptr) return;

    double low = v[0] > DBL_MAX ? DBL_MAX : v[0];
    double high = v[0] < -DBL_MAX ? -DBL_MAX : v[0];
    for (int i = 1; i < n; ++i) {
        if (v[i] < v[i - 1]) *increasing = 0;
        if (v[i] < low) low = v[i];
        if (v[i] > high) high = v[i];
    }
    *min = low;
    *max = high;
}

int arrHasNAN(const double *v, int n) {
    return std::any_of(v, v + std::max(n, 0), [](double value) { return !std::isfinite(value); });
}

void average(double *x, double *y, int n, int k, int *m) {
    *m = 0;
    double sumX = 0, sumY = 0;
    int count = 0;
    const auto closeBlock = [&] {
        x[*m] = sumX / count;
        y[*m] = sumY / count;
        ++*m;
        sumX = sumY = 0;
        count = 0;
    };
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(x[i]) || !std::isfinite(y[i])) continue;
        ++count;
        sumX += x[i];
        sumY += y[i];
        if (count >= k) closeBlock();
    }
    if (count > 0) closeBlock();
}

} // namespace plw
