#include "plotwerk/drawing/pages.h"
#include "plotwerk/drawing/axes.h"
#include "plotwerk/drawing/picture.h"
#include "plotwerk/drawing/symbols.h"
#include "tests/plotwerk/drawing/samples.h"

#include <climits>
#include <cmath>
#include <complex>
#include <gtest/gtest.h>
#include <numeric>
#include <regex>
#include <sstream>

using namespace plotwerk;

namespace {

// The numbers after the key on its line.
std::vector<double> numbersAfter(const std::string &text, const std::string &key) {
    std::vector<double> numbers;
    const size_t at = text.find(key);
    if (at == std::string::npos) return numbers;
    std::istringstream line(text.substr(at + key.size(), text.find('\n', at) - at - key.size()));
    for (std::string word; line >> word;)
        if (std::isdigit(static_cast<unsigned char>(word[0]))) numbers.push_back(std::stod(word));
    return numbers;
}

std::vector<double> pageSizeOf(const std::string &pdf) {
    return numbersAfter(outputOf("pdfinfo $f", pdf), "Page size:");
}

// What ghostscript finds drawn: left, bottom, right, top.
std::vector<double> inkBoxOf(const std::string &file) {
    return numbersAfter(outputOf("gs -q -dNOPAUSE -dBATCH -sDEVICE=bbox $f", file),
                        "%%HiResBoundingBox:");
}

bool contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

Document sineOverTimeWithTexts() {
    Document document = sineDocument();
    document.axes[xAxis].title = "{\\rtf1\\uc1 Time {\\i t} / \\u956?s}";
    document.axes[yAxis].title = "Gr\u00f6\u00dfe";
    document.texts.push_back({"{\\rtf1 {\\b placed} text}", 0.9, 0.9, 0, false, false});
    document.texts.push_back({"not shown", 11, 0, 0, true, true});
    return document;
}

} // namespace

TEST(Pdf, HoldsNumbersTitlesAndTextsAsText) {
    Document named = sineDocument();
    named.sources[0].tables[0].x.name = "Frequency";
    onlyCurve(named).name = "Amplitude \xff";
    Document twoNames = named;
    twoNames.sources[0].tables[0].y.push_back(onlyCurve(named));
    twoNames.sources[0].tables[0].y[1].name = "Phase";
    Document extremes = twoNames;
    extremes.sources[0].tables[0].y[1].name = onlyCurve(named).name + " maxima";
    Document otherAxes = sineDocument();
    Table other = otherAxes.sources[0].tables[0];
    other.x.name = "Upper";
    other.y[0].name = "Right";
    other.y[0].look.upperX = other.y[0].look.rightY = true;
    for (double &x : other.x.values) x = 1000 + 300 * x;
    for (double &y : other.y[0].values) y *= 70;
    otherAxes.sources[0].tables.push_back(other);

    const struct {
        Document document;
        std::vector<std::string> there, notThere;
    } cases[] = {
        {sineOverTimeWithTexts(),
         {"0.5", "\u22120.5", "1.0", "2", "10", "Time t / \u03bcs", "Gr\u00f6\u00dfe",
          "placed text"},
         {"not shown", "3000"}},
        {named, {"Frequency", "Amplitude \ufffd"}, {}},
        {twoNames, {"Frequency"}, {"Amplitude", "Phase"}},
        {extremes, {"Frequency", "Amplitude"}, {"maxima"}},
        {otherAxes, {"Upper", "Right", "3000", "\u221260", "0.5", "10"}, {}},
        {Document(), {"0.2"}, {}}, // nothing to draw but the axes
        {documentWith({}, {}), {"0.2"}, {}},
        {documentWith({unset}, {1}), {"0.2"}, {}},
        {documentWith({5}, {7}), {"5.2"}, {}},
    };
    for (const auto &c : cases) {
        const std::string text = outputOf("pdftotext -layout $f -", pdfOfDocument(c.document));
        for (const std::string &part : c.there)
            EXPECT_TRUE(contains(text, part)) << part << " in\n" << text;
        for (const std::string &part : c.notThere)
            EXPECT_FALSE(contains(text, part)) << part << " in\n" << text;
    }
}

