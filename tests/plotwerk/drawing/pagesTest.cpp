#include "plotwerk/drawing/pages.h"
#include "plotwerk/drawing/axes.h"
#include "plotwerk/drawing/picture.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>
#include <gtest/gtest.h>
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
    return numbersAfter(outputOf("pdfinfo FILE", pdf), "Page size:");
}

// What ghostscript finds drawn: left, bottom, right, top.
std::vector<double> inkBoxOf(const std::string &file) {
    return numbersAfter(outputOf("gs -q -dNOPAUSE -dBATCH -sDEVICE=bbox FILE", file),
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
        {otherAxes, {"Upper", "Right", "3000", "\u221260", "0.5", "10"}, {}},
        {Document(), {"0.2"}, {}}, // nothing to draw but the axes
        {documentWith({}, {}), {"0.2"}, {}},
        {documentWith({unset}, {1}), {"0.2"}, {}},
        {documentWith({5}, {7}), {"5.2"}, {}},
    };
    for (const auto &c : cases) {
        const std::string text = outputOf("pdftotext -layout FILE -", pdfOfDocument(c.document));
        for (const std::string &part : c.there)
            EXPECT_TRUE(contains(text, part)) << part << " in\n" << text;
        for (const std::string &part : c.notThere)
            EXPECT_FALSE(contains(text, part)) << part << " in\n" << text;
    }
}

TEST(Pdf, IsVectorsOnAPageCutToThePlot) {
    Document document = sineOverTimeWithTexts();
    document.frame.xAxisLength = 10;
    document.frame.yAxisLength = 5;
    const std::string pdf = pdfOfDocument(document);
    const std::vector<double> page = pageSizeOf(pdf);
    ASSERT_EQ(page.size(), 2u);
    // numbers and titles take some 40 points
    EXPECT_TRUE(page[0] > 283.5 + 25 && page[0] < 283.5 + 60) << page[0];
    EXPECT_TRUE(page[1] > 141.7 + 25 && page[1] < 141.7 + 60) << page[1];

    const std::string fonts = outputOf("pdffonts FILE", pdf);
    EXPECT_TRUE(contains(fonts, "DejaVuSans")) << fonts;
    EXPECT_FALSE(std::regex_search(fonts, std::regex("\\bno +(yes|no) +(yes|no) "))) << fonts;
    EXPECT_FALSE(contains(outputOf("pdfimages -list FILE", pdf), "image "));
}

TEST(Eps, BoundingBoxHoldsThePlot) {
    Document opaque = sineOverTimeWithTexts();
    Document clear = opaque; // drawn with the help of images
    onlyCurve(clear).look.lineColour.opacity = 0.5;
    for (const Document &document : {opaque, clear}) {
        const std::string eps = epsOfDocument(document);
        const std::vector<double> said = numbersAfter(eps, "%%BoundingBox:");
        const std::vector<double> drawn = inkBoxOf(eps);
        ASSERT_EQ(said.size(), 4u);
        ASSERT_EQ(drawn.size(), 4u);
        EXPECT_TRUE(said[0] <= drawn[0] && said[1] <= drawn[1]);
        EXPECT_TRUE(said[2] >= drawn[2] && said[3] >= drawn[3]);
        EXPECT_GT((drawn[2] - drawn[0]) * (drawn[3] - drawn[1]),
                  0.9 * (said[2] - said[0]) * (said[3] - said[1]));
    }
}

TEST(Tiff, HasThePagesSizeAt300Dpi) {
    const Document document = sineDocument();
    const std::vector<double> page = pageSizeOf(pdfOfDocument(document));
    const std::string info = outputOf("tiffinfo -D FILE", tiffOfDocument(document));
    EXPECT_EQ(numbersAfter(info, "Image Width:").at(0), std::ceil(page.at(0) * 300 / 72)) << info;
    EXPECT_EQ(numbersAfter(info, "Image Length:").at(0), std::ceil(page.at(1) * 300 / 72)) << info;
    EXPECT_TRUE(contains(info, "Resolution: 300, 300 pixels/inch")) << info;
    EXPECT_TRUE(contains(info, "Compression Scheme: LZW")) << info;
}

