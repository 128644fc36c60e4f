#include "tests/plotwerk/drawing/samples.h"

#include "plotwerk/drawing/picture.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>

using plotwerk::Column;
using plotwerk::Document;

Document documentWith(const std::vector<double> &x, const std::vector<double> &y) {
    plotwerk::Table table;
    table.x.name = std::string("x");
    table.x.values = x;
    table.y.resize(1);
    table.y[0].name = std::string("y");
    table.y[0].values = y;
    Document document;
    document.sources.push_back({"Data", {table}});
    return document;
}

Column &onlyCurve(Document &document) {
    return document.sources[0].tables[0].y[0];
}

static Document documentOf(int points, const std::function<plotwerk::Point(int)> &pointAt) {
    std::vector<double> x;
    std::vector<double> y;
    for (int i = 0; i < points; ++i) {
        const plotwerk::Point p = pointAt(i);
        x.push_back(p.x);
        y.push_back(p.y);
    }
    return documentWith(x, y);
}

Document sineDocument() {
    return documentOf(200, [](int i) {
        const double x = i * 10.0 / 199;
        return plotwerk::Point{x, std::sin(x)};
    });
}

Document noiseDocument(int points) {
    std::mt19937 random(1);
    std::normal_distribution<double> noise(0, 0.2);
    return documentOf(points, [&](int i) {
        return plotwerk::Point{1.0 * i, std::sin(10.0 * i / points) + noise(random)};
    });
}

Document cloudDocument(int points) {
    std::mt19937 random(1);
    std::normal_distribution<double> normal;
    return documentOf(points, [&](int) { return plotwerk::Point{normal(random), normal(random)}; });
}

double inkedPart(const Document &document) {
    const plotwerk::Picture picture(document);
    const int width = static_cast<int>(document.frame.xAxisLength * 72 / 2.54);
    const int height = static_cast<int>(document.frame.yAxisLength * 72 / 2.54);
    const plotwerk::Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    const plotwerk::Context cr(cairo_create(surface.get()));
    cairo_set_source_rgb(cr.get(), 1, 1, 1);
    cairo_paint(cr.get());
    // the frame's upper left corner to the image's
    cairo_translate(cr.get(), picture.page().left, picture.page().top);
    picture.drawOn(cr.get());
    cairo_surface_flush(surface.get());

    const unsigned char *pixels = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    constexpr int border = 8; // axes and ticks
    int inked = 0;
    for (int y = border; y < height - border; ++y)
        for (int x = border; x < width - border; ++x)
            if (pixels[y * stride + 4 * x + 1] < 128) ++inked;
    return inked / (static_cast<double>(width - 2 * border) * (height - 2 * border));
}

std::string outputOf(const std::string &command, const std::string &bytes) {
    std::string path = (std::filesystem::temp_directory_path() / "picture-XXXXXX").string();
    const int file = mkstemp(path.data());
    EXPECT_GE(file, 0);
    close(file);
    std::ofstream(path, std::ios::binary) << bytes;

    std::string line = command;
    line.replace(line.find("FILE"), 4, path);
    std::string output;
    FILE *pipe = popen((line + " 2>&1").c_str(), "r");
    EXPECT_NE(pipe, nullptr) << line;
    char buffer[4096];
    for (size_t n = 0; pipe && (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, n);
    EXPECT_EQ(pclose(pipe), 0) << line << ": " << output;
    std::filesystem::remove(path);
    return output;
}