TEST(Pages, AreCutToThePlotWithFontsEmbedded) {
    const Document opaque = sineOverTimeWithTexts();
    Document clear = opaque; // drawn with the help of images in EPS
    onlyCurve(clear).look.lineColour.opacity = 0.5;
    for (const Document &document : {opaque, clear}) {
        const std::string pdf = pdfOfDocument(document);
        const std::vector<double> page = pageSizeOf(pdf);
        ASSERT_EQ(page.size(), 2u);
        // axes of 12 and 8 cm, numbers and titles of some 40 points
        EXPECT_TRUE(page[0] > 340.2 + 25 && page[0] < 340.2 + 60) << page[0];
        EXPECT_TRUE(page[1] > 226.8 + 25 && page[1] < 226.8 + 60) << page[1];
        const std::string fonts = outputOf("pdffonts $f", pdf);
        EXPECT_TRUE(contains(fonts, "DejaVuSans")) << fonts;
        EXPECT_FALSE(std::regex_search(fonts, std::regex("\\bno +(yes|no) +(yes|no) "))) << fonts;
        EXPECT_FALSE(contains(outputOf("pdfimages -list $f", pdf), "image "));

        const std::string eps = epsOfDocument(document);
        const std::vector<double> ink = inkBoxOf(eps);
        ASSERT_EQ(ink.size(), 4u);
        EXPECT_EQ(numbersAfter(eps, "%%BoundingBox:"),
                  (std::vector<double>{0, 0, page[0], page[1]}));
        for (const double margin : {ink[0], ink[1], page[0] - ink[2], page[1] - ink[3]})
            EXPECT_TRUE(margin >= 0 && margin < 5) << margin;

        const std::string info = outputOf("tiffinfo -D $f", tiffOfDocument(document));
        EXPECT_EQ(numbersAfter(info, "Image Width:").at(0), std::ceil(page[0] * 300 / 72)) << info;
        EXPECT_EQ(numbersAfter(info, "Image Length:").at(0), std::ceil(page[1] * 300 / 72)) << info;
        EXPECT_TRUE(contains(info, "Resolution: 300, 300 pixels/inch")) << info;
        EXPECT_TRUE(contains(info, "Compression Scheme: LZW")) << info;
    }
}

TEST(Tiff, ShowsWhatThePdfShows) {
    Document document = sineOverTimeWithTexts();
    document.frame.yAxisLength = 45; // drawn in two parts, the second from row 4822
    CurveLook &look = onlyCurve(document).look;
    look.filled = true;
    look.fillColour = {1, 0, 0, 1};
    look.lineColour = {0, 0.6, 1, 1};
    look.lineThickness = 6;
    const auto pixelsOf = [](const std::string &pdf) {
        return outputOf("pdftoppm -r 300 -x 0 -y 4600 -W 800 -H 800 $f", pdf);
    };
    const std::string want = pixelsOf(pdfOfDocument(document));
    const std::string got = pixelsOf(outputOf("tiff2pdf $f", tiffOfDocument(document)));
    ASSERT_EQ(got.size(), want.size());
    ASSERT_GT(got.size(), 3u * 800 * 800);
    size_t different = 0;
    for (size_t i = 0; i < got.size(); ++i) {
        const int difference =
            static_cast<unsigned char>(got[i]) - static_cast<unsigned char>(want[i]);
        if (std::abs(difference) > 64) ++different;
    }
    EXPECT_LT(different, got.size() / 50); // edges
}

TEST(Pictures, AreTheSameBytesForTheSameDocument) {
    for (const auto &make : {pdfOfDocument, epsOfDocument, tiffOfDocument}) {
        const std::string first = make(sineOverTimeWithTexts());
        EXPECT_EQ(first, make(sineOverTimeWithTexts()));
        EXPECT_FALSE(contains(first, "CreationDate"));
    }
}

TEST(Pictures, OfAMillionPointsStaySmallAndShowThem) {
    Document noise = cloudDocument(1000000);
    std::vector<double> &x = noise.sources[0].tables[0].x.values;
    std::iota(x.begin(), x.end(), 0);
    for (const bool all : {false, true}) {
        CurveLook &look = onlyCurve(noise).look;
        look.marker = look.filled = look.dashed = all;
        EXPECT_LT(pdfOfDocument(noise).size(), 1000000u) << all;
        const double ink = Pixels(noise).inkedPart();
        EXPECT_TRUE(ink > 0.3 && ink < 0.9) << all << ' ' << ink;
    }
}

