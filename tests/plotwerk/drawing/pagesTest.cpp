#include "plotwerk/drawing/pages.h"
#include "plotwerk/drawing/axes.h"
#include "plotwerk/drawing/picture.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>
#include <random>
#include <regex>
#include <set>

using namespace plotwerk;

using D = Document &;
using L = CurveLook &;

static Document sineOverTimeWithTexts() {
    Document document = sineDocument();
    document.axes[xAxis].title = "{\\rtf1\\uc1 Time {\\i t} / \\u956?s}";
    document.axes[yAxis].title = "Gr\u00f6\u00dfe";
    document.texts.push_back({"{\\rtf1 {\\b placed} text}", 0.9, 0.9, 0, false, false});
    document.texts.push_back({"not shown", 11, 0, 0, true, true});
    return document;
}

TEST(Pdf, HoldsNumbersTitlesAndTextsAsText) {
    const auto named = [](const char *first, const char *second) {
        Document document = sineDocument();
        Table &table = document.sources[0].tables[0];
        table.x.name = "Frequency";
        table.y.resize(2, table.y[0]);
        table.y[0].name = first;
        table.y[1].name = second;
        return document;
    };
    Document fitted = named("Amplitude \xff", "Fit"); // whose title is that of the data
    fitted.sources[0].tables[0].y[1].drawnByFit = true;
    fitted.axes[xAxis].noNumbers = true;
    Document otherAxes = sineDocument();
    Table other = otherAxes.sources[0].tables[0];
    other.x.name = "Upper";
    other.y[0].name = "Right";
    other.y[0].look.upperX = other.y[0].look.rightY = true;
    for (double &x : other.x.values) x = 1000 + 300 * x;
    for (double &y : other.y[0].values) y *= 70;
    otherAxes.sources[0].tables.push_back(other);

    const std::tuple<Document, std::vector<std::string>, std::vector<std::string>> cases[] = {
        {sineOverTimeWithTexts(),
         {"\u22120.5", "1.0", "10", "Time t / \u03bcs", "Gr\u00f6\u00dfe", "placed text"},
         {"not shown", "3000"}},
        {named("Amplitude", "Phase"), {"Frequency"}, {"Amplitude", "Phase"}},
        {named("Amplitude", "Amplitude maxima"), {"Frequency", "Amplitude"}, {"maxima"}},
        {fitted, {"Amplitude \ufffd"}, {"Fit", "Frequency"}},
        {otherAxes, {"Upper", "Right", "3000", "\u221260", "0.5", "10"}, {}},
        {Document(), {"0.2"}, {}}, // nothing to draw but the axes
        {documentWith({unset}, {1}), {"0.2"}, {}},
        {documentWith({5}, {7}), {"5.2"}, {}},
    };
    for (const auto &[document, there, notThere] : cases) {
        const std::string text = outputOf("pdftotext -layout $f -", pdfOfDocument(document));
        for (const auto &part : there) EXPECT_TRUE(contains(text, part)) << part << text;
        for (const auto &part : notThere) EXPECT_FALSE(contains(text, part)) << part << text;
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
        EXPECT_NEAR(page[0], 340.2 + 42, 18) << "12 cm, numbers and a title";
        EXPECT_NEAR(page[1], 226.8 + 42, 18);
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

        // the page of the SVG is that of the PDF: at 72 dpi a pixel is a point
        const std::string svg = svgOfDocument(document);
        const std::string seen = outputOf("rsvg-convert --dpi-x 72 --dpi-y 72 $f | file -", svg);
        EXPECT_TRUE(contains(seen, std::to_string(std::lround(page[0])) + " x " +
                                       std::to_string(std::lround(page[1])) + ", 8-bit"))
            << seen;

        const std::string png = pngOfDocument(document);
        const std::string checked = outputOf("pngcheck -v $f", png);
        EXPECT_TRUE(contains(checked, "No errors detected")) << checked;
        EXPECT_TRUE(contains(checked, "(300 dpi)")) << checked;

        const std::string tiff = tiffOfDocument(document);
        const std::string info = outputOf("tiffinfo -D $f", tiff);
        EXPECT_EQ(numbersAfter(info, "Image Width:").at(0), std::ceil(page[0] * 300 / 72)) << info;
        EXPECT_EQ(numbersAfter(info, "Image Length:").at(0), std::ceil(page[1] * 300 / 72)) << info;
        EXPECT_TRUE(contains(info, "Resolution: 300, 300 pixels/inch")) << info;
        EXPECT_TRUE(contains(info, "Compression Scheme: LZW")) << info;

        // the same bytes whenever they are made
        EXPECT_EQ(pdf, pdfOfDocument(document));
        EXPECT_EQ(eps, epsOfDocument(document));
        EXPECT_EQ(svg, svgOfDocument(document));
        EXPECT_FALSE(contains(pdf, "CreationDate") || contains(eps, "CreationDate"));
    }
}

