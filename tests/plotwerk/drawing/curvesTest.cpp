// What is drawn of curves, held against geometry.
#include "plotwerk/drawing/curves.h"

#include "plotwerk/drawing/coveredCurves.h"
#include "plotwerk/drawing/curveSample.h"
#include "plotwerk/drawing/curveStrokes.h"
#include "plotwerk/drawing/curveSymbols.h"
#include "plotwerk/drawing/denseImage.h"
#include "plotwerk/drawing/raster.h"
#include "plotwerk/drawing/screenStrokes.h"
#include "plotwerk/drawing/symbols.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>
#include <set>

using namespace plotwerk;

namespace {

// How much of each pixel is painted, from 0 to 255.
class Coverage {
  public:
    Coverage(int width, int height, const std::function<void(cairo_t *)> &draw)
        : surface(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height)) {
        draw(Context(cairo_create(surface.get())).get());
        cairo_surface_flush(surface.get());
    }

    int at(int x, int y) const {
        return cairo_image_surface_get_data(
            surface.get())[y * cairo_image_surface_get_stride(surface.get()) + x];
    }

  private:
    Surface surface;
};

} // namespace

TEST(Strokes, AreJoinedAndGoOnAcrossTheirParts) {
    Path level; // dashes begin anew behind a break
    for (int i = 0; i <= 1200; ++i)
        level.push_back(i == 103 || i == 1003 ? pathBreak : Point{0.5 * i, 10});
    CurveLook look;
    look.lineThickness = 2;
    look.dashLength = {8, 4, 2, 6};
    const Coverage dashes(600, 20, [&](cairo_t *cr) {
        strokePath(cr, level, look, true, {});
        EXPECT_EQ(cairo_get_dash_count(cr), 0) << "what is drawn next has none";
    });
    for (int x = 0; x < 600; ++x) {
        if (x == 51 || x == 501) continue; // the breaks
        const int phase = (x < 51 ? x : x < 501 ? x - 52 : x - 502) % 20;
        EXPECT_EQ(dashes.at(x, 9), phase < 8 || (phase >= 12 && phase < 14) ? 255 : 0) << x;
    }
    look.dashLength = {0, 0, 0, 0}; // no dashes at all
    EXPECT_EQ(Coverage(9, 20, [&](auto cr) { strokePath(cr, level, look, true, {}); }).at(8, 9),
              255);

    look.lineColour.opacity = 0.5;
    const Coverage clear(600, 20, [&](cairo_t *cr) { strokePath(cr, level, look, false, {}); });
    for (int x = 0; x < 600; ++x)
        EXPECT_NEAR(clear.at(x, 9), x == 51 || x == 501 ? 0 : 128, 1) << x;

    look.lineColour.opacity = 1;
    Path stairs;
    for (int i = 0; i <= 800; ++i) stairs.push_back({1.5 * (i + i % 2), 5 + 1.5 * (i - i % 2)});
    const Coverage steps(1210, 1210, [&](cairo_t *cr) { strokePath(cr, stairs, look, false, {}); });
    for (int i = 1; i < 800; ++i) { // the outer side of each corner
        const int x = static_cast<int>(stairs[i].x) - (i % 2 == 0);
        const int y = static_cast<int>(stairs[i].y) - (i % 2 == 1);
        EXPECT_GT(steps.at(x, y), 100) << i;
    }
}