// One curve with more symbols, lines or area than are drawn as vectors looks as the same in parts
// that are.
TEST(Pictures, AsImagesLookLikeVectors) {
    Document symbols = cloudDocument(30000);
    CurveLook &look = onlyCurve(symbols).look;
    look.line = false;
    look.symbols = true;
    look.symbol[0] = 3; // open squares, white inside where they are vectors
    look.symbolSize = 1;
    Document ring = cloudDocument(12000);
    std::vector<double> &x = ring.sources[0].tables[0].x.values;
    for (size_t i = 0; i < x.size(); ++i) {
        const std::complex<double> p = std::polar(1 + 0.1 * x[i], 9e-4 * static_cast<double>(i));
        x[i] = p.real();
        onlyCurve(ring).values[i] = p.imag();
    }
    onlyCurve(ring).look.lineColour.opacity = 0.9; // all of it at once
    Document area = ring;
    onlyCurve(area).look.line = false;
    onlyCurve(area).look.filled = true;
    onlyCurve(area).look.fillColour = {};
    const auto hasImage = [](const Document &document) {
        return contains(outputOf("pdfimages -list $f", pdfOfDocument(document)), "stencil");
    };
    for (const Document &whole : {symbols, ring, area}) {
        Document parts = whole;
        std::vector<Table> &tables = parts.sources[0].tables;
        tables.assign(3, tables[0]);
        for (size_t i = 0; i < tables[0].x.values.size(); ++i)
            for (size_t part = 0; part < 3; ++part)
                if (3 * i / tables[0].x.values.size() != part) tables[part].x.values[i] = unset;
        const double ink = Pixels(parts).inkedPart();
        EXPECT_GT(ink, 0.05);
        EXPECT_NEAR(Pixels(whole).inkedPart(), ink, 0.08 * ink);
        EXPECT_TRUE(hasImage(whole));
        EXPECT_FALSE(hasImage(parts));
        EXPECT_LT(pdfOfDocument(whole).size(), 1000000u);
    }
}

// A frame in which a value of 1 is 1 cm, with a curve from (2, 2) over (4, 6) to (6, 2), whose
// errors are 1 and 0.5, and axes without ticks.
static Document centimetres() {
    Document document = documentWith({2, 4, 6}, {2, 6, 2});
    std::vector<Column> &columns = document.sources[0].tables[0].y;
    columns.push_back({"y error", {0, 1, 0}, {}});
    columns.push_back({"x error", {0, 0.5, 0}, {}});
    for (int code = 0; code < axisCount; ++code) {
        Axis &axis = document.axes[code];
        axis.range = {0, isHorizontal(static_cast<AxisCode>(code)) ? 12.0 : 8.0};
        axis.increment = 2;
        axis.ticks = 1;
        axis.insideTicks = false;
    }
    return document;
}

// What Pixels sees at places of that document when its look has been changed.
static void see(const char *what, const std::vector<Point> &places, const char *want,
                void (*change)(Document &, CurveLook &)) {
    Document document = centimetres();
    change(document, onlyCurve(document).look);
    const Pixels pixels(document);
    std::string seen;
    for (const Point &place : places) seen += pixels.at(place.x, place.y);
    EXPECT_EQ(seen, want) << what;
}

