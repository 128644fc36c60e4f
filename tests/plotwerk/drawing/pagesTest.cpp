#include "plotwerk/drawing/pages.h"
#include "plotwerk/drawing/axes.h"
#include "plotwerk/drawing/picture.h"
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
        const double ink = inkedPart(noise);
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
    Document ring = cloudDocument(120000);
    std::vector<double> &x = ring.sources[0].tables[0].x.values;
    for (size_t i = 0; i < x.size(); ++i) {
        const std::complex<double> p = std::polar(1 + 0.1 * x[i], 4e-4 * static_cast<double>(i));
        x[i] = p.real();
        onlyCurve(ring).values[i] = p.imag();
    }
    Document area = ring;
    onlyCurve(area).look.line = false;
    onlyCurve(area).look.filled = true;
    onlyCurve(area).look.fillColour = {};
    onlyCurve(area).values.resize(27000);
    area.sources[0].tables[0].x.values.resize(27000);
    for (const Document &whole : {symbols, ring, area}) {
        Document parts = whole;
        std::vector<Table> &tables = parts.sources[0].tables;
        tables.assign(3, tables[0]);
        for (size_t i = 0; i < tables[0].x.values.size(); ++i)
            for (size_t part = 0; part < 3; ++part)
                if (3 * i / tables[0].x.values.size() != part) tables[part].x.values[i] = unset;
        const double ink = inkedPart(parts);
        EXPECT_GT(ink, 0.05);
        EXPECT_NEAR(inkedPart(whole), ink, 0.08 * ink);
        EXPECT_LT(pdfOfDocument(whole).size(), 1000000u);
    }
}

TEST(Pictures, ShowWhatTheLookSays) {
    const Document plain = sineDocument();
    const double line = inkedPart(plain);
    EXPECT_TRUE(line > 0.001 && line < 0.05) << line;
    const struct {
        const char *what;
        void (*change)(CurveLook &);
        double least, most; // of the ink of the line alone
    } cases[] = {
        {"hidden", [](CurveLook &look) { look.visible = false; }, 0, 0},
        {"no line", [](CurveLook &look) { look.line = false; }, 0, 0},
        {"no opacity", [](CurveLook &look) { look.lineColour.opacity = 0; }, 0, 0},
        {"dashed", [](CurveLook &look) { look.dashed = true; }, 0.4, 0.9},
        {"thick", [](CurveLook &look) { look.lineThickness = 4; }, 3, 8},
        {"symbols", [](CurveLook &look) { look.symbols = true; }, 2, 10},
        {"20 points a symbol", [](CurveLook &look) { look.symbols = true, look.symbolInc = 20; },
         1.05, 1.9},
        {"filled", [](CurveLook &look) { look.filled = true, look.fillColour = {}; }, 15, 100},
        {"markers", [](CurveLook &look) { look.marker = true; }, 10, 100},
    };
    for (const auto &c : cases) {
        Document document = plain;
        c.change(onlyCurve(document).look);
        const double ink = inkedPart(document) / line;
        EXPECT_TRUE(ink >= c.least && ink <= c.most) << c.what << ' ' << ink;
    }
    EXPECT_GT(inkedPart(documentWith({5}, {7})), 0); // a line of one point is a dot
}

TEST(Pictures, ShowErrorBarsFromTheColumnOfThatName) {
    Document document = documentWith({1, 2, 3}, {2, 3, 2});
    std::vector<Column> &columns = document.sources[0].tables[0].y;
    columns.push_back({"y error", {1, 1, 1}, {}});
    columns[1].look.visible = false;
    EXPECT_LT(inkedPart(document), 0.01);
    columns[0].look.yError = true;
    const double with = inkedPart(document);
    EXPECT_GT(with, 0.01);          // in limits of 1..4, no longer 2..3
    columns[1].look.visible = true; // as error bars only, not as a curve of its own
    EXPECT_EQ(inkedPart(document), with);
    columns[1].name = "z error";
    EXPECT_NE(inkedPart(document), with);
}

// Nothing crashes, hangs or grows beyond reason, whatever a document says.
TEST(Pictures, BringAbsurdSettingsWithinBounds) {
    for (const double wild : {0.0, -3.0, 1e9, 1e308, -1e308, unset, double{INFINITY}}) {
        Document document = documentWith({-1e308, 0, unset, 1, 2, 1e308, INFINITY},
                                         {1e308, -1e308, 1, unset, 2, 3, 4});
        CurveLook &look = onlyCurve(document).look;
        look.symbols = look.marker = look.filled = look.stepped = look.dashed = true;
        look.yError = look.xError = true;
        look.lineThickness = look.symbolSize = look.interpolationPoints = wild;
        look.lineColour = look.fillColour = {wild, wild, wild, wild};
        look.dashLength = {wild, wild, wild, wild};
        look.symbol = {-7, INT_MAX, INT_MIN, 3};
        look.symbolInc = look.interpolationType = -INT_MAX;
        document.sources[0].tables[0].y.push_back({"y error", {wild, 1, 2, 3, 4, 5, 1e308}, {}});
        document.frame = {wild, wild, wild, wild, wild, wild, false, true};
        for (Axis &axis : document.axes) {
            axis.increment = axis.labelAngle = axis.labelDensity = wild;
            axis.range = {wild, -wild};
            axis.ticks = axis.precision = axis.logTicksAt = axis.logNumbersAt = INT_MAX;
            axis.majorGrid = axis.minorGrid = axis.outsideTicks = axis.arrow = true;
        }
        document.texts = {{"{\\rtf1 {{{", wild, wild, wild, false, false},
                          {std::string(100000, '\n') + 'x', wild, wild, wild, true, false}};
        for (const bool logarithmic : {false, true}) {
            document.axes[xAxis].logarithmic = document.axes[yAxis].logarithmic = logarithmic;
            const Box page = Picture(document).page();
            EXPECT_LT(page.width() + page.height(), 12000) << wild << ' ' << logarithmic;
            EXPECT_LT(pdfOfDocument(document).size(), 300000u) << wild << ' ' << logarithmic;
        }
    }
}

TEST(Frame, BeginsWhereAreasDo) {
    Document document = documentWith({1, 2}, {50, 60});
    onlyCurve(document).look.filled = true;
    EXPECT_EQ(frameOf(document, drawnCurvesOf(document), Typesetter()).axes[yAxis].scale.min, 0);
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
        double angle, shear;
        std::vector<double> box; // left, bottom, right, top
    } cases[] = {{0, 0, {300, 200, 500, 200 + h}},
                 {90, 0, {300 - h, 200, 300, 400}},
                 {180, 0, {100, 200 - h, 300, 200}},
                 {0, 0.5, {300, 200, 500 + h / 2, 200 + h}}};
    for (const auto &c : cases) {
        Composition composition(600, 500);
        composition.add(document, {300, 200, 200, h}, c.angle, c.shear);
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
