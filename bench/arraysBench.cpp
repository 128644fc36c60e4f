// arraysBench.cpp - sorting and searching beside GSL's and the standard library's routines for the
// same job.

#include "fct/fct_tup.h"
#include "util/arrays/search.h"
#include "util/arrays/sort.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <gsl/gsl_interp.h>
#include <gsl/gsl_sort.h>
#include <numeric>
#include <random>
#include <tuple>
#include <utility>
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

// Presorted pairs beside the method that decides about equal keys written as a plain loop, and
// beside std::sort. The plain loop takes the square of the number for a peak or a valley.
enum Shape { up, down, peak, valley, displaced, shuffled, steps };
static constexpr const char *shapeNames[] = {"ascending",     "descending", "peak", "valley",
                                             "1 % displaced", "shuffled",   "steps"};

static std::vector<double> shapedKeys(Shape shape, int n) {
    std::mt19937_64 random(7);
    std::vector<double> keys(n);
    for (int i = 0; i < n; ++i) {
        const double distance = std::fabs(i - n / 2 - 0.3);
        keys[i] = shape == down ? -i : shape == peak ? -distance : shape == valley ? distance : i;
    }
    for (int i = 0; shape == displaced && i < n / 100; ++i)
        keys[random() % n] = std::uniform_real_distribution<double>(0, n)(random);
    return keys;
}

static void plainQuicksort(double *x, double *y, int left, int right) {
    const auto swap = [=](int i, int j) {
        std::swap(x[i], x[j]);
        std::swap(y[i], y[j]);
    };
    while (left < right) {
        swap(left, (left + right) / 2);
        int last = left;
        for (int i = left + 1; i <= right; ++i)
            if (x[left] > x[i]) swap(++last, i);
        swap(left, last);
        plainQuicksort(x, y, left, last - 1);
        left = last + 1;
    }
}

static void stdSort(double *x, double *y, int left, int right) {
    std::vector<std::pair<double, double>> pairs(right + 1);
    for (int i = left; i <= right; ++i) pairs[i] = {x[i], y[i]};
    std::sort(pairs.begin() + left, pairs.end(),
              [](const auto &a, const auto &b) { return a.first < b.first; });
    for (int i = left; i <= right; ++i) std::tie(x[i], y[i]) = pairs[i];
}

template<void (*sort)(double *, double *, int, int)>
static void sortShape(benchmark::State &state) {
    const auto shape = static_cast<Shape>(state.range(0));
    const int n = static_cast<int>(state.range(1));
    const std::vector<double> keys = shapedKeys(shape, n);
    std::vector<double> x, y(n);
    state.SetLabel(shapeNames[shape]);
    while (state.KeepRunning()) {
        state.PauseTiming();
        x = keys;
        state.ResumeTiming();
        sort(x.data(), y.data(), 0, n - 1);
        benchmark::DoNotOptimize(x.data());
    }
}
BENCHMARK(sortShape<quicksort>)
    ->ArgsProduct({{up, down, peak, valley, displaced}, {10000, count}})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(sortShape<stdSort>)
    ->ArgsProduct({{up, down, peak, valley, displaced}, {10000, count}})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(sortShape<plainQuicksort>)
    ->ArgsProduct({{up, down, peak, valley, displaced}, {10000}})
    ->ArgsProduct({{up, down, displaced}, {count}})
    ->Unit(benchmark::kMicrosecond);

// Rows of three members, beside the method that decides about equal keys, and beside std::sort,
// which orders positions by which the members are gathered then.
static std::vector<double> rowKeys(Shape shape, int n) {
    std::vector<double> keys = shapedKeys(shape, n);
    if (shape == shuffled) std::shuffle(keys.begin(), keys.end(), std::mt19937_64(8));
    for (double &key : keys)
        if (shape == steps) key = std::floor(key / 3);
    return keys;
}

static void plainSortFct_tup(Fct_tup *table, int member) {
    table->sortMember = member;
    qsortFlex(0, table->n - 1, table, cmp_sortFct_tup, swap_sortFct_tup);
}

template<void (*sort)(Fct_tup *, int)> static void sortTuples(benchmark::State &state) {
    const auto shape = static_cast<Shape>(state.range(0));
    const std::vector<double> keys = rowKeys(shape, static_cast<int>(state.range(1)));
    state.SetLabel(shapeNames[shape]);
    Fct_tup *table = newFct_tup(static_cast<int>(keys.size()), 3);
    for (const double key : keys) appendFct_tup2(table, 3, key, 0.0, 0.0);
    while (state.KeepRunning()) {
        state.PauseTiming();
        std::copy(keys.begin(), keys.end(), table->members[0]);
        state.ResumeTiming();
        sort(table, 0);
    }
    freeFct_tup(table);
}
BENCHMARK(sortTuples<sortFct_tup>)
    ->ArgsProduct({{up, down, peak, valley, displaced, shuffled, steps}, {10000, count}})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(sortTuples<plainSortFct_tup>)
    ->ArgsProduct({{down, peak, valley, displaced, shuffled}, {10000}})
    ->Unit(benchmark::kMicrosecond);

static void stdSortAndGather(benchmark::State &state) {
    const auto shape = static_cast<Shape>(state.range(0));
    const std::vector<double> keys = rowKeys(shape, count);
    state.SetLabel(shapeNames[shape]);
    std::vector<double> members[3] = {keys, keys, keys}, gathered(count);
    std::vector<int> order(count);
    while (state.KeepRunning()) {
        state.PauseTiming();
        members[0] = keys;
        state.ResumeTiming();
        std::iota(order.begin(), order.end(), 0);
        std::sort(order.begin(), order.end(), [&](int i, int j) { return keys[i] < keys[j]; });
        for (auto &member : members) {
            for (int i = 0; i < count; ++i) gathered[i] = member[order[i]];
            member.swap(gathered);
        }
    }
}
BENCHMARK(stdSortAndGather)->DenseRange(up, steps)->Unit(benchmark::kMicrosecond);

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
