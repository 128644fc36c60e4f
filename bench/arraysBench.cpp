// arraysBench.cpp - sorting and searching beside GSL's routines for the same job.

#include "util/arrays/search.h"
#include "util/arrays/sort.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <gsl/gsl_interp.h>
#include <gsl/gsl_sort.h>
#include <numeric>
#include <random>
#include <vector>

using namespace plw;

static constexpr int count = 1'000'000;

static std::vector<double> randomNumbers(unsigned seed) {
    std::mt19937_64 random(seed);
    std::normal_distribution<double> normal;
    std::vector<double> numbers(count);
    for (double &v : numbers) v = normal(random);
    return numbers;
}

// One key in eight is equal to others, one in a hundred is missing.
static std::vector<double> keysWithTiesAndGaps() {
    std::vector<double> keys = randomNumbers(1);
    for (int i = 0; i < count; i += 8) keys[i] = std::round(keys[i] * 100) / 100;
    for (int i = 3; i < count; i += 100) keys[i] = NAN;
    return keys;
}

static std::vector<double> ascending() {
    std::vector<double> a(count);
    std::iota(a.begin(), a.end(), 0.0);
    return a;
}

static std::vector<double> positions() {
    std::mt19937_64 random(2);
    std::uniform_real_distribution<double> uniform(0, count - 1);
    std::vector<double> x(count);
    for (double &v : x) v = uniform(random);
    return x;
}

static void sortNWithTwoCompanions(benchmark::State &state) {
    const std::vector<double> keys = keysWithTiesAndGaps();
    std::vector<double> a = randomNumbers(3), b = randomNumbers(4), key(count);
    while (state.KeepRunning()) {
        state.PauseTiming();
        key = keys;
        double *others[] = {a.data(), b.data(), nullptr};
        state.ResumeTiming();
        sortN(count, key.data(), others, 2);
        benchmark::DoNotOptimize(key.data());
    }
}
BENCHMARK(sortNWithTwoCompanions)->Unit(benchmark::kMillisecond);

static void gslSortIndexAndGather(benchmark::State &state) {
    const std::vector<double> keys = keysWithTiesAndGaps();
    const std::vector<double> a = randomNumbers(3), b = randomNumbers(4);
    std::vector<double> key(count), a2(count), b2(count);
    std::vector<std::size_t> order(count);
    while (state.KeepRunning()) {
        gsl_sort_index(order.data(), keys.data(), 1, count);
        for (int i = 0; i < count; ++i) key[i] = keys[order[i]];
        for (int i = 0; i < count; ++i) a2[i] = a[order[i]];
        for (int i = 0; i < count; ++i) b2[i] = b[order[i]];
        benchmark::DoNotOptimize(key.data());
    }
}
BENCHMARK(gslSortIndexAndGather)->Unit(benchmark::kMillisecond);

static void sortPairs(benchmark::State &state,
                      void (*sort)(std::vector<double> &x, std::vector<double> &y)) {
    const std::vector<double> x0 = randomNumbers(5), y0 = randomNumbers(6);
    std::vector<double> x, y;
    while (state.KeepRunning()) {
        state.PauseTiming();
        x = x0;
        y = y0;
        state.ResumeTiming();
        sort(x, y);
        benchmark::DoNotOptimize(x.data());
    }
}

static void quicksortPairs(benchmark::State &state) {
    sortPairs(state, [](auto &x, auto &y) { quicksort(x.data(), y.data(), 0, count - 1); });
}
BENCHMARK(quicksortPairs)->Unit(benchmark::kMillisecond);

static void gslSort2(benchmark::State &state) {
    sortPairs(state, [](auto &x, auto &y) { gsl_sort2(x.data(), 1, y.data(), 1, count); });
}
BENCHMARK(gslSort2)->Unit(benchmark::kMillisecond);

static void quicksortClusterPairs(benchmark::State &state) {
    const std::vector<double> x0 = randomNumbers(5);
    std::vector<double> x, values(2 * count, 1.0);
    while (state.KeepRunning()) {
        state.PauseTiming();
        x = x0;
        state.ResumeTiming();
        quicksortCluster(x.data(), 1, 0, values.data(), 2 * sizeof(double), 0, count - 1);
        benchmark::DoNotOptimize(x.data());
    }
}
BENCHMARK(quicksortClusterPairs)->Unit(benchmark::kMillisecond);

static void searchWithoutHint(benchmark::State &state) {
    const std::vector<double> a = ascending(), x = positions();
    std::size_t i = 0;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(search_le(x[i], a.data(), count, -1));
        i = i + 1 < x.size() ? i + 1 : 0;
    }
}
BENCHMARK(searchWithoutHint);

static void gslBsearch(benchmark::State &state) {
    const std::vector<double> a = ascending(), x = positions();
    std::size_t i = 0;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(gsl_interp_bsearch(a.data(), x[i], 0, count - 1));
        i = i + 1 < x.size() ? i + 1 : 0;
    }
}
BENCHMARK(gslBsearch);