TEST(Pictures, AreTheSameBytesForTheSameDocument) {
    const Document document = sineOverTimeWithTexts();
    for (const auto &make : {pdfOfDocument, epsOfDocument, tiffOfDocument}) {
        const std::string first = make(document);
        EXPECT_EQ(first, make(document));
        EXPECT_FALSE(contains(first, "CreationDate"));
    }
}

TEST(Pictures, OfManyPointsStaySmallAndShowThem) {
    const Document noise = noiseDocument(1000000);
    Document bars = noise;
    onlyCurve(bars).look.marker = onlyCurve(bars).look.filled = true;
    Document symbols = cloudDocument(200000);
    onlyCurve(symbols).look.line = false;
    onlyCurve(symbols).look.symbols = true;
    const struct {
        const char *what;
        Document document;
    } cases[] = {{"noise", noise},
                 {"area and markers", bars},
                 {"symbols", symbols},
                 {"tangled line", cloudDocument(110000)}};
    for (const auto &c : cases) {
        EXPECT_LT(pdfOfDocument(c.document).size(), 1000000u) << c.what;
        const double ink = inkedPart(c.document);
        EXPECT_TRUE(ink > 0.3 && ink < 0.9) << c.what << ' ' << ink;
    }
}

// One curve with more symbols or lines than are drawn as vectors looks as the same in parts that
// are.
TEST(Pictures, AsImagesLookLikeVectors) {
    Document symbols = cloudDocument(30000);
    onlyCurve(symbols).look.line = false;
    onlyCurve(symbols).look.symbols = true;
    onlyCurve(symbols).look.symbol[0] = 3; // open squares, white inside where they are vectors
    onlyCurve(symbols).look.symbolSize = 1;
    Document ring = cloudDocument(120000);
    std::vector<double> &x = ring.sources[0].tables[0].x.values;
    std::vector<double> &y = onlyCurve(ring).values;
    for (size_t i = 0; i < x.size(); ++i) {
        const double radius = 1 + 0.1 * x[i];
        x[i] = radius * std::cos(4e-4 * static_cast<double>(i));
        y[i] = radius * std::sin(4e-4 * static_cast<double>(i));
    }
    for (const Document &whole : {symbols, ring}) {
        Document parts = whole;
        parts.sources[0].tables.clear();
        for (size_t part = 0; part < 3; ++part) {
            Table table = whole.sources[0].tables[0];
            for (std::vector<double> *values : {&table.x.values, &table.y[0].values}) {
                const size_t third = values->size() / 3;
                values->erase(values->begin(), values->begin() + static_cast<long>(part * third));
                values->resize(third);
            }
            parts.sources[0].tables.push_back(table);
        }
        const double ink = inkedPart(parts);
        EXPECT_GT(ink, 0.05);
        EXPECT_NEAR(inkedPart(whole), ink, 0.05 * ink);
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
    document.axes[xAxis].range = {0, 4};
    document.axes[yAxis].range = {0, 5};
    Table &table = document.sources[0].tables[0];
    Column errors;
    errors.name = "y error";
    errors.values = {1, 1, 1};
    errors.look.visible = false;
    table.y.push_back(errors);
    const double without = inkedPart(document);
    table.y[0].look.yError = true;
    const double with = inkedPart(document);
    EXPECT_GT(with, 1.2 * without);
    table.y[1].look.visible = true; // as error bars only, not as a curve of its own
    EXPECT_EQ(inkedPart(document), with);
    table.y[1].name = "z error";
    table.y[1].look.visible = false;
    EXPECT_EQ(inkedPart(document), without);
}

// Nothing crashes, hangs or grows beyond reason, whatever a document says.
TEST(Pictures, BringAbsurdSettingsWithinBounds) {
    const double nan = unset;
    for (const double wild : {0.0, -3.0, 1e9, 1e308, -1e308, nan, static_cast<double>(INFINITY)}) {
        Document document =
            documentWith({-1e308, 0, nan, 1, 2, 1e308, INFINITY}, {1e308, -1e308, 1, nan, 2, 3, 4});
        CurveLook &look = onlyCurve(document).look;
        look.symbols = look.marker = look.filled = look.stepped = look.dashed = true;
        look.yError = look.xError = true;
        look.lineThickness = look.symbolSize = look.interpolationPoints = wild;
        look.lineColour = look.fillColour = {wild, wild, wild, wild};
        look.dashLength = {wild, wild, wild, wild};
        look.symbol = {-7, 2147483647, -2147483647 - 1, 3};
        look.symbolInc = look.interpolationType = -2147483647;
        Column errors;
        errors.name = "y error";
        errors.values = {wild, 1, 2, 3, 4, 5, 1e308};
        document.sources[0].tables[0].y.push_back(errors);
        document.frame = {wild, wild, wild, wild, wild, wild, false, true};
        for (Axis &axis : document.axes) {
            axis.increment = axis.labelAngle = axis.labelDensity = wild;
            axis.range = {wild, -wild};
            axis.ticks = axis.precision = axis.logTicksAt = axis.logNumbersAt = 2147483647;
            axis.majorGrid = axis.minorGrid = axis.outsideTicks = axis.arrow = true;
        }
        document.texts.push_back({"{\\rtf1 {{{", wild, wild, wild, false, false});
        document.texts.push_back({std::string(100000, '\n') + 'x', wild, wild, wild, true, false});
        for (const bool logarithmic : {false, true}) {
            document.axes[xAxis].logarithmic = document.axes[yAxis].logarithmic = logarithmic;
            const Picture picture(document);
            EXPECT_LT(picture.page().width(), 6000) << wild << ' ' << logarithmic;
            EXPECT_LT(picture.page().height(), 6000) << wild << ' ' << logarithmic;
            EXPECT_LT(pdfOfDocument(document).size(), 300000u) << wild << ' ' << logarithmic;
        }
    }
}

TEST(Frame, NumbersOfDifferentAxesStandApart) {
    const Typesetter typesetter;
    for (const double position : {unset, 0.0, 3.0})
        for (const bool inside : {false, true}) {
            Document document = sineDocument();
            for (double &x : document.sources[0].tables[0].x.values) x = x * 1e5 + 1e9;
            document.frame.xAxisPos = position;
            document.frame.yAxisPos = 1e9 + 1e5 * position;
            for (Axis &axis : document.axes) axis.numbersInside = inside;
            const PlacedFrame frame = frameOf(document, drawnCurvesOf(document), typesetter);
            std::vector<Box> boxes;
            for (const PlacedAxis &axis : frame.axes)
                for (const PlacedNumber &number : axis.numbers) boxes.push_back(number.bounds());
            EXPECT_GE(boxes.size(), 6u);
            for (size_t i = 0; i < boxes.size(); ++i)
                for (size_t k = 0; k < i; ++k)
                    EXPECT_FALSE(boxes[i].left < boxes[k].right && boxes[k].left < boxes[i].right &&
                                 boxes[i].top < boxes[k].bottom && boxes[k].top < boxes[i].bottom)
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
    const std::string text = outputOf("pdftotext FILE -", pdf);
    EXPECT_TRUE(contains(text, "before") && contains(text, "after")) << text;
    EXPECT_EQ(pageSizeOf(pdf), (std::vector<double>{595, 842}));

    Composition absurd(1e300, unset);
    absurd.add(document, {INFINITY, -1e300, 1e300, unset}, INFINITY, 1e300);
    EXPECT_FALSE(absurd.pdf().empty());
}