TEST(Raster, ShowsWhatTheDocumentSaysInAllItsParts) {
    Document document = centimetres();
    document.frame.yAxisLength = 45; // drawn in two parts, the second below 4.5 cm
    document.axes[yAxis].range = {0, 45};
    CurveLook &look = onlyCurve(document).look;
    look.filled = true;
    look.lineColour = {0, 0, 1, 1};
    look.lineThickness = 6;
    const char *seen = "r4,1 r3,3.5 b3,4 _3,4.5 _8,1 r4,5 b4,6 _4,7";
    Pixels(document, pngOfDocument(document)).expect(seen);
    Pixels(document, outputOf("tiff2pdf $f | pdftocairo -png -r 300 -singlefile - -",
                              tiffOfDocument(document)))
        .expect(seen);
    Pixels(document, pngOfSvg(svgOfDocument(document))).expect(seen);
}

// 120000 points between 2 and 5 in both directions and, after a gap, a line from (7, 6) to (9, 6).
static Document cloudAndLine() {
    Document document = centimetres();
    Table &table = document.sources[0].tables[0];
    table.y.resize(1);
    std::mt19937 random(1);
    const auto next = [&] { return 2 + static_cast<double>(random() % 3000) / 1000; };
    table.x.values = table.y[0].values = {2};
    for (int i = 1; i < 120'000; ++i) {
        table.x.values.push_back(next());
        table.y[0].values.push_back(next());
    }
    table.x.values.insert(table.x.values.end(), {5, unset, 7, 9});
    table.y[0].values.insert(table.y[0].values.end(), {2, unset, 6, 6});
    return document;
}

TEST(Pictures, OfManyPointsStaySmallAsImagesOrMergedLines) {
    const std::tuple<const char *, bool, void (*)(CurveLook &)> cases[] = {
        {"#3.5,3.5 #8,6 #8.99,6 _1.9,3 _8,6.05 _8,5.95 _6.9,6 _9.1,6", true, [](L) {}},
        {"r3.5,1 _6,1 r8,3 r8,5.9 r8.95,1 _8,6.1 _9.1,3 _1.9,3", true,
         [](L look) { look.filled = true, look.line = false; }},
        {"#3.5,3.5 #9.08,6 #8.92,6 #9,6.08 #9,5.92 _9,6 _9.2,6 _8,6", true,
         [](L look) {
             look.line = false, look.symbols = true;
             look.symbol[0] = 3, look.symbolSize = 5; // open squares
         }},
        {"#3.5,3.5 #3.5,1 #7,5.9 #9,1 _8,3 _9,6.1", false,
         [](L look) { look.marker = true, look.line = false; }},
    };
    for (const auto &[seen, image, change] : cases) {
        SCOPED_TRACE(seen);
        Document document = cloudAndLine();
        change(onlyCurve(document).look);
        Pixels(document).expect(seen);
        const std::string svg = svgOfDocument(document);
        Pixels(document, pngOfSvg(svg)).expect(seen);
        static const std::regex id(" id=\"(.*?)\"");
        std::set<std::string> ids;
        for (std::sregex_iterator at(svg.begin(), svg.end(), id), end; at != end; ++at)
            EXPECT_TRUE(ids.insert((*at)[1]).second) << (*at)[1];
        const std::string pdf = pdfOfDocument(document);
        EXPECT_EQ(contains(outputOf("pdfimages -list $f", pdf), "stencil"), image);
        EXPECT_LT(pdf.size(), 1'000'000u);
    }
}

