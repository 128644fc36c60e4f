// fitBench.cpp - a fit and the evaluation of its formula, beside GSL's Levenberg-Marquardt and the
// same formula in C, with the Jacobian written by hand.
#include "plotwerk/fit/fit.h"
#include "plotwerk/formula/formula.h"

#include <benchmark/benchmark.h>
#include <gsl/gsl_blas.h>
#include <gsl/gsl_multifit_nlinear.h>

#include <cmath>
#include <random>
#include <vector>

using namespace plotwerk;

namespace {

// A peak on a level ground: a * exp(-((x - c) / w)^2) + g
constexpr const char *peak = "a*exp(-((x-c)/w)^2)+g";
constexpr double truth[4] = {12, 4.2, 1.3, 2};
constexpr double start[4] = {10, 4, 1, 1};

struct Points {
    std::vector<double> x, y;
};

double peakAt(double x, const double *b) {
    const double u = (x - b[1]) / b[2];
    return b[0] * std::exp(-u * u) + b[3];
}

Points noisyPeak(int n) {
    std::mt19937_64 random(20240131);
    std::normal_distribution<double> noise(0, 0.3);
    Points points;
    for (int i = 0; i < n; ++i) {
        points.x.push_back(10.0 * i / n);
        points.y.push_back(peakAt(points.x.back(), truth) + noise(random));
    }
    return points;
}

void reportParameter(benchmark::State &state, double amplitude, int iterations) {
    state.counters["a"] = amplitude;
    state.counters["iterations"] = iterations;
}

void fitPeak(benchmark::State &state) {
    const Points points = noisyPeak(static_cast<int>(state.range(0)));
    const Formula formula(peak); // parameters in order of appearance: a, c, w, g
    std::vector<FitParameter> parameters;
    FitOutcome outcome;
    for (auto _ : state) {
        parameters.clear();
        for (int j = 0; j < 4; ++j) parameters.push_back({formula.parameterNames()[j], start[j]});
        outcome = fit(formula, {points.x, points.y, {}, {}}, parameters);
        if (outcome.status != fitConverged) state.SkipWithError(outcome.reason.c_str());
    }
    reportParameter(state, parameters[0].value, outcome.result.iterations);
}

int gslResiduals(const gsl_vector *b, void *data, gsl_vector *r) {
    const auto &points = *static_cast<const Points *>(data);
    for (std::size_t i = 0; i < points.x.size(); ++i)
        gsl_vector_set(r, i, peakAt(points.x[i], b->data) - points.y[i]);
    return GSL_SUCCESS;
}

int gslJacobian(const gsl_vector *b, void *data, gsl_matrix *J) {
    const auto &points = *static_cast<const Points *>(data);
    const double a = b->data[0];
    const double w = b->data[2];
    for (std::size_t i = 0; i < points.x.size(); ++i) {
        const double u = (points.x[i] - b->data[1]) / w;
        const double e = std::exp(-u * u);
        gsl_matrix_set(J, i, 0, e);
        gsl_matrix_set(J, i, 1, a * e * 2 * u / w);
        gsl_matrix_set(J, i, 2, a * e * 2 * u * u / w);
        gsl_matrix_set(J, i, 3, 1);
    }
    return GSL_SUCCESS;
}

// solver: 0 QR, GSL's default; 1 Cholesky of the normal equations, faster and less accurate.
void gslFitPeak(benchmark::State &state, int solver) {
    Points points = noisyPeak(static_cast<int>(state.range(0)));
    gsl_multifit_nlinear_fdf problem{};
    problem.f = gslResiduals;
    problem.df = gslJacobian;
    problem.n = points.x.size();
    problem.p = 4;
    problem.params = &points;
    gsl_multifit_nlinear_parameters options = gsl_multifit_nlinear_default_parameters();
    if (solver == 1) options.solver = gsl_multifit_nlinear_solver_cholesky;

    double amplitude = 0;
    std::size_t iterations = 0;
    for (auto _ : state) {
        gsl_multifit_nlinear_workspace *workspace =
            gsl_multifit_nlinear_alloc(gsl_multifit_nlinear_trust, &options, problem.n, problem.p);
        const gsl_vector_const_view from = gsl_vector_const_view_array(start, 4);
        gsl_multifit_nlinear_init(&from.vector, &problem, workspace);
        int info = 0;
        const int status =
            gsl_multifit_nlinear_driver(100, 1e-10, 1e-10, 0, nullptr, nullptr, &info, workspace);
        gsl_matrix *covariance = gsl_matrix_alloc(4, 4);
        gsl_multifit_nlinear_covar(gsl_multifit_nlinear_jac(workspace), 0, covariance);
        gsl_matrix_free(covariance);
        if (status != GSL_SUCCESS) state.SkipWithError("GSL's fit did not converge");
        amplitude = gsl_vector_get(gsl_multifit_nlinear_position(workspace), 0);
        iterations = gsl_multifit_nlinear_niter(workspace);
        gsl_multifit_nlinear_free(workspace);
    }
    reportParameter(state, amplitude, static_cast<int>(iterations));
}

void evaluatePeak(benchmark::State &state) {
    const Points points = noisyPeak(static_cast<int>(state.range(0)));
    const Formula formula(peak);
    std::vector<double> out(points.x.size());
    for (auto _ : state) {
        formula.evaluate({points.x}, truth, out);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void handWrittenPeak(benchmark::State &state) {
    const Points points = noisyPeak(static_cast<int>(state.range(0)));
    std::vector<double> out(points.x.size());
    for (auto _ : state) {
        for (std::size_t i = 0; i < out.size(); ++i) out[i] = peakAt(points.x[i], truth);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(fitPeak)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(gslFitPeak, qr, 0)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(gslFitPeak, cholesky, 1)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(evaluatePeak)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(handWrittenPeak)->Arg(1000000)->Unit(benchmark::kMillisecond);