TEST(Pictures, ShowWhatTheDocumentSays) {
    see("line", {{3, 4}, {5, 4}, {3, 3.5}, {4, 2}}, "##  ", [](auto &, auto &) {});
    see("hidden", {{3, 4}}, " ", [](auto &, auto &look) { look.visible = false; });
    see("no line", {{3, 4}}, " ", [](auto &, auto &look) { look.line = false; });
    see("one point", {{2, 2}, {2.2, 2}}, "# ", [](auto &d, auto &) {
        d.sources[0].tables[0].x.values = {2, unset, unset};
    });
    see("thick", {{3.45, 4}, {2.55, 4}, {3.65, 4}}, "## ",
        [](auto &, auto &look) { look.lineThickness = 28.35; });
    see("colour", {{3, 4}}, "b", [](auto &, auto &look) { look.lineColour = {0, 0, 1, 1}; });
    see("stepped", {{3, 2}, {4, 4}, {5, 6}, {3, 4}}, "### ",
        [](auto &, auto &look) { look.stepped = true; });
    see("dashes of 1 and 0.5 cm, each line of 4.47 cm",
        {{2.2, 2.4}, {2.55, 3.1}, {2.8, 3.6}, {3.2, 4.4}, {3.5, 5}}, "# # #",
        [](auto &, auto &look) {
            look.dashed = true;
            look.dashLength = {28.346, 14.173, 28.346, 14.173};
        });
    see("spline", {{3, 4.75}, {3, 4}}, "# ", [](auto &, auto &look) {
        look.interpolationType = 1; // 2 + 6 t - 2 t^3 at t = 1/2
        look.interpolationPoints = 50;
    });
    see("no line back", {{4, 4}, {5, 4}}, "# ", [](auto &d, auto &) {
        d.frame.noLineOnReverse = true;
        d.sources[0].tables[0].x.values = {2, 6, 4};
    });
    see("right and upper axis", {{2, 2}, {4, 5.9}}, "# ", [](auto &d, auto &look) {
        look.rightY = look.upperX = true;
        d.axes[rightYAxis].range = {2, 10};
        d.axes[upperXAxis].range = {1, 13};
    });
    see("area", {{4, 1}, {4, 5.5}, {3, 1}, {1.9, 1}, {3, 4.5}}, "rrr  ", [](auto &, auto &look) {
        look.filled = true;
        look.fillColour = {1, 0, 0, 1};
    });
    see("area from the x axis", {{4, 5.5}, {4, 4.5}, {2.5, 4}}, "r r", [](auto &d, auto &look) {
        look.filled = true;
        look.fillColour = {1, 0, 0, 1};
        d.frame.xAxisPos = 5;
    });
    see("drop lines", {{4, 1}, {4, 5.9}, {4, 6.1}, {6, 1}, {5, 1}}, "## # ",
        [](auto &, auto &look) { look.marker = true, look.line = false; });
    see("y errors", {{4, 5.1}, {4, 6.9}, {4, 4.9}, {4.05, 7}, {4.05, 5}, {3.6, 6}, {2, 2.5}},
        "## ##  ", [](auto &, auto &look) { look.yError = true, look.line = false; });
    see("x errors", {{3.55, 6}, {4.45, 6}, {3.45, 6}, {3.5, 6.05}, {4.5, 5.95}, {4, 6.5}}, "## ## ",
        [](auto &, auto &look) { look.xError = true, look.line = false; });
    see("errors on the right and upper axis", {{2.55, 4}, {3, 4.9}, {3.45, 4}, {4, 5.5}}, "### ",
        [](auto &d, auto &look) {
            look.xError = look.yError = look.rightY = look.upperX = true;
            look.line = false;
            d.axes[rightYAxis].range = {2, 10};
            d.axes[upperXAxis].range = {1, 13};
        });
    see("an error beyond the positive", {{4, 0.5}, {4, 1.9}, {4, 2.2}, {4, 2.5}}, "### ",
        [](auto &d, auto &look) {
            look.yError = true, look.line = false;
            d.axes[yAxis].logarithmic = true;
            d.axes[yAxis].range = {0.01, 1e6};
            onlyCurve(d).values = {unset, 1, unset};
        });
    see("every second symbol", {{2.05, 1.95}, {4.05, 5.99}, {6.05, 2}}, "# #",
        [](auto &, auto &look) { look.symbols = true, look.symbolInc = 2; });
    see("symbol over symbol", {{4, 6}, {4.5, 6}, {4.5, 6.5}}, "## ", [](auto &, auto &look) {
        look.symbols = true;
        look.symbolSize = 57;
        look.symbol = {3, 0, 0, 10};
        look.line = false;
    });
    see("layers", {{3, 4}}, "r", [](auto &d, auto &look) {
        Column above = onlyCurve(d);
        above.name = "above";
        above.look.lineColour = {0, 1, 0, 1};
        look.layer = 1;
        look.lineColour = {1, 0, 0, 1};
        d.sources[0].tables[0].y.push_back(above);
    });
    see("ticks inside",
        {{8, 0.17}, {9, 0.07}, {9, 0.17}, {8.5, 0.07}, {8, 7.83}, {0.17, 2}, {11.83, 2}, {0.17, 3}},
        "##  ### ", [](auto &d, auto &) {
            for (Axis &axis : d.axes) axis.insideTicks = true;
        });
    see("ticks outside", {{8, -0.17}, {9, -0.07}, {-0.17, 2}, {8, 8.17}, {12.17, 2}, {8, 0.17}},
        "##### ", [](auto &d, auto &) {
            for (Axis &axis : d.axes) axis.outsideTicks = true;
        });
    see("grid", {{8, 7}, {9, 7}, {7, 4}}, ".  ",
        [](auto &d, auto &) { d.axes[xAxis].majorGrid = true; });
    see("fine grid", {{8.5, 3}, {8.5, 4}, {9, 2.5}}, ".  ",
        [](auto &d, auto &) { d.axes[yAxis].minorGrid = true; });
    see("crossing axes", {{7.5, 3}, {9, 7.5}, {0, 4}, {8, 8}, {12, 5}}, "##   ",
        [](auto &d, auto &) {
            d.frame.xAxisPos = 3;
            d.frame.yAxisPos = 9;
            d.axes[upperXAxis].range = d.axes[rightYAxis].range = {};
        });
    see("an axis without a line", {{8, 8}, {12, 5}}, "# ",
        [](auto &d, auto &) { d.axes[rightYAxis].noLine = true; });
    see("arrow", {{12.4, 0}, {12.4, 0.04}, {12.1, 0.07}, {12, 5}}, "##  ", [](auto &d, auto &) {
        d.axes[xAxis].arrow = true;
        d.axes[upperXAxis].range = d.axes[rightYAxis].range = {};
    });
    see("a text in the corner", {{0.4, 0.4}, {0.2, 0.4}, {0.4, 0.2}}, "#  ", [](auto &d, auto &) {
        d.texts = {{"\u2588\u2588", 0, 0, 0, false, false}};
    });
    see("an upright text at values", {{8, 5.4}, {8, 4.6}, {8.4, 5}}, "## ", [](auto &d, auto &) {
        d.texts = {{"\u2588\u2588\u2588\u2588", 8, 5, 90, true, true}};
    });
    see("a text beyond the frame", {{12.8, 4}, {11.6, 4}}, "# ", [](auto &d, auto &) {
        d.axes[rightYAxis].noNumbers = true;
        d.texts = {{"\u2588", 1.1, 0.5, 0, false, false}};
    });
}