// What is seen of the curve in centimetres when its look has been changed.
static void see(const char *what, const char *seen, void (*change)(Document &, CurveLook &)) {
    SCOPED_TRACE(what);
    Document document = centimetres();
    change(document, onlyCurve(document).look);
    Pixels(document).expect(seen);
}

static void useOtherAxes(Document &document) {
    onlyCurve(document).look.rightY = onlyCurve(document).look.upperX = true;
    document.axes[rightYAxis].range = {2, 10};
    document.axes[upperXAxis].range = {1, 13};
}

TEST(Pictures, ShowCurvesAsTheDocumentSays) {
    see("line", "#3,4 #5,4 _3,3.5 _4,2", [](D, L) {});
    see("one point", "#2,2 _2.2,2", [](D d, L) {
        d.sources[0].tables[0].x.values = {2, unset, unset};
    });
    see("stepped", "#3,2 #4,4 #5,6 _3,4", [](D, L look) { look.stepped = true; });
    see("dashes of 1 and 0.5 cm, each line of 4.47 cm",
        "#2.2,2.4 _2.55,3.1 #2.8,3.6 _3.2,4.4 #3.5,5", [](D, L look) {
            look.dashed = true;
            look.dashLength = {28.346, 14.173, 28.346, 14.173};
        });
    see("no line back", "#4,4 _5,4", [](D d, L) {
        d.frame.noLineOnReverse = true;
        d.sources[0].tables[0].x.values = {2, 6, 4};
    });
    see("nor on a reversed axis", "#8,4 _7,4", [](D d, L) {
        d.frame.noLineOnReverse = d.axes[xAxis].reversed = true;
        d.sources[0].tables[0].x.values = {2, 6, 4};
    });
    see("drop lines without its dashes", "#4,0.75 #4,1.25 #4,2.75 #4,4.25 _4,6.1", [](D, L look) {
        look.dashed = look.marker = true;
        look.dashLength = {28.346, 14.173, 28.346, 14.173};
    });
    see("area", "r4,1 r4,5.5 r3,1 _1.9,1 _3,4.5", [](D, L look) { look.filled = true; });
    see("area from the x axis", "r4,5.5 _4,4.5 r2.5,4",
        [](D d, L look) { look.filled = true, d.frame.xAxisPos = 5; });
    see("area on a reversed logarithmic axis", "r4,7.9 r4,3.2 _4,2.8", [](D d, L look) {
        look.filled = d.axes[yAxis].logarithmic = d.axes[yAxis].reversed = true;
        d.axes[yAxis].range = {0.01, 1e6};
        onlyCurve(d).values = {1e3, 1e3, 1e3};
    });
    see("right and upper axis", "#2,2 _4,5.9 #2.55,4 #3,4.9 #3.45,4", [](D d, L look) {
        useOtherAxes(d);
        look.xError = look.yError = true;
    });
    static constexpr auto largeError = [](D d, L look) {
        look.yError = true, look.line = false;
        d.axes[yAxis].logarithmic = true;
        d.axes[yAxis].range = {0.01, 1e6};
        onlyCurve(d).values = {unset, 1, unset};
    };
    see("an error beyond the positive", "#4,0.5 #4,1.9 #4,2.2 _4,2.5", largeError);
    see("and on a reversed axis", "#4,6.1 #4,7.5 _4,5.5", [](D d, L look) {
        largeError(d, look);
        d.axes[yAxis].reversed = true;
    });
    see("every second symbol, another over it", "#2,2 _2.5,2.5 #6,2 #6.5,2 _4,6.2", [](D, L look) {
        look.symbols = true, look.symbolInc = 2, look.line = false;
        look.symbolSize = 57, look.symbol = {3, 0, 0, 10};
    });
    see("missing points have none, not even of those that are left out", "#2,2 _6,2 _2.5,2",
        [](D d, L look) {
            look.symbols = true, look.symbolInc = 2, look.line = false;
            onlyCurve(d).values[1] = unset;
        });
    see("open symbols hide the line", "_4.25,5.5 #5,4 #4,6.98", [](D, L look) {
        look.symbols = true, look.symbolSize = 2 * pointsPerCm, look.symbol[0] = 1;
    });
    see("layers", "r3,4", [](D d, L look) {
        Column above = onlyCurve(d);
        above.look.lineColour = {0, 1, 0, 1};
        look.layer = 1;
        look.lineColour = {1, 0, 0, 1};
        d.sources[0].tables[0].y.push_back(above);
    });
}

