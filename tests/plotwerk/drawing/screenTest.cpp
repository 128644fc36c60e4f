#include "plotwerk/drawing/picture.h"
#include "plotwerk/drawing/visiblePoints.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numeric>
#include <random>

using namespace plotwerk;

using D = Document &;
using L = CurveLook &;

namespace {

constexpr double dotsPerPoint = 2.4; // of a window

// The darkness of each dot, 0 to 255, of the picture in a window.
std::vector<int> dotsOf(const Document &document, double resolution) {
    const Picture picture(document);
    const int width = static_cast<int>(picture.page().width() * dotsPerPoint);
    const int height = static_cast<int>(picture.page().height() * dotsPerPoint);
    const Surface image(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    const Context cr(cairo_create(image.get()));
    cairo_set_source_rgb(cr.get(), 1, 1, 1);
    cairo_paint(cr.get());
    cairo_scale(cr.get(), dotsPerPoint, dotsPerPoint);
    picture.drawOn(cr.get(), resolution);
    cairo_surface_flush(image.get());
    std::vector<int> dots;
    for (int y = 0; y < height; ++y) {
        const unsigned char *row = cairo_image_surface_get_data(image.get()) +
                                   std::ptrdiff_t{y} * cairo_image_surface_get_stride(image.get());
        for (int x = 0; x < width; ++x) dots.push_back(255 - row[4 * x]);
    }
    return dots;
}

Document longCurve(double noise, bool shuffled = false) {
    constexpr int count = 30'000;
    std::mt19937 random(1);
    std::normal_distribution<double> normal;
    std::vector<double> x(count);
    std::vector<double> y(count);
    for (int i = 0; i < count; ++i) x[i] = 1 + 10.0 * i / count;
    if (shuffled) std::shuffle(x.begin(), x.end(), random);
    for (int i = 0; i < count; ++i) y[i] = std::sin(x[i]) + noise * normal(random);
    for (int i = 7000; i < 9000; ++i) y[i] = unset;
    return documentWith(x, y);
}

void withSpline(D, L look) {
    look.interpolationType = 1;
    look.interpolationPoints = 5;
}

} // namespace

// Of the ink, as the eye adds it up: few dots differ by more than half of black.
TEST(PictureOnAScreen, CoversTheDotsThatTheWholeCurveCovers) {
    const struct {
        const char *what;
        double noise;
        void (*change)(Document &, CurveLook &);
        Range x = {};
    } cases[] = {
        {"smooth", 0, [](D, L) {}},
        {"noisy", 0.2, [](D, L) {}},
        {"zoomed in", 0.2, [](D, L) {}, {4, 4.2}},
        {"beyond", 0.2, [](D, L) {}, {20, 30}},
        {"logarithmic, reversed", 0.2,
         [](D d, L) { d.axes[xAxis].logarithmic = d.axes[xAxis].reversed = true; }},
        {"steps", 0.2, [](D, L look) { look.stepped = true; }},
        {"clear", 0.2, [](D, L look) { look.lineColour.opacity = 0.6; }},
        {"thick, a little noise", 0.01, [](D, L look) { look.lineThickness = 6; }},
        {"area", 0.2, [](D, L look) { look.filled = true; }},
        {"drop lines", 0.2, [](D, L look) { look.marker = true; }},
        {"noisy spline", 0.2, withSpline},
        {"smooth spline, few points", 0, withSpline, {4, 4.005}},
        {"points between on a logarithmic axis", 0.2,
         [](D d, L look) { look.interpolationPoints = 5, d.axes[xAxis].logarithmic = true; }},
        {"symbols", 0.2, [](D, L look) { look.line = false, look.symbols = true; }},
        {"open symbols on few spots of a screen", 0,
         [](D, L look) { look.line = false, look.symbols = true, look.symbol[0] = 2; }},
        {"level lines with gaps between upright ones", 0,
         [](D d, L) {
             d.frame.xAxisLength = 60;
             d.axes[yAxis].range = {-50, 50};
             std::vector<double> &y = onlyCurve(d).values;
             for (std::size_t i = 0; i < y.size(); ++i)
                 y[i] = i % 100 / 20 == 2 ? unset : static_cast<double>(i / 100 % 2);
         }},
        {"lone points", 0.2, [](D d, L) {
             std::vector<double> &y = onlyCurve(d).values;
             for (std::size_t i = 0; i < y.size(); i += 2) y[i] = unset;
         }}};
    for (const auto &c : cases) {
        Document document = longCurve(c.noise);
        document.axes[xAxis].range = c.x;
        c.change(document, onlyCurve(document).look);
        const std::vector<int> whole = dotsOf(document, 0);
        const std::vector<int> thinned = dotsOf(document, 0.5 / dotsPerPoint);
        double ink = 0;
        double difference = 0;
        double far = 0;
        for (std::size_t i = 0; i < whole.size(); ++i) {
            ink += whole[i];
            difference += thinned[i] - whole[i];
            far += std::abs(thinned[i] - whole[i]) > 128;
        }
        EXPECT_LT(std::abs(difference), 0.04 * ink) << c.what;
        EXPECT_LT(255 * far, 0.01 * ink) << c.what;
    }
}

TEST(PictureOnAScreen, ShowsTheDashesOfALongLine) {
    Document document = longCurve(0.01);
    onlyCurve(document).look.dashed = true;
    const auto inkOf = [&](double resolution) {
        const std::vector<int> dots = dotsOf(document, resolution);
        return std::accumulate(dots.begin(), dots.end(), 0.0);
    };
    EXPECT_NEAR(inkOf(0.5 / dotsPerPoint) / inkOf(0), 1, 0.03);
}

// A corner off by a quarter of a dot shades dots by more than that.
TEST(PictureOnAScreen, HasNoCornersInSmoothCurves) {
    for (const double slope : {0.02, 0.3}) {
        Document document = longCurve(0);
        for (double &y : onlyCurve(document).values) y *= slope;
        document.axes[yAxis].range = {-1, 1};
        const std::vector<int> whole = dotsOf(document, 0);
        const std::vector<int> thinned = dotsOf(document, 0.5 / dotsPerPoint);
        int most = 0;
        for (std::size_t i = 0; i < whole.size(); ++i)
            most = std::max(most, std::abs(thinned[i] - whole[i]));
        EXPECT_LE(most, 36) << slope;
    }
}

TEST(VisiblePoints, AreFewAndThoseOfTheFrame) {
    Document document = longCurve(0.2);
    const auto count = [&](double resolution) {
        const Placed placed(document);
        return visiblePoints(placed.curves[0], placed.frame, true, resolution).size();
    };
    EXPECT_LE(count(1), 4 * 12 * pointsPerCm + 10);
    document.axes[xAxis].range = {4, 4.01};
    EXPECT_EQ(count(1e-9), 32);
    onlyCurve(document).look.sum = 2;
    EXPECT_GT(count(1), 10'000) << "of means all";
    document = longCurve(0, true);
    EXPECT_EQ(count(1), 30'000) << "all where the line is broken";
}