TEST(Pictures, HaveSixteenSymbols) {
    // how far a symbol of 4 cm reaches from its middle, in cm; its middle
    const struct {
        double up, right, down, aslant;
        char middle;
    } cases[symbolCount] = {
        {2, 2, 2, 2, '#'},
        {2, 2, 2, 2, ' '},
        {1.81, 1.81, 1.81, 2.56, '#'},
        {1.81, 1.81, 1.81, 2.56, ' '},
        {2.72, 1.57, 1.36, 1.41, '#'},
        {2.72, 1.57, 1.36, 1.41, ' '},
        {2.72, 2.72, 2.72, 1.92, '#'},
        {2.72, 2.72, 2.72, 1.92, ' '},
        {1.36, 1.57, 2.72, 1.92, '#'},
        {1.36, 1.57, 2.72, 1.92, ' '},
        {2.4, 2.4, 2.4, 0, '#'},
        {0, 0, 0, 2.72, '#'},
        {2.4, 2.4, 2.4, 2.72, '#'},
        {2.4, 0, 2.4, 0, '#'},
        {0, 2.4, 0, 0, '#'},
        {0.8, 0.8, 0.8, 0.8, '#'},
    };
    for (int code = 0; code < symbolCount; ++code) {
        Document document = centimetres();
        CurveLook &look = onlyCurve(document).look;
        look.symbols = true;
        look.line = false;
        look.symbol[0] = code;
        look.symbolSize = 4 * pointsPerCm;
        onlyCurve(document).values = {unset, 4, unset};
        const Pixels pixels(document);
        const auto reach = [&](double dx, double dy) {
            double r = 3.5;
            while (r > 0 && pixels.at(4 + r * dx, 4 + r * dy) == ' ') r -= 0.01;
            return r;
        };
        constexpr double tolerance = 0.08; // the corners of outlines are pointed
        EXPECT_NEAR(reach(0, 1), cases[code].up, tolerance) << code;
        EXPECT_NEAR(reach(1, 0), cases[code].right, tolerance) << code;
        EXPECT_NEAR(reach(0, -1), cases[code].down, tolerance) << code;
        EXPECT_NEAR(reach(std::sqrt(0.5), std::sqrt(0.5)), cases[code].aslant, tolerance) << code;
        EXPECT_EQ(pixels.at(4, 4), cases[code].middle) << code;
    }
}