TEST(Pictures, ShowAxesAndTextsAsTheDocumentSays) {
    see("no line, texts in the corner, upright at values and beyond the frame",
        "#8,8 _12,5 r0.4,0.4 _0.2,0.4 _0.4,0.2 #8,5.4 #8,4.6 _8.4,5 #12.8,4 _11.6,4", [](D d, L) {
            d.axes[rightYAxis].noLine = d.axes[rightYAxis].noNumbers = true;
            d.texts = {{"{\\rtf1{\\colortbl;\\red255\\green0\\blue0;}\\cf1 \\u9608?\\u9608?}", 0, 0,
                        0, false, false},
                       {"\u2588\u2588\u2588\u2588", 8, 5, 90, true, true},
                       {"\u2588", 1.1, 0.5, 0, false, false}};
        });
    see("corners of thick axes that are open", "#-0.1,-0.1 #-0.1,4 _-0.1,8.2", [](D d, L) {
        d.frame.axisThickness = 0.3 * pointsPerCm;
        for (Axis &axis : d.axes) axis.noNumbers = true;
        d.axes[upperXAxis].noLine = d.axes[rightYAxis].noLine = true;
    });
    see("titles that read upwards", "r5.9,-1 b6.1,-1 r-0.8,3.9 b-0.8,4.1", [](D d, L) {
        for (Axis &axis : d.axes)
            axis.title = "{\\rtf1{\\colortbl;\\red255;\\blue255;}\\cf1 \\u9608?\\cf2 \\u9608?}";
    });
    see("lines of a text at their side of the frame", "#0.4,4.2 #1.2,4.2 #0.4,3.8 _1.2,3.8",
        [](D d, L) { d.texts = {{.text = "\u2588\u2588\u2588\u2588\\\\\u2588", .x = 0}}; });
    see("and at the other side", "#11.6,4.2 #10.8,4.2 #11.6,3.8 _10.8,3.8",
        [](D d, L) { d.texts = {{.text = "\u2588\u2588\u2588\u2588\\\\\u2588", .x = 1}}; });
}

TEST(Pages, HoldTheSymbolsOfAllCurvesAndNothingTooFarAway) {
    Document document = centimetres();
    Table &table = document.sources[0].tables[0];
    table.x.name = "";
    table.y.resize(1, Column());
    table.y.resize(3, table.y[0]);
    for (Axis &axis : document.axes) axis.noLine = axis.noNumbers = true;
    const double sizes[] = {20, 40, 30};
    for (std::size_t i = 0; i < 3; ++i) {
        table.y[i].name = "";
        table.y[i].look.symbols = i < 2;
        table.y[i].look.symbolSize = sizes[i];
    }
    // three quarters of a size, and the margin
    expectNear(Picture(document).page(), {-33, -33, 374, 260}, 0);

    document.frame.xAxisLength = 100;
    document.texts = {{.text = "far", .x = 2}};
    const Picture far(document);
    EXPECT_EQ(far.page().right, std::ceil(100 * pointsPerCm + 1500 + 3));
    EXPECT_LE(inkOf([&](cairo_t *cr) { far.drawOn(cr); }).right, far.page().width());
}

