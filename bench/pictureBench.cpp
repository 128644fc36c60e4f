// Pictures of a million points: how long they take, and how large the files are. Beside the noise
// of a measurement, which columns of the paper cut down, stand the cases that they can't: points in
// no order.
#include "plotwerk/drawing/pages.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>

using plotwerk::CurveLook;
using plotwerk::Document;

namespace {

constexpr int points = 1'000'000;

struct Case {
    const char *name;
    bool inOrder;
    void (*change)(CurveLook &);
};

constexpr Case cases[] = {
    {"line", true, [](CurveLook &) {}},
    {"dashedLine", true, [](CurveLook &look) { look.dashed = true; }},
    {"steps", true, [](CurveLook &look) { look.stepped = true; }},
    {"area", true, [](CurveLook &look) { look.filled = true; }},
    {"spline", true,
     [](CurveLook &look) { look.interpolationType = 1, look.interpolationPoints = 3; }},
    {"errorBars", true, [](CurveLook &look) { look.yError = true; }},
    {"lineInNoOrder", false, [](CurveLook &) {}},
    {"thinLineInNoOrder", false, [](CurveLook &look) { look.lineThickness = 0.25; }},
    {"stepsInNoOrder", false, [](CurveLook &look) { look.stepped = true; }},
    {"areaInNoOrder", false, [](CurveLook &look) { look.filled = true; }},
    {"symbolsInNoOrder", false, [](CurveLook &look) { look.line = false, look.symbols = true; }},
    {"errorBarsInNoOrder", false, [](CurveLook &look) { look.yError = true, look.line = false; }},
};

constexpr struct {
    const char *name;
    std::string (*make)(const Document &);
} kinds[] = {{"pdf", plotwerk::pdfOfDocument},
             {"eps", plotwerk::epsOfDocument},
             {"tiff", plotwerk::tiffOfDocument}};

Document documentOf(const Case &drawn) {
    std::mt19937_64 random(1);
    std::normal_distribution<double> noise;
    plotwerk::Table table;
    table.y.resize(2);
    table.y[0].name = "y";
    table.y[1].name = "y error";
    table.y[1].look.visible = false;
    for (int i = 0; i < points; ++i) {
        const double x = noise(random);
        table.x.values.push_back(drawn.inOrder ? i : x);
        table.y[0].values.push_back(std::sin(1e-5 * i) + 0.2 * noise(random));
        table.y[1].values.push_back(0.1);
    }
    drawn.change(table.y[0].look);
    Document document;
    document.sources.push_back({"Data", {table}});
    return document;
}

} // namespace

int main(int count, char **arguments) {
    for (const Case &drawn : cases)
        for (const auto &kind : kinds) {
            const auto measure = [&](benchmark::State &state) {
                const Document document = documentOf(drawn);
                std::string file;
                for ([[maybe_unused]] auto _ : state) {
                    file = kind.make(document);
                    benchmark::DoNotOptimize(file.data());
                }
                state.counters["file_kB"] = static_cast<double>(file.size()) / 1000;
            };
            benchmark::RegisterBenchmark((std::string(kind.name) + '/' + drawn.name).c_str(),
                                         measure)
                ->Unit(benchmark::kMillisecond);
        }
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