// Nothing crashes, hangs or grows beyond reason, whatever the data and however far the settings go.
TEST(Pictures, OfExtremesStayWithinBounds) {
    for (const double wild : {0.0, -3.0, 1e9, 1e308, -1e308, unset, double{INFINITY}})
        for (const bool most : {false, true}) {
            Document document = documentWith({-1e308, 0, unset, 1, 2, 1e308, INFINITY},
                                             {1e308, -1e308, 1, unset, 2, 3, 4});
            CurveLook &look = onlyCurve(document).look;
            look.symbols = look.marker = look.filled = look.stepped = look.dashed = true;
            look.yError = look.xError = true;
            look.lineThickness = most ? 50 : 0;
            look.symbolSize = most ? 200 : 0;
            look.interpolationPoints = most ? 1e6 : 0;
            look.interpolationType = most;
            look.dashLength.fill(most ? 1000 : 0);
            look.symbol = {0, INT_MAX, 12, 3};
            look.symbolInc = most ? INT_MAX : 1;
            document.sources[0].tables[0].y.push_back(
                {"y error", {wild, 1, 2, 3, 4, 5, 1e308}, {}});
            document.frame = {most ? 100.0 : 1.0,
                              most ? 100.0 : 1.0,
                              most ? 100.0 : 0.0,
                              most ? 20.0 : 0.0,
                              wild,
                              wild};
            for (Axis &axis : document.axes) {
                axis.increment = std::isinf(wild) ? 1e-308 : std::abs(wild);
                axis.labelAngle = most ? 360 : -360;
                axis.labelDensity = most ? 10 : 0.1;
                axis.range = {wild, -wild};
                axis.ticks = most ? 100 : 0;
                axis.precision = most ? 16 : 0;
                axis.logTicksAt = axis.logNumbersAt = most ? 600 : 1;
                axis.majorGrid = axis.minorGrid = axis.outsideTicks = axis.arrow = true;
            }
            const double place = std::isfinite(wild) ? wild : 0;
            document.texts = {{"{\\rtf1 {{{", place, place, place, false, false},
                              {std::string(100000, '\n') + 'x', place, place, place, true, false}};
            for (const bool logarithmic : {false, true}) {
                document.axes[xAxis].logarithmic = document.axes[yAxis].logarithmic = logarithmic;
                const Box page = Picture(document).page();
                EXPECT_LT(page.width() + page.height(), 12000) << wild << ' ' << logarithmic;
                EXPECT_LT(pdfOfDocument(document).size(), 300000u) << wild << ' ' << logarithmic;
            }
        }
}

static void expectLimits(const char *what, AxisCode axis, double min, double max,
                         void (*change)(Document &, CurveLook &)) {
    Document document = documentWith({1, 2, 3}, {50, 60, 75});
    change(document, onlyCurve(document).look);
    const ScaledFrame frame = scaledFrameOf(document, drawnCurvesOf(document));
    EXPECT_NEAR(frame.scales[axis].min, min, 1e-12) << what;
    EXPECT_NEAR(frame.scales[axis].max / max, 1, 1e-12) << what;
}

TEST(Frame, LeavesRoomAroundDataAndBeginsWhereAreasDo) {
    expectLimits("x", xAxis, 1, 3, [](auto &, auto &) {});
    expectLimits("x of symbols", xAxis, 0.92, 3.08, [](auto &, auto &l) { l.symbols = true; });
    expectLimits("y", yAxis, 49, 76, [](auto &, auto &) {});
    expectLimits("y from zero", yAxis, 0, 78, [](auto &d, auto &) { onlyCurve(d).values[0] = 0; });
    expectLimits("area", yAxis, 0, 78, [](auto &, auto &l) { l.filled = true; });
    expectLimits("drop lines", yAxis, 0, 78, [](auto &, auto &l) { l.marker = true; });
    expectLimits("area from the x axis", yAxis, 48, 102,
                 [](auto &d, auto &l) { l.filled = true, d.frame.xAxisPos = 100; });
    expectLimits("given limit", yAxis, 25, 77,
                 [](auto &d, auto &l) { l.filled = true, d.axes[yAxis].range.min = 25; });
    expectLimits("logarithmic", yAxis, 0.1, 1e26, [](auto &d, auto &l) {
        l.filled = true, d.axes[yAxis].logarithmic = true;
        onlyCurve(d).values = {1, 10, 1e25};
    });
    expectLimits("the opposite axis's", yAxis, 49, 76, [](auto &, auto &l) { l.rightY = true; });
    expectLimits("its own", yAxis, 2, 3,
                 [](auto &d, auto &l) { l.rightY = true, d.axes[yAxis].range.max = 3; });
}