// Nothing crashes, hangs or grows beyond reason, whatever the data and however far the settings go.
TEST(Pictures, OfExtremesStayWithinBounds) {
    for (const double wild : {0.0, -3.0, 1e9, 1e308, -1e308, unset, double{INFINITY}})
        for (const bool logarithmic : {false, true}) {
            Document document = documentWith({-1e308, 0, unset, 1, 2, 1e308, INFINITY},
                                             {1e308, -1e308, 1, unset, 2, 3, 4});
            CurveLook &look = onlyCurve(document).look;
            look.symbols = look.marker = look.filled = look.stepped = look.dashed = true;
            look.yError = true;
            look.lineThickness = 50;
            look.symbolSize = 200;
            look.interpolationPoints = 1e6;
            look.interpolationType = 1;
            document.sources[0].tables[0].y.push_back(
                {"y error", {wild, 1, 2, 3, 4, 5, 1e308}, {}});
            document.frame = {100, 100, 100, 20, wild, wild};
            for (Axis &axis : document.axes) {
                axis.logarithmic = logarithmic;
                axis.increment = std::isinf(wild) ? 1e-308 : std::abs(wild);
                axis.range = {wild, -wild};
                axis.ticks = 100;
                axis.logTicksAt = axis.logNumbersAt = logarithmic ? 1 : 600;
                axis.majorGrid = axis.minorGrid = axis.outsideTicks = axis.arrow = true;
            }
            document.texts = {{std::string(100000, '\n') + 'x', -1e308, 1e308, 1e308, true, false}};
            const Box page = Picture(document).page();
            EXPECT_LT(page.width() + page.height(), 12000) << wild << ' ' << logarithmic;
            EXPECT_LT(pdfOfDocument(document).size(), 300000u) << wild << ' ' << logarithmic;
        }
}

static void expectLimits(const char *what, AxisCode axis, double min, double max,
                         void (*change)(Document &, CurveLook &)) {
    Document document = documentWith({1, 2, 3}, {50, 60, 75});
    change(document, onlyCurve(document).look);
    const ScaledFrame frame = Placed(document).frame;
    EXPECT_NEAR(frame.scales[axis].min, min, 1e-12) << what;
    EXPECT_NEAR(frame.scales[axis].max / max, 1, 1e-12) << what;
}

TEST(Frame, LeavesRoomAroundDataAndBeginsWhereAreasDo) {
    expectLimits("x", xAxis, 0.92, 3.08, [](D, L) {});
    expectLimits("means of two", xAxis, 1.44, 3.06, [](D, L look) { look.sum = 2; });
    expectLimits("their y", yAxis, 54.2, 75.8, [](D, L look) { look.sum = 2; });
    expectLimits("y from zero", yAxis, -3, 78, [](D d, L) { onlyCurve(d).values[0] = 0; });
    expectLimits("area", yAxis, 0, 78, [](D, L look) { look.filled = true; });
    expectLimits("drop lines", yAxis, 0, 78, [](D, L look) { look.marker = true; });
    expectLimits("band of a fit", yAxis, 49, 76,
                 [](D d, L look) { look.filled = onlyCurve(d).drawnByFit = true; });
    expectLimits("area from the x axis", yAxis, 48, 102,
                 [](D d, L look) { look.filled = true, d.frame.xAxisPos = 100; });
    expectLimits("given limit", yAxis, 25, 77,
                 [](D d, L look) { look.filled = true, d.axes[yAxis].range.min = 25; });
    expectLimits("logarithmic", yAxis, 1, 1e27, [](D d, L look) {
        look.filled = true, d.axes[yAxis].logarithmic = true;
        onlyCurve(d).values = {10, 100, 1e26};
    });
    expectLimits("logarithmic below one", yAxis, 0.01 / std::pow(10, 0.08), std::pow(10, 0.08),
                 [](D d, L) {
                     d.axes[yAxis].logarithmic = true;
                     onlyCurve(d).values = {0.01, 0.1, 1};
                 });
    expectLimits("the opposite axis's", yAxis, 49, 76, [](D, L look) { look.rightY = true; });
    expectLimits("its own", yAxis, 2, 3,
                 [](D d, L look) { look.rightY = true, d.axes[yAxis].range.max = 3; });
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
            SCOPED_TRACE(testing::Message() << position << ' ' << inside);
            EXPECT_GE(boxes.size(), 6u);
            expectApart(boxes);
        }
}
