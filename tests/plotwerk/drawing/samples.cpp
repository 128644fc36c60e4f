#include "tests/plotwerk/drawing/samples.h"

#include "plotwerk/drawing/picture.h"
#include "tests/support/process.h"

#include <cmath>
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

double inkedPart(const Document &document) {
    const Picture picture(document);
    const int width = static_cast<int>(document.frame.xAxisLength * 72 / 2.54);
    const int height = static_cast<int>(document.frame.yAxisLength * 72 / 2.54);
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    const Context cr(cairo_create(surface.get()));
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
    const std::string script = "f=$(mktemp) && cat >$f && " + command + "; s=$?; rm $f; exit $s";
    const Output output = runProgram({"sh", "-c", script}, bytes);
    EXPECT_EQ(output.status, 0) << command << ": " << output.err;
    return output.out + output.err;
}
