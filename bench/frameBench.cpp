// Frames of a window that shows many points: what drawing one at the size of a window costs the
// processor, and looking for the point under the mouse. A smooth curve and a noisy one; all of the
// data, and steps of a zoom into them.
#include "plotwerk/drawing/hitTest.h"
#include "plotwerk/drawing/picture.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/ranges.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

using plotwerk::CurveLook;
using plotwerk::Document;

static Document documentOf(int points, double noise) {
    std::mt19937_64 random(1);
    std::normal_distribution<double> normal;
    plotwerk::Table table;
    table.y.resize(1);
    table.y[0].name = "y";
    for (int i = 0; i < points; ++i) {
        const double x = 10.0 * i / points;
        table.x.values.push_back(x);
        table.y[0].values.push_back(std::sin(x) + noise * normal(random));
    }
    Document document;
    document.sources.push_back({"Data", {table}});
    return document;
}

static void draw(const Document &document) {
    constexpr int width = 900;
    constexpr int height = 650;
    const plotwerk::Surface image(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    const plotwerk::Context cr(cairo_create(image.get()));
    cairo_set_source_rgb(cr.get(), 1, 1, 1);
    cairo_paint(cr.get());
    const plotwerk::Picture picture(document);
    const double scale = std::min(width / picture.page().width(), height / picture.page().height());
    cairo_scale(cr.get(), scale, scale);
    picture.drawOn(cr.get(), 0.5 / scale);
    benchmark::DoNotOptimize(cairo_image_surface_get_data(image.get()));
}

static void redraw(benchmark::State &state, double noise) {
    const Document document = documentOf(static_cast<int>(state.range(0)), noise);
    for ([[maybe_unused]] auto _ : state) draw(document);
}

// From all of the data to a thousandth of them and back.
static void zoom(benchmark::State &state, double noise) {
    Document document = documentOf(static_cast<int>(state.range(0)), noise);
    int step = 0;
    for ([[maybe_unused]] auto _ : state) {
        const double half = 5 * std::pow(0.8, std::abs(step++ % 60 - 30));
        plotwerk::change(document, [&](Document &changed) {
            plotwerk::setRange(changed, plotwerk::xAxis, 5 - half, 5 + half);
        });
        draw(document);
    }
}

static void redrawWith(benchmark::State &state, void (*change)(CurveLook &)) {
    Document document = documentOf(1'000'000, 0.2);
    change(document.sources[0].tables[0].y[0].look);
    for ([[maybe_unused]] auto _ : state) draw(document);
}

static void readOut(benchmark::State &state, double noise) {
    const Document document = documentOf(static_cast<int>(state.range(0)), noise);
    const plotwerk::ScaledFrame frame = plotwerk::Picture(document).scaledFrame();
    double x = 0;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(plotwerk::nearestPoint(document, frame, {x, frame.height / 3}));
        x = std::fmod(x + 12.3, frame.width);
    }
}

#define FOR_BOTH(work)                                                                             \
    BENCHMARK_CAPTURE(work, smooth, 0)                                                             \
        ->Arg(100'000)                                                                             \
        ->Arg(1'000'000)                                                                           \
        ->Unit(benchmark::kMillisecond);                                                           \
    BENCHMARK_CAPTURE(work, noisy, 0.2)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond)

FOR_BOTH(redraw);
BENCHMARK_CAPTURE(redrawWith, symbols, [](CurveLook &look) {
    look.line = false, look.symbols = true;
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(redrawWith, area, [](CurveLook &look) {
    look.filled = true;
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(redrawWith, spline, [](CurveLook &look) {
    look.interpolationType = 1, look.interpolationPoints = 4;
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(redrawWith, means, [](CurveLook &look) {
    look.sum = 3;
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(redrawWith, dropLines, [](CurveLook &look) {
    look.marker = true;
})->Unit(benchmark::kMillisecond);
FOR_BOTH(zoom);
FOR_BOTH(readOut);
