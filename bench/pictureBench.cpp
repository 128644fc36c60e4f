// Pictures of a million points: how long they take, and how large the files are. Beside the noise
// of a measurement, which columns of the paper cut down, stand the cases that they can't.
#include "plotwerk/drawing/pages.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>

namespace {

constexpr int points = 1'000'000;

plotwerk::Document documentOf(double (*x)(int, double), bool line, bool symbols) {
    std::mt19937_64 random(1);
    std::normal_distribution<double> noise;
    plotwerk::Table table;
    table.y.resize(1);
    table.y[0].look.line = line;
    table.y[0].look.symbols = symbols;
    for (int i = 0; i < points; ++i) {
        table.x.values.push_back(x(i, noise(random)));
        table.y[0].values.push_back(std::sin(1e-5 * i) + 0.2 * noise(random));
    }
    plotwerk::Document document;
    document.sources.push_back({"Data", {table}});
    return document;
}

double inOrder(int i, double) {
    return i;
}
double inNoOrder(int, double random) {
    return random;
}

void measure(benchmark::State &state, const plotwerk::Document &document,
             std::string (*make)(const plotwerk::Document &)) {
    std::string file;
    for ([[maybe_unused]] auto _ : state) {
        file = make(document);
        benchmark::DoNotOptimize(file.data());
    }
    state.SetItemsProcessed(state.iterations() * points);
    state.counters["file_kB"] = static_cast<double>(file.size()) / 1000;
}

void pdfOfLine(benchmark::State &state) {
    measure(state, documentOf(inOrder, true, false), plotwerk::pdfOfDocument);
}
void epsOfLine(benchmark::State &state) {
    measure(state, documentOf(inOrder, true, false), plotwerk::epsOfDocument);
}
void tiffOfLine(benchmark::State &state) {
    measure(state, documentOf(inOrder, true, false), plotwerk::tiffOfDocument);
}
void pdfOfSymbols(benchmark::State &state) {
    measure(state, documentOf(inNoOrder, false, true), plotwerk::pdfOfDocument);
}
void pdfOfLineInNoOrder(benchmark::State &state) {
    measure(state, documentOf(inNoOrder, true, false), plotwerk::pdfOfDocument);
}

BENCHMARK(pdfOfLine)->Unit(benchmark::kMillisecond);
BENCHMARK(epsOfLine)->Unit(benchmark::kMillisecond);
BENCHMARK(tiffOfLine)->Unit(benchmark::kMillisecond);
BENCHMARK(pdfOfSymbols)->Unit(benchmark::kMillisecond);
BENCHMARK(pdfOfLineInNoOrder)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