TEST(Frame, NumbersOfDifferentAxesStandApart) {
    Document document = sineDocument();
    for (double &x : document.sources[0].tables[0].x.values) x = x * 1e5 + 1e9;
    for (const double position : {unset, 0.0, 3.0})
        for (const bool inside : {false, true}) {
            document.frame.xAxisPos = position;
            document.frame.yAxisPos = 1e9 + 1e5 * position;
            for (Axis &axis : document.axes) axis.numbersInside = inside;
            const PlacedFrame frame = frameOf(document, drawnCurvesOf(document), Typesetter());
            std::vector<Box> boxes;
            for (const PlacedAxis &axis : frame.axes)
                for (const PlacedNumber &number : axis.numbers) boxes.push_back(number.bounds());
            EXPECT_GE(boxes.size(), 6u);
            for (size_t i = 0; i < boxes.size(); ++i)
                for (size_t k = 0; k < i; ++k)
                    EXPECT_TRUE(boxes[i].left >= boxes[k].right ||
                                boxes[k].left >= boxes[i].right ||
                                boxes[i].top >= boxes[k].bottom || boxes[k].top >= boxes[i].bottom)
                        << position << ' ' << inside << ": " << i << " and " << k;
        }
}

TEST(Composition, PlacesScalesTurnsAndShears) {
    const Document document = sineDocument();
    const std::vector<double> own = pageSizeOf(pdfOfDocument(document));
    const double h = 200 * own.at(1) / own.at(0); // of a picture 200 points wide
    const struct {
        PageRectangle rectangle;
        double angle, shear;
        std::vector<double> box; // left, bottom, right, top
    } cases[] = {{{300, 200, 200, h}, 0, 0, {300, 200, 500, 200 + h}},
                 {{300, 200, 200, 0}, 0, 0, {300, 200, 500, 200 + h}},
                 {{300, 200, 0, h}, 0, 0, {300, 200, 500, 200 + h}},
                 {{300, 200, -260, -h}, 0, 0, {330, 200, 530, 200 + h}},
                 {{300, 200, 200, h + 50}, 0, 0, {300, 225, 500, 225 + h}},
                 {{300, 200, 200, h}, 90, 0, {300 - h, 200, 300, 400}},
                 {{300, 200, 200, h}, 540, 0, {100, 200 - h, 300, 200}},
                 {{300, 200, 200, h}, 0, 0.5, {300, 200, 500 + h / 2, 200 + h}}};
    for (const auto &c : cases) {
        Composition composition(600, 500);
        composition.add(document, c.rectangle, c.angle, c.shear);
        const std::string pdf = composition.pdf();
        EXPECT_EQ(pageSizeOf(pdf), (std::vector<double>{600, 500}));
        const std::vector<double> ink = inkBoxOf(pdf);
        ASSERT_EQ(ink.size(), 4u);
        // the picture's own margin is 3 points before scaling; a sheared corner holds less
        for (size_t side = 0; side < 4; ++side)
            EXPECT_NEAR(ink[side], c.box[side], c.shear == 0 ? 4 : 20)
                << c.angle << ' ' << c.shear << ' ' << side;
    }
}

TEST(Composition, KeepsPicturesAsTheyWereAndAsText) {
    Document document = sineDocument();
    document.axes[xAxis].title = "before";
    Composition composition(0, -1);
    composition.add(document, {50, 500, 0, 0}, 0, 0);
    document.axes[xAxis].title = "after";
    composition.add(document, {50, 100, 300, 200}, unset, unset);
    const std::string pdf = composition.pdf();
    EXPECT_EQ(pdf, composition.pdf());
    const std::string text = outputOf("pdftotext $f -", pdf);
    EXPECT_TRUE(contains(text, "before") && contains(text, "after")) << text;
    EXPECT_EQ(pageSizeOf(pdf), (std::vector<double>{595, 842}));

    Composition absurd(1e300, unset);
    absurd.add(document, {INFINITY, -1e300, 1e300, unset}, INFINITY, 1e300);
    EXPECT_FALSE(absurd.pdf().empty());
}
