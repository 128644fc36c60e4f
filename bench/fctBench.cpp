// Sampled functions beside the GNU Scientific Library's linear interpolation and beside fprintf.
#include "fct/fct.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <gsl/gsl_interp.h>
#include <memory>
#include <random>
#include <vector>

using namespace plw;

namespace {

using FctPtr = std::unique_ptr<Fct, decltype(&freeFct)>;

// A noisy wave at uneven positions, on average 1 apart.
FctPtr wave(int n) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> jitter(0.0, 1.0);
    FctPtr f(newFct(n), freeFct);
    for (int i = 0; i < n; ++i) appendFct(f.get(), i + jitter(random) * 0.9, std::sin(i * 0.01));
    return f;
}

// GSL's linear interpolation of f with its accelerator.
struct GslLinear {
    gsl_interp *line;
    gsl_interp_accel *accelerator = gsl_interp_accel_alloc();

    explicit GslLinear(const Fct *f) : line(gsl_interp_alloc(gsl_interp_linear, f->n)) {
        gsl_interp_init(line, f->t, f->y, f->n);
    }
    GslLinear(const GslLinear &) = delete;
    GslLinear &operator=(const GslLinear &) = delete;
    ~GslLinear() {
        gsl_interp_accel_free(accelerator);
        gsl_interp_free(line);
    }
};

constexpr int samples = 1000000;
constexpr int positions = 10000000;
constexpr int windows = 1000000;

void evalFctAscending(benchmark::State &state) {
    const FctPtr f = wave(samples);
    const double first = f->t[0];
    const double step = (f->t[samples - 1] - first) / positions;
    for ([[maybe_unused]] auto _ : state) {
        for (int i = 0; i < positions; ++i)
            benchmark::DoNotOptimize(evalFct(f.get(), first + i * step));
    }
    state.SetItemsProcessed(state.iterations() * positions);
}

void gslEvalAscending(benchmark::State &state) {
    const FctPtr f = wave(samples);
    const GslLinear gsl(f.get());
    const double first = f->t[0];
    const double step = (f->t[samples - 1] - first) / positions;
    for ([[maybe_unused]] auto _ : state) {
        for (int i = 0; i < positions; ++i)
            benchmark::DoNotOptimize(
                gsl_interp_eval(gsl.line, f->t, f->y, first + i * step, gsl.accelerator));
    }
    state.SetItemsProcessed(state.iterations() * positions);
}

void integralFctWindows(benchmark::State &state) {
    const FctPtr f = wave(samples);
    const double first = f->t[0];
    const double step = (f->t[samples - 1] - first - 10) / windows;
    for ([[maybe_unused]] auto _ : state) {
        for (int i = 0; i < windows; ++i) {
            const double a = first + i * step;
            benchmark::DoNotOptimize(integralFct(a, a + 10, f.get()));
        }
    }
    state.SetItemsProcessed(state.iterations() * windows);
}

void gslIntegralWindows(benchmark::State &state) {
    const FctPtr f = wave(samples);
    const GslLinear gsl(f.get());
    const double first = f->t[0];
    const double step = (f->t[samples - 1] - first - 10) / windows;
    for ([[maybe_unused]] auto _ : state) {
        for (int i = 0; i < windows; ++i) {
            const double a = first + i * step;
            benchmark::DoNotOptimize(
                gsl_interp_eval_integ(gsl.line, f->t, f->y, a, a + 10, gsl.accelerator));
        }
    }
    state.SetItemsProcessed(state.iterations() * windows);
}

// Items per second must hardly depend on the number of samples.
void smoothFctKernelOf101(benchmark::State &state) {
    const int n = static_cast<int>(state.range(0));
    const FctPtr f = wave(n);
    const std::vector<double> weights(101, 0.01);
    const FctPtr kernel(newFctWith(weights.data(), 101, -50, 1), freeFct);
    for ([[maybe_unused]] auto _ : state) smoothFct(f.get(), kernel.get());
    state.SetItemsProcessed(state.iterations() * n);
}

void printFctToFile(benchmark::State &state) {
    const FctPtr f = wave(samples);
    for ([[maybe_unused]] auto _ : state) printFct(f.get(), "fctBench.txt");
    std::remove("fctBench.txt");
    state.SetItemsProcessed(state.iterations() * samples);
}

void fprintfToFile(benchmark::State &state) {
    const FctPtr f = wave(samples);
    for ([[maybe_unused]] auto _ : state) {
        FILE *file = std::fopen("fctBench.txt", "w");
        for (int i = 0; i < f->n; ++i) std::fprintf(file, "%g  %g\n", f->t[i], f->y[i]);
        std::fclose(file);
    }
    std::remove("fctBench.txt");
    state.SetItemsProcessed(state.iterations() * samples);
}

BENCHMARK(evalFctAscending)->Unit(benchmark::kMillisecond);
BENCHMARK(gslEvalAscending)->Unit(benchmark::kMillisecond);
BENCHMARK(integralFctWindows)->Unit(benchmark::kMillisecond);
BENCHMARK(gslIntegralWindows)->Unit(benchmark::kMillisecond);
BENCHMARK(smoothFctKernelOf101)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(printFctToFile)->Unit(benchmark::kMillisecond);
BENCHMARK(fprintfToFile)->Unit(benchmark::kMillisecond);

} // namespace
