#include "tests/plotwerk/drawing/samples.h"

#include "tests/support/process.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <random>

using namespace plotwerk;

Document documentWith(const std::vector<double> &x, const std::vector<double> &y) {
    Table table;
    table.x.name = "x";
    table.x.values = x;
    table.y.resize(1);
    table.y[0].name = "y";
    table.y[0].values = y;
    Document document;
    document.sources.push_back({"Data", {table}});
    return document;
}

Column &onlyCurve(Document &document) {
    return document.sources[0].tables[0].y[0];
}

Document sineDocument() {
    std::vector<double> x(200);
    std::vector<double> y(200);
    for (size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<double>(i) * 10 / 199;
        y[i] = std::sin(x[i]);
    }
    return documentWith(x, y);
}

Document cloudDocument(size_t points) {
    std::mt19937 random(1);
    std::normal_distribution<double> normal;
    std::vector<double> x(points);
    std::vector<double> y(points);
    for (double &value : x) value = normal(random);
    for (double &value : y) value = normal(random);
    return documentWith(x, y);
}

std::string described(const Path &path) {
    std::string text;
    for (const Point &p : path) {
        char point[64];
        std::snprintf(point, sizeof point, "%g,%g", p.x, p.y);
        text += (text.empty() ? "" : " ") + std::string(isBreak(p) ? "|" : point);
    }
    return text;
}

constexpr int perPoint = 2;

Pixels::Pixels(const Document &document)
    : width(document.frame.xAxisLength * pointsPerCm),
      height(document.frame.yAxisLength * pointsPerCm) {
    const Picture picture(document);
    const Box &page = picture.page();
    corner = {-page.left, -page.top};
    surface.reset(cairo_image_surface_create(CAIRO_FORMAT_RGB24,
                                             static_cast<int>(page.width() * perPoint),
                                             static_cast<int>(page.height() * perPoint)));
    const Context cr(cairo_create(surface.get()));
    cairo_set_source_rgb(cr.get(), 1, 1, 1);
    cairo_paint(cr.get());
    cairo_scale(cr.get(), perPoint, perPoint);
    picture.drawOn(cr.get());
    cairo_surface_flush(surface.get());
}

unsigned Pixels::pixel(int x, int y) const {
    unsigned value = 0;
    std::memcpy(&value,
                cairo_image_surface_get_data(surface.get()) +
                    ptrdiff_t{y} * cairo_image_surface_get_stride(surface.get()) + ptrdiff_t{4} * x,
                sizeof value);
    return value & 0xffffff;
}

char Pixels::at(double x, double y) const {
    const unsigned value =
        pixel(static_cast<int>((corner.x + x * pointsPerCm) * perPoint),
              static_cast<int>((corner.y + height - y * pointsPerCm) * perPoint));
    const int red = value >> 16;
    const int green = value >> 8 & 255;
    const int blue = value & 255;
    if (value == 0xffffff) return ' ';
    if (red > std::max(green, blue) + 60) return 'r';
    if (green > std::max(red, blue) + 60) return 'g';
    if (blue > std::max(red, green) + 60) return 'b';
    return std::max({red, green, blue}) < 128 ? '#' : '.';
}

double Pixels::inkedPart() const {
    constexpr double border = 8; // axes and ticks
    int inked = 0;
    int all = 0;
    for (double y = border; y < height - border; y += 0.5)
        for (double x = border; x < width - border; x += 0.5, ++all)
            if (at(x / pointsPerCm, y / pointsPerCm) != ' ') ++inked;
    return inked / static_cast<double>(all);
}

std::string outputOf(const std::string &command, const std::string &bytes) {
    const std::string script = "f=$(mktemp) && cat >$f && " + command + "; s=$?; rm $f; exit $s";
    const Output output = runProgram({"sh", "-c", script}, bytes);
    EXPECT_EQ(output.status, 0) << command << ": " << output.err;
    return output.out + output.err;
}
