#include "plotwerk/drawing/placedTexts.h"

#include "plotwerk/base/child.h"
#include "plotwerk/drawing/pages.h"
#include "plotwerk/drawing/textFields.h"
#include "tests/plotwerk/drawing/samples.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <regex>

using namespace plotwerk;

static std::string filled(const std::string &text, const Document &document) {
    return plainTextOf(filledText(text, document, drawnCurvesOf(document), 3));
}

// The text, added to those of the document.
static LaidText laid(const PlacedText &placed, Document document = sineDocument()) {
    document.texts.push_back(placed);
    const Typesetter typesetter;
    const std::vector<DrawnCurve> curves = drawnCurvesOf(document);
    std::vector<LaidText> texts =
        laidTextsOf(document, curves, frameOf(document, curves, typesetter), typesetter);
    return std::move(texts.back());
}

static Document fitted() {
    Document document = sineDocument();
    document.name = "my_2*file*";
    document.formula = "A_1*x*y+a";
    document.parameters = {{.name = "A_1", .value = -1.23456, .error = 0.02},
                           {.name = "a", .value = 1.5e-7, .fixed = true},
                           {.name = "b", .value = 2.0 / 3}, // before a fit
                           {.name = "c", .value = 1.23456789, .fixed = true}};
    document.fit.done = true;
    document.fit.points = 13;
    document.fit.chiSquare = 10.978;
    return document;
}

TEST(TextFields, AreFilledWithWhatTheDocumentHolds) {
    const std::pair<const char *, const char *> cases[] = {
        {"<name>: <formula>", "my_2*file*: A_1*x*y+a"},
        {"<parameters>", "A1 = \u22121.235 \u00b1 0.020\na = 1.5\u00d710\u22127\n"
                         "b = 0.666667\nc = 1.23456789"},
        {"<chi>, <date>", "\u03c72/ndf = 0.998, 2001-09-09"},
        {"<x> <> <date\\\\<chi>", "<x> <> <date\n\u03c72/ndf = 0.998"},
    };
    setenv("SOURCE_DATE_EPOCH", "1000000000", 1);
    for (const auto &[text, want] : cases) EXPECT_EQ(filled(text, fitted()), want) << text;
    unsetenv("SOURCE_DATE_EPOCH");
    EXPECT_TRUE(std::regex_match(filled("<date>", {}), std::regex("20\\d\\d-[01]\\d-[0-3]\\d")));

    Document exact = fitted();
    exact.fit.points = 2; // as many as parameters that aren't fixed
    Document undone = fitted();
    undone.fit.done = false;
    for (const Document &document : {Document(), exact, undone})
        EXPECT_EQ(filled("<chi>", document), "");
    Document large = fitted();
    large.fit.chiSquare = 1357;
    EXPECT_EQ(filled("<chi>", large), "\u03c72/ndf = 123") << "without a point at the end";

    Document named; // fields are filled as long as the text isn't too long
    named.name = std::string(1000, 'n');
    std::string fields;
    for (int i = 0; i < 100; ++i) fields += "<name>";
    EXPECT_EQ(filled(fields, named).size(), 17000U);
}

TEST(Legend, ListsTheCurvesThatAreDrawn) {
    Document document = sineDocument();
    std::vector<Column> &columns = document.sources[0].tables[0].y;
    columns[0].name = "x_1";
    columns.push_back(columns[0]);
    columns[1].name = "x_1 error";
    EXPECT_EQ(filled("<legend>", document), "\ufffc\u2002x1");

    document.sources[0].name = "a_1";
    document.sources.push_back(document.sources[0]);
    document.sources[1].name = "b";
    columns[0].look.layer = 5; // drawn last, listed first
    EXPECT_EQ(filled("<legend>", document), "\ufffc\u2002x1 (a_1)\n\ufffc\u2002x1 (b)");
    for (int i = 0; i < 3; ++i) document.sources.push_back(document.sources[1]);
    EXPECT_EQ(filled("<legend>", document), "\ufffc\u2002x1 (a_1)\n\ufffc\u2002x1 (b)\n\u2026");

    for (Source &source : document.sources) source.tables[0].y[0].look.line = false;
    document.sources[1].tables[0].y[0].look.visible = false;
    EXPECT_EQ(filled("<legend>", document), "");
}

TEST(Legend, ShowsWhatCurvesLookLike) {
    Document document = centimetres();
    document.texts = {{.text = "<legend>", .x = 0, .y = 0}};
    document.sources[0].tables[0].y.resize(1);
    Column &curve = onlyCurve(document);
    curve.name = "";
    curve.values = {-9, -9, -9};
    curve.look.lineColour = {0, 0, 1, 1};
    curve.look.lineThickness = 2;
    // beside a tick, a gap and the padding: 0.46 cm
    Pixels(document).expect("b0.56,0.57 b1.16,0.57 _0.56,0.66 _1.36,0.57");
}