TEST(Strokes, OfManyPointsAreAnImageWithTheSameGapsWhereClear) {
    Path path = {{1, 5}, pathBreak, {8, 5}, {25, 5}, pathBreak, {32, 5}, pathBreak};
    for (int i = 0; path.size() < 10'001; ++i) path.push_back({40.0 + i % 2, 5});
    CurveLook look;
    look.lineThickness = 2;
    const auto draw = [&](cairo_t *cr) { strokePath(cr, path, look, false, {0, 0, 60, 10}); };
    EXPECT_EQ(drawnBy(draw).size(), 51U + 1) << "lines of 200 points, and one with dots";
    look.lineColour.opacity = 0.5;
    EXPECT_EQ(drawnBy(draw).size(), 0U);
    const Coverage seen(60, 10, draw);
    for (const int x : {1, 10, 24, 32, 40}) // the image lies between the pixels
        EXPECT_NEAR(seen.at(x, 5), 128, 6) << x;
    for (const int x : {6, 28, 36, 50}) EXPECT_EQ(seen.at(x, 5), 0) << x;
    path.pop_back();
    EXPECT_EQ(drawnBy(draw).size(), 2U);
}

// Lines of a screen that are nearly upright are boxes, fifty at once; a path of them alone leaves
// no dot behind.
TEST(Strokes, OfManyPointsOnAScreenAreBoxesAndLines) {
    const auto drawn = [](const Path &path, double thickness) {
        CurveLook look;
        look.lineThickness = thickness;
        return drawnBy([&](cairo_t *cr) { strokeOnScreen(cr, path, look, {0, 0, 900, 100}, 0.5); });
    };
    Path path = {{0, 0},  {5, 0},    {10, 0}, {11, 9}, {15, 9},  pathBreak,
                 {20, 0}, pathBreak, {25, 5}, {25, 0}, pathBreak};
    while (path.size() < 511) path.push_back({30, path.size() % 2 == 0 ? 20.0 : 30.0});
    std::string first;
    std::string strokes;
    int fills = 0;
    for (const Drawn &each : drawn(path, 2)) {
        if (each.thickness == 0 && ++fills == 1) first = described(each.path);
        if (each.thickness > 0)
            strokes +=
                std::to_string(std::lround(each.thickness)) + ": " + described(each.path) + "; ";
    }
    EXPECT_EQ(first, "9.5,-0.785156 11.5,-0.785156 11.5,9.78516 9.5,9.78516");
    EXPECT_EQ(fills, 11) << "of 501 boxes";
    EXPECT_EQ(strokes, "2: 0,0 10,0 | 11,9 15,9 | 20,0; 6: 20,0 20,0; ");
    path[3].x = 11.01; // no longer upright
    EXPECT_EQ(drawn(path, 2).size(), 12U);
    EXPECT_EQ(drawn(path, 8).front().thickness, 0);
    EXPECT_EQ(drawn(path, 8.01).front().thickness, 8.01) << "too thick for boxes";
    path.resize(501);
    EXPECT_EQ(drawn(path, 2).front().thickness, 0);
    path.resize(500);
    EXPECT_EQ(drawn(path, 2).front().thickness, 2) << "few points";

    for (const std::size_t points : {20'000U, 20'001U}) {
        Path slanted;
        for (std::size_t i = 0; i < points; ++i)
            slanted.push_back({i % 2 == 0 ? 0.0 : 20.0, static_cast<double>(i % 100)});
        EXPECT_EQ(drawn(slanted, 2).size(), points == 20'000U ? 1000U : 0U);
    }
}

// Many points are drawn as an image: it marks the pixels that cairo paints.
TEST(DenseImage, HasThePixelsOfWhatItStandsFor) {
    const Box box{10, 20, 110, 80};
    constexpr int scale = 4;
    const auto seen = [&](const std::function<void(cairo_t *)> &draw) {
        return Coverage(400, 240, [&](cairo_t *cr) {
            cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
            cairo_scale(cr, scale, scale);
            cairo_translate(cr, -box.left, -box.top);
            draw(cr);
        });
    };
    const auto expectSame = [&](const char *what, const DenseImage &image,
                                const std::function<void(cairo_t *)> &draw) {
        const Coverage got = seen([&](cairo_t *cr) { image.paintOn(cr); });
        const Coverage want = seen(draw);
        int painted = 0;
        int different = 0;
        for (int y = 0; y < 240; ++y)
            for (int x = 0; x < 400; ++x) {
                painted += want.at(x, y) > 0;
                different += got.at(x, y) != want.at(x, y);
            }
        EXPECT_GT(painted, 15) << what;
        EXPECT_LE(different, 4 + painted / 200) << what << " of " << painted;
    };
    const struct {
        const char *what;
        Point from, to;
        double thickness;
    } lines[] = {
        {"slanted", {20.1, 30.2}, {93.3, 71.7}, 7}, {"steep", {60, 75}, {53.3, 25.1}, 3},
        {"level", {15.1, 40.1}, {99.2, 40.1}, 2},   {"upright", {50.1, 25.2}, {50.1, 70}, 9},
        {"dot", {50.1, 50.1}, {50.1, 50.1}, 5},     {"thin", {20.1, 30}, {99, 71}, 1e-3},
        {"beyond", {-50, 10}, {150.3, 95}, 11}};
    for (const auto &line : lines) {
        DenseImage image(box, 72 * scale);
        image.addLine(line.from, line.to, line.thickness);
        expectSame(line.what, image, [&](cairo_t *cr) {
            cairo_set_line_cap(cr, CAIRO_LINE_CAP_SQUARE);
            cairo_set_line_width(cr, std::max(line.thickness, 1.0 / scale));
            cairo_move_to(cr, line.from.x, line.from.y);
            cairo_line_to(cr, line.to.x + 1e-2, line.to.y); // or it would draw no dot
            cairo_stroke(cr);
        });
    }
    // a star that is wound twice about its middle, two over it in either direction, a ring that
    // crosses itself, and what lies partly outside
    const std::vector<Path> rings = {
        {{60.1, 25}, {75.3, 74}, {34, 43.1}, {86.2, 43.2}, {45.1, 74.2}},
        {{55, 50.1}, {58, 50.2}, {58.1, 53}},
        {{40, 43.3}, {58, 50.2}, {70.1, 30}},
        {{82, 32}, {97, 58.1}, {97, 32}, {82, 58.1}},
        {{-5, 60}, {30, 90.1}, {20.2, 22}, {16, 5}},
        {{100, 30.1}, {500, 20.2}, {500, 70}, {100, 60.3}}};
    DenseImage area(box, 72 * scale);
    area.fill(rings);
    expectSame("area", area, [&](cairo_t *cr) {
        for (const Path &ring : rings) {
            tracePath(cr, ring, 0, ring.size());
            cairo_close_path(cr);
            cairo_fill(cr);
        }
    });
    const auto shape = [](cairo_t *cr) {
        cairo_arc(cr, 0, 0, 20, 0.3, 5);
        cairo_fill(cr);
    };
    const std::vector<Point> points = {{40.6, 50.2}, {79.7, 50.3}, {60.1, 49.8}};
    std::vector<Point> many; // are stamped otherwise
    for (int i = 0; i < 2000; ++i) many.insert(many.end(), points.begin(), points.end());
    for (const auto &stamped : {points, many}) {
        DenseImage stamps(box, 72 * scale);
        stamps.stamp(stamped, 20, shape);
        expectSame("stamps", stamps, [&](cairo_t *cr) {
            for (const Point &p : points) {
                cairo_save(cr);
                cairo_translate(cr, (std::floor(p.x * scale) + 0.5) / scale,
                                (std::floor(p.y * scale) + 0.5) / scale);
                shape(cr);
                cairo_restore(cr);
            }
        });
    }

    DenseImage large({0, 0, 2000, 2000}, 600); // in 50 megapixels
    large.addLine({0, 20}, {40, 20}, 0);
    const Coverage thin(40, 40, [&](cairo_t *cr) { large.paintOn(cr); });
    int ink = 0;
    for (int y = 0; y < 40; ++y) ink += thin.at(20, y);
    EXPECT_NEAR(ink, 255 / std::sqrt(50e6 / 4e6), 8) << "a pixel";
}

// Each dot of a screen has as much of the colour as its four pixels.
TEST(DenseImage, ShadesTheDotsOfAScreen) {
    const Box box{10.3, 20.7, 110, 80};
    const auto addTo = [](DenseImage &image) {
        image.addLine({20, 30}, {93, 71}, 3);
        image.fill({{{50, 30}, {100, 21}, {105, 77}}});
    };
    const Coverage dots(240, 180, [&](cairo_t *cr) {
        cairo_scale(cr, 2, 2);
        DenseImage image = DenseImage::onScreen(cr, box, 0.25);
        addTo(image);
        image.paintOn(cr);
    });
    const Coverage pixels(480, 360, [&](cairo_t *cr) {
        cairo_scale(cr, 4, 4);
        DenseImage image({10, 20.5, 110, 80}, 4 * 72);
        addTo(image);
        image.paintOn(cr);
    });
    std::set<int> seen;
    for (int y = 0; y < 180; ++y)
        for (int x = 0; x < 240; ++x) {
            const int four = pixels.at(2 * x, 2 * y) + pixels.at(2 * x + 1, 2 * y) +
                             pixels.at(2 * x, 2 * y + 1) + pixels.at(2 * x + 1, 2 * y + 1);
            ASSERT_EQ(dots.at(x, y), four / 4) << x << ' ' << y;
            seen.insert(four);
        }
    EXPECT_EQ(seen.size(), 5U);
}

TEST(Curves, OfManyPointsHaveShadesOfQuartersOnAScreen) {
    std::vector<double> x, y;
    for (int i = 0; i < 60'000; ++i) {
        x.push_back(std::fmod(i * 0.61803, 1));
        y.push_back(std::fmod(i * 0.41421, 1));
    }
    for (const int kind : {0, 1, 2}) {
        Document document = documentWith(x, y);
        for (Axis &axis : document.axes) axis.range = {-0.5, 1.5};
        onlyCurve(document).look = {.line = kind == 0,
                                    .filled = kind == 1,
                                    .symbols = kind == 2,
                                    .symbolSize = 3,
                                    .symbol = {2, 0, 0, 0},
                                    .fillColour = {}};
        const Placed placed(document);
        const Coverage dots(340, 226, [&](cairo_t *cr) { placed.draw(cr, 0.5); });
        std::set<int> greys;
        for (int i = 0; i < 340 * 226; ++i) greys.insert(dots.at(i % 340, i / 340));
        EXPECT_EQ(greys, (std::set<int>{0, 63, 127, 191, 255})) << kind;
    }
}

// "THICKNESS: PATH; ...", 0 for what is filled.
static std::string drawnText(const std::function<void(cairo_t *)> &draw) {
    std::string text;
    for (const Drawn &each : drawnBy(draw)) {
        char thickness[32];
        std::snprintf(thickness, sizeof thickness, "%g%s: ", each.thickness,
                      each.dashed ? " dashed" : "");
        text += (text.empty() ? "" : "; ") + (thickness + described(each.path));
    }
    return text;
}

TEST(Samples, ShowLooksInTheSizeOfType) {
    using L = CurveLook &;
    const std::string level = "1: 10,16.75 40,16.75";
    const std::string upright = "1: 25,20 25,13.5";
    const std::string symbol = "1: 22,16.75 28,16.75";
    const std::tuple<const char *, void (*)(CurveLook &), std::string> cases[] = {
        {"nothing", [](L) {}, ""},
        {"line", [](L look) { look.line = look.marker = true; }, level},
        {"thick", [](L look) { look.line = true, look.lineThickness = 9; }, "6" + level.substr(1)},
        {"no thickness", [](L look) { look.line = true, look.lineThickness = 0; }, ""},
        {"dashes", [](L look) { look.line = look.dashed = true; }, "1 dashed" + level.substr(1)},
        {"drop lines", [](L look) { look.marker = look.xError = look.dashed = true; }, upright},
        {"errors of y", [](L look) { look.yError = true; }, upright},
        {"errors of x", [](L look) { look.xError = look.dashed = true; }, level},
        {"symbols", [](L look) { look.symbols = look.yError = look.xError = true; }, symbol},
        {"symbols on a line", [](L look) { look.symbols = look.line = true; },
         level + "; " + symbol},
        {"large symbols", [](L look) { look.symbols = true, look.symbolSize = 99; },
         "1: 19,16.75 31,16.75"},
        {"area", [](L look) { look.filled = true; }, "0: 10,13.5 40,13.5 40,20 10,20"}};
    for (const auto &[what, change, want] : cases) {
        CurveLook look;
        look.line = false;
        look.lineThickness = 1;
        look.symbolSize = 5;
        look.symbol = {14, 0, 0, 0}; // a level line of 1.2 sizes
        change(look);
        EXPECT_EQ(drawnText([&](cairo_t *cr) {
                      drawSample(cr, look, {10, 20}, 30);
                  }),
                  want)
            << what;
        EXPECT_EQ(showsAnything(look), !want.empty() || look.line) << what;
    }
    CurveLook look;
    for (const bool line : {false, true})
        for (const bool dashed : {false, true})
            for (const double dash : {1.0, 10.0, 99.0}) { // two periods and a dash
                look.line = line;
                look.dashed = dashed;
                look.dashLength = {dash, 2, 7, 3};
                const double want = std::min(2 * (dash + 12) + dash, 60.0);
                EXPECT_EQ(sampleWidthOf(look), line && dashed ? std::max(want, 22.0) : 22);
            }
}

TEST(Curves, WithoutThicknessHaveSymbolsOnlyOfEverySizeButNone) {
    Document document = documentWith({1, 3, 5}, {1, 3, unset});
    document.sources[0].tables[0].y.push_back(column("y error", {1, 1, 1}));
    for (const double size : {0.0, 0.5, 2.0, 40.0}) {
        onlyCurve(document).look = {.yError = true,
                                    .marker = true,
                                    .symbols = true,
                                    .symbolSize = size,
                                    .symbol = {14, 0, 0, 0}, // a level line of 1.2 sizes
                                    .lineThickness = 0};
        const std::vector<Drawn> drawn = drawnCurve(document);
        EXPECT_EQ(drawn.size(), size > 0 ? 2U : 0U) << size;
        for (const Drawn &each : drawn) {
            EXPECT_EQ(each.thickness, std::min(0.25, size / 4));
            EXPECT_NEAR(each.path.back().x - each.path.front().x, 1.2 * size, 0.01);
        }
    }
}

TEST(Curves, EndAtTheFrameHoweverThick) {
    Document document = documentWith({0, 10}, {5, 5});
    document.axes[yAxis].range = {0, 5};
    document.axes[xAxis].range = {0, 10};
    onlyCurve(document).look.lineThickness = 20;
    const Placed placed(document);
    expectNear(inkOf([&](cairo_t *cr) { placed.draw(cr); }), {0, 0, placed.frame.width, 10});
}

TEST(Symbols, AreAsClearInsideAsTheirLines) {
    const Coverage symbol(20, 20, [](cairo_t *cr) {
        drawSymbol(cr, 1, {10, 10}, 16, 1, Colour{0, 0, 0, 0.5}, true);
    });
    EXPECT_NEAR(symbol.at(10, 10), 128, 1);
}

TEST(Symbols, HaveTheirShapes) {
    const struct {
        int code;
        const char *path;
    } shapes[] = {{0, "50,0 0,50 -50,0 0,-50 50,0"},
                  {2, "45.2539,-45.2539 45.2539,45.2539 -45.2539,45.2539 -45.2539,-45.2539"},
                  {4, "0,-68 58.8906,34 -58.8906,34"},
                  {6, "0,-68 68,0 0,68 -68,0"},
                  {8, "0,68 -58.8906,-34 58.8906,-34"},
                  {10, "0,-60 0,60 | -60,0 60,0"},
                  {11, "-48,-48 48,48 | -48,48 48,-48"},
                  {12, "0,-60 0,60 | -60,0 60,0 | -48,-48 48,48 | -48,48 48,-48"},
                  {13, "0,-60 0,60"},
                  {14, "-60,0 60,0"},
                  {15, "20,0 0,20 -20,0 0,-20 20,0"}};
    const auto drawn = [](int code, bool whiteInside) {
        return drawnText([&](cairo_t *cr) {
            drawSymbol(cr, code, {0, 0}, 100, 1, {}, whiteInside);
        });
    };
    for (const auto &[code, path] : shapes) {
        const std::string outline = std::string("1: ") + path;
        const std::string area = std::string("0: ") + path;
        EXPECT_EQ(drawn(code, true), code < 10 || code == 15 ? area : outline) << code;
        if (code >= 10) continue;
        for (const bool white : {false, true}) EXPECT_EQ(drawn(code + 1, white), outline);
    }
    EXPECT_EQ(drawnBy([](cairo_t *cr) { drawSymbol(cr, 12, {}, 4, 2, {}, true); })[0].thickness, 1)
        << "a quarter of it";
}

TEST(Symbols, AreVectorsWithinTheFrameUpToTwentyThousandSpots) {
    const Document document = documentWith({0, 1}, {0, 1});
    const ScaledFrame frame = Placed(document).frame;
    CurveLook look;
    look.symbol = {14, 0, 0, 0};
    const auto drawn = [&](const Path &points) {
        return drawnBy([&](cairo_t *cr) { drawSymbols(cr, points, look, frame, 0); }).size();
    };
    for (const double out : {0.009, 0.011}) { // a hundredth of a point
        const double right = frame.width + out, bottom = frame.height + out;
        EXPECT_EQ(drawn({{-out, 50}, {50, -out}, {right, 50}, {50, bottom}}), out < 0.01 ? 4U : 0U);
    }
    Path points;
    for (int i = 0; i < 20000; ++i) points.push_back({i % 200 * 0.5, i / 200 * 0.5});
    points.push_back(points.front()); // on the same spot
    EXPECT_EQ(drawn(points), 20000U);
    points.push_back({110, 10});
    EXPECT_EQ(drawn(points), 0U) << "an image";
}

TEST(Curves, DropLinesToTheXAxisOrZeroOrTheNearestEdge) {
    const struct {
        Range range; // of the y axis, 100 points long
        bool logarithmic;
        double xAxisPos, value, want; // in points from the lower end of the scale
    } cases[] = {{{-1, 3}, false, unset, 2, 25},    {{1, 5}, false, unset, 2, 0},
                 {{-5, -1}, false, unset, -2, 100}, {{-1, 3}, false, 1, 2, 50},
                 {{1, 100}, true, unset, 20, 0},    {{1, 100}, true, 10, 20, 50}};
    for (const auto &c : cases)
        for (const bool reversed : {false, true}) {
            Document document = documentWith({5}, {c.value});
            document.frame.yAxisLength = 100 / pointsPerCm;
            document.frame.xAxisPos = c.xAxisPos;
            document.axes[yAxis] = {
                .range = c.range, .logarithmic = c.logarithmic, .reversed = reversed};
            onlyCurve(document).look = {.line = false, .marker = true};
            const std::vector<Drawn> drawn = drawnCurve(document);
            ASSERT_EQ(drawn.size(), 1U);
            const ScaledFrame frame = Placed(document).frame;
            const double base = reversed ? c.want : 100 - c.want;
            const double point = frame.height - frame.scales[yAxis].position(c.value);
            EXPECT_NEAR(drawn[0].path.front().y + drawn[0].path.back().y, point + base, 0.1)
                << c.range.min << c.logarithmic << reversed;
        }
}

TEST(CoveredCurves, CountPointsAndTheLengthOfLines) {
    for (const int points : {13, 60001}) {
        std::vector<double> x;
        for (int i = 0; i < points; ++i) x.push_back(12.0 * i / (points - 1));
        Document document = centimetres();
        document.sources[0].tables[0] = table(x, {column("y", std::vector(x.size(), 4.0))});
        const double length = 6.5 * pointsPerCm / 5; // five points weigh as much as a symbol
        const double marks = std::floor(6.5 / 12 * (points - 1)) + 1;
        for (const bool line : {false, true})
            for (const bool symbols : {false, true})
                for (const bool filled : {false, true}) {
                    onlyCurve(document).look = {.line = line, .filled = filled, .symbols = symbols};
                    const auto &[of, curves, frame] = Placed(document);
                    const double middle = frame.height / 2;
                    const Box box{-10, middle - 9, 6.5 * pointsPerCm, middle + 9};
                    // drop lines and errors are marks, too
                    const double want =
                        (line || filled ? length : 0) + (symbols || !line ? marks : 0);
                    EXPECT_NEAR(coveredBy(box, plotwerk::inkOf(curves, frame)), want,
                                0.3 + points / 5000.0)
                        << line << symbols << filled << points;
                }
    }
}

// Shades took ten seconds of a hundred thousand lines.
TEST(Rows, ShowVeryManyCurvesWithoutShades) {
    const auto greysOf = [](std::size_t curves) {
        Document document = documentWith({0, 1}, {0, 0.3});
        document.sources[0].tables[0].y.resize(curves, onlyCurve(document));
        std::set<int> greys; // in the middle
        const Picture picture(document);
        const auto [width, height] = rasterSizeOf(pageOf(picture));
        int y = 0;
        drawRows(pageOf(picture), [&, middle = width / 2, rows = height](const unsigned char *row) {
            EXPECT_EQ(row[0] & row[1] & row[2], 255) << "white from the first dot on";
            if (++y > rows / 3 && y < rows * 2 / 3) greys.insert(row[3 * middle]);
        });
        return greys.size();
    };
    EXPECT_GT(greysOf(5000), 2U);
    EXPECT_EQ(greysOf(5001), 2U);
}
