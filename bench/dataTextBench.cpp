// Reading data text, beside scanline alone on the same lines; and writing it.
#include "plotwerk/data/dataText.h"
#include "plotwerk/data/dataTextWriter.h"
#include "util/text/scanline.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <string>

namespace {

constexpr int lines = 1'000'000;

// Two numbers a line, as a measurement writes them.
std::string dataText(char separator) {
    std::mt19937_64 random(1);
    std::normal_distribution<double> noise;
    std::string text;
    char line[64];
    for (int i = 0; i < lines; ++i) {
        const int length =
            std::snprintf(line, sizeof line, "%g%c%.6g\n", i * 0.001, separator, noise(random));
        text.append(line, length);
    }
    return text;
}

void count(benchmark::State &state, std::size_t bytes) {
    state.SetItemsProcessed(state.iterations() * lines);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

void scanlineAlone(benchmark::State &state) {
    const std::string text = dataText(' ');
    for (auto _ : state) {
        double values[10];
        const char *line = text.c_str();
        const char *const end = line + text.size();
        while (line < end) {
            int n;
            line = plw::scanline(line, values, 10, &n);
            benchmark::DoNotOptimize(values);
        }
    }
    count(state, text.size());
}

void readDataText(benchmark::State &state) {
    const std::string text = dataText(static_cast<char>(state.range(0)));
    for (auto _ : state) {
        const auto tables = plotwerk::readDataText(text, '.');
        benchmark::DoNotOptimize(tables.data());
    }
    count(state, text.size());
}

void writeDataText(benchmark::State &state) {
    const auto tables = plotwerk::readDataText(dataText(' '), '.');
    std::string text;
    for (auto _ : state) {
        text.clear();
        plotwerk::writeDataText({&tables[0].table.x, &tables[0].table.y[0]}, '.', text);
        benchmark::DoNotOptimize(text.data());
    }
    count(state, text.size());
}

BENCHMARK(scanlineAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(readDataText)
    ->ArgName("separator")
    ->Arg(' ')
    ->Arg('\t')
    ->Arg(',')
    ->Unit(benchmark::kMillisecond);
BENCHMARK(writeDataText)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