TEST(Legend, WithoutAPlaceGoesToTheCornerThatHidesLeast) {
    std::vector<double> beyond(50'000, 0.2); // the frame, and a gap before the rest
    std::fill_n(beyond.begin(), 25'000, 2);
    beyond[25'001] = unset;
    const struct {
        const char *what;
        std::vector<double> x, y;
        bool line, right, upper;
        std::vector<PlacedText> texts{};
    } cases[] = {{"nothing near", {0, 1}, {0, 0}, true, true, true},
                 {"no points in the corners", {0, 1}, {0, 1}, true, false, true},
                 {"points in three", {0.1, 0.9, 0.9}, {0.9, 0.1, 0.9}, false, false, false},
                 {"points in others", {0.1, 0.9, 0.1}, {0.9, 0.9, 0.1}, false, true, false},
                 {"a long curve", std::vector(50'000, 0.97), beyond, true, true, true},
                 {"a text", {0, 1}, {0, 0}, true, false, true, {{.text = "T", .x = 1, .y = 1}}}};
    for (const auto &c : cases) {
        Document document = documentWith(c.x, c.y);
        for (Axis &axis : document.axes) axis.range = {0, 1};
        onlyCurve(document).look.line = c.line;
        onlyCurve(document).look.symbols = !c.line;
        document.texts = c.texts;
        const LaidText legend = laid({.text = "<legend>"}, document);
        EXPECT_EQ(legend.middle.x > 170, c.right) << c.what;
        EXPECT_EQ(legend.middle.y < 113, c.upper) << c.what;
        EXPECT_TRUE(legend.framed);
    }
    const LaidText placed = laid({.text = "<legend>", .x = 0.5, .y = 0.4});
    EXPECT_NEAR(placed.middle.x, 6 * pointsPerCm, 1);
}

TEST(PlacedTexts, AreAnchoredInProportionAndHaveAGroundOverData) {
    const double width = 12 * pointsPerCm;
    const double height = 8 * pointsPerCm;
    const double inset = 0.2 * pointsPerCm + 3;
    for (const double x : {0.0, 0.25, 1.0}) {
        const LaidText text = laid({.text = "longer line\\\\i", .x = x, .y = 0.9});
        const double length = text.text.ink().width();
        EXPECT_NEAR(text.middle.x, inset + length / 2 + x * (width - length - 2 * inset), 1e-6);
    }
    for (const double angle : {30.0, 135.0, 200.0, -60.0}) {
        const LaidText text = laid({.text = "longer line", .x = 0, .y = 0, .angle = angle});
        const double c = std::abs(std::cos(angle * G_PI / 180)) / 2;
        const double s = std::abs(std::sin(angle * G_PI / 180)) / 2;
        const Box ink = text.text.ink();
        EXPECT_NEAR(text.middle.x, inset + ink.width() * c + ink.height() * s, 1e-6) << angle;
        EXPECT_NEAR(text.middle.y, height - inset - ink.width() * s - ink.height() * c, 1e-6);
    }
    EXPECT_TRUE(laid({.text = "right across the sine, to both sides"}).overData);
    EXPECT_FALSE(laid({.text = "x", .x = 0.5, .y = 1.2}).overData);
    EXPECT_FALSE(laid({.text = "<legend> and more", .x = 1}).framed);

    std::vector<LaidText> framed;
    framed.push_back(laid({.text = "across the sine"}));
    LaidText &text = framed[0];
    const PlacedFrame frame = frameOf(sineDocument(), {}, Typesetter());
    text.padding = 4;
    const double half[] = {text.text.ink().width() / 2 + 4, text.text.ink().height() / 2 + 4};
    for (const double angle : {0.0, 90.0, -90.0, 180.0}) {
        text.angle = angle;
        const bool level = std::fmod(angle, 180) == 0;
        for (const bool ground : {false, true})
            for (const bool overData : {false, true}) {
                text.framed = !overData || !ground;
                text.overData = overData;
                double red = 0;
                std::vector<Drawn> drawn = drawnBy([&](cairo_t *cr) {
                    cairo_set_source_rgb(cr, 1, 0, 0);
                    ground ? drawGrounds(cr, framed, frame) : drawTexts(cr, framed);
                    cairo_pattern_get_rgba(cairo_get_source(cr), &red, nullptr, nullptr, nullptr);
                });
                EXPECT_EQ(red, ground) << "a text is black, whatever was drawn before";
                std::erase_if(drawn,
                              [&](auto &each) { return each.thickness != (ground ? 0 : 0.5); });
                ASSERT_EQ(drawn.size(), 1U);
                const double less = text.framed ? 0 : 2;
                for (const Point &corner : drawn[0].path) {
                    if (isBreak(corner)) continue;
                    EXPECT_NEAR(std::abs(corner.x - text.middle.x), half[!level] - less, 0.01);
                    EXPECT_NEAR(std::abs(corner.y - text.middle.y), half[level] - less, 0.01);
                }
            }
    }
}

TEST(PlacedTexts, KeepTheCurvesUnderThemFaint) {
    Document document = documentWith({0, 12}, {4, 4});
    for (const AxisCode axis : {xAxis, yAxis}) document.axes[axis].range = {0, axis ? 8.0 : 12.0};
    onlyCurve(document).look.lineThickness = 30;
    document.texts = {{.text = "i          i"}}; // ink at both ends
    Pixels(document).expect("#2,4 .6,4 #10,4");
    const std::string read = outputOf("gs -q -dNOPAUSE -dBATCH -sDEVICE=txtwrite -sOutputFile=- $f",
                                      epsOfDocument(document));
    EXPECT_NE(read.find('i'), std::string::npos) << "the text is part of an image";
}

TEST(PlacedTexts, BeginParametersOneBelowTheOther) {
    Document document = fitted();
    document.texts = {{.text = "<parameters>", .x = 1}};
    const std::string words =
        outputOf("pdftotext -bbox $f - | grep -E '>A|>a<'", pdfOfDocument(document));
    double a = 0;
    double b = 1;
    std::sscanf(words.c_str(), " <word xMin=\"%lf\"%*[^\n]\n <word xMin=\"%lf", &a, &b);
    EXPECT_NEAR(a, b, 1) << words;
}

// Of a text of the usual size.
static SetText set(const RichText &text) {
    return Typesetter().paragraph(text, textSize, 100, 2);
}

TEST(Typesetter, RaisesShrinksAndStacksScripts) {
    const auto x = [](int script, int innerScript) {
        return TextRun{.text = "x", .script = script, .innerScript = innerScript};
    };
    const Box plain = set({x(0, 0)}).ink();
    const auto expect = [&](const TextRun &run, double size, double rise) {
        const Box ink = set({run}).ink();
        EXPECT_NEAR(ink.height(), size * plain.height(), 0.05);
        EXPECT_NEAR(ink.bottom, -rise * textSize, 0.2);
    };
    expect(x(1, 0), 0.7, 0.38);
    expect(x(-1, 0), 0.7, -0.16);
    expect(x(1, 1), 0.56, 0.38 + 0.7 * 0.38);
    const double one = set({x(0, 0), x(-1, 0)}).ink().right;
    EXPECT_NEAR(set({x(0, 0), x(-1, 0), x(1, 0)}).ink().right, one, 0.1);
}

TEST(Typesetter, SetsStylesAndLines) {
    const SetText line = set({{.text = "lx"}});
    const Box plain = line.ink();
    EXPECT_GT(set({{.text = "lx", .bold = true}}).ink().width(), plain.width() + 0.5);
    EXPECT_GT(set({{.text = "lx", .italic = true}}).ink().width(), plain.width() + 0.1);
    EXPECT_GT(set({{.text = "lx", .underline = true}}).ink().bottom, plain.bottom + 0.5);

    const Box one = set({{.text = "x"}}).ink();
    const TextRun two{.text = "x\nx"};
    EXPECT_NEAR(set({two}).ink().height() - one.height(), lineHeight, 0.1);
    EXPECT_NEAR(set({two, {.text = "x", .script = 1}}).ink().bottom - one.bottom, lineHeight, 0.1);
    const char *const words =
        "many words that need more than the two lines which they are given here";
    const double height = set({{.text = words}}).ink().height();
    EXPECT_TRUE(height > lineHeight && height < 2 * lineHeight) << height;
    const Box upwards = inkOf([&](cairo_t *cr) { line.draw(cr, {50, 50}, 90, {0, 0}); });
    expectNear(upwards, {upwards.left, 50 - plain.right, upwards.right, 50 - plain.left});
}

TEST(MissingGlyphs, AreNamedOnceByAllChildren) {
    Document document;
    document.texts = {{.text = "a\U00012000\U0010fffd"}, {.text = "\U00012000"}};
    pdfOfDocument({});
    testing::internal::CaptureStderr();
    for (int i = 0; i < 2; ++i) inChild([&] { pdfOfDocument(document); });
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "plotwerkd: warning: no font that is installed has \U00012000 (U+12000), "
              "\U0010fffd (U+10FFFD)\n");
}
