#include "plotwerk/drawing/pages.h"

#include "plotwerk/drawing/picture.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>
#include <regex>

using namespace plotwerk;

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
        for (std::size_t side = 0; side < 4; ++side)
            EXPECT_NEAR(ink[side], c.box[side], c.shear == 0 ? 4 : 20)
                << c.angle << ' ' << c.shear << ' ' << side;
    }
}

// Where the PDF's frames of that size are drawn: their lower left corners, y upwards.
static std::vector<Point> framesOf(const std::string &pdf, double width, double height) {
    const std::string svg = outputOf("pdftocairo -svg $f -", pdf);
    const double pageHeight = pageSizeOf(pdf).at(1);
    static const std::regex rectangle("d=\"M (\\S+) (\\S+) L (\\S+) \\2 L \\3 (\\S+) L \\1 \\4 Z");
    std::vector<Point> frames;
    for (std::sregex_iterator at(svg.begin(), svg.end(), rectangle), end; at != end; ++at) {
        const auto number = [&](int i) { return std::stod((*at)[i]); };
        if (std::abs(number(3) - number(1) - width) < 0.1 &&
            std::abs(number(4) - number(2) - height) < 0.1)
            frames.push_back({number(1), pageHeight - number(4)});
    }
    return frames;
}

TEST(Composition, AlignsFramesOfPicturesInTheirOwnSizeOnAPageThatFits) {
    Document upper = sineDocument();
    Document lower = sineDocument();
    for (double &y : onlyCurve(lower).values) y *= 1e5; // wider numbers
    lower.axes[xAxis].title = "below";
    for (Document *each : {&upper, &lower}) each->frame.xAxisLength = 6;
    const double width = 6 * pointsPerCm;
    const double height = 8 * pointsPerCm;
    for (const double pageWidth : {0.0, 260.0}) {
        Composition composition(pageWidth, 0);
        EXPECT_TRUE(composition.empty());
        composition.add(lower, {60, -500, 0, 0}, 0, 0);
        composition.add(upper, {60, -500 + height, 0, 0}, 0, 0);
        const std::string pdf = composition.pdf();
        const std::vector<double> page = pageSizeOf(pdf);
        const std::vector<double> ink = inkBoxOf(pdf);
        const std::vector<Point> frames = framesOf(pdf, width, height);
        ASSERT_EQ(frames.size(), 2u);
        EXPECT_NEAR(frames[0].x, pageWidth > 0 ? 60 : frames[1].x, 0.01);
        EXPECT_NEAR(frames[1].x, frames[0].x, 0.01);
        EXPECT_NEAR(frames[1].y - frames[0].y, height, 0.01);
        if (pageWidth == 0) {
            for (const double room : {ink[0], ink[1], page[0] - ink[2], page[1] - ink[3]})
                EXPECT_NEAR(room, 10.75, 0.75);
        } else {
            EXPECT_EQ(page[0], pageWidth);
        }
        // the type isn't scaled
        const std::string alone =
            outputOf("pdftotext -bbox $f - | grep below", pdfOfDocument(lower));
        const std::string placed = outputOf("pdftotext -bbox $f - | grep below", pdf);
        const auto sizeIn = [](const std::string &line) {
            double xMin = 0, yMin = 0, xMax = 0, yMax = 0;
            std::sscanf(line.c_str(), " <word xMin=\"%lf\" yMin=\"%lf\" xMax=\"%lf\" yMax=\"%lf\"",
                        &xMin, &yMin, &xMax, &yMax);
            return Point{xMax - xMin, yMax - yMin};
        };
        EXPECT_NEAR(sizeIn(placed).x, sizeIn(alone).x, 0.01);
        EXPECT_NEAR(sizeIn(placed).y, sizeIn(alone).y, 0.01);
    }
    Composition turned(0, 0); // by its frame's corner
    turned.add(upper, {0, 0, 0, 0}, 90, 0);
    const std::vector<double> own = pageSizeOf(pdfOfDocument(upper));
    const std::vector<double> page = pageSizeOf(turned.pdf());
    EXPECT_NEAR(page[0], own[1] + 14, 1.5);
    EXPECT_NEAR(page[1], own[0] + 14, 1.5);
}

TEST(Composition, LooksAsItsPicturesInEveryFormat) {
    Document document = centimetres();
    CurveLook &look = onlyCurve(document).look;
    look.filled = true;
    look.lineColour = {0, 0, 1, 1};
    look.lineThickness = 6;
    const Picture picture(document);
    const double height = picture.page().height();
    Composition composition(picture.page().width(), height);
    const Point corner = picture.frameCorner();
    composition.add(document, {corner.x, height - corner.y, 0, 0}, 0, 0);
    composition.add(document, {corner.x + 7 * pointsPerCm, height - corner.y, 100, 0}, 0, 0);
    const char *seen = "r4,1 r4,5 b4,6 _4,7 _8,3 r8.6,0.8";
    Pixels(document, composition.png()).expect(seen);
    Pixels(document, pngOfSvg(composition.svg())).expect(seen);
    EXPECT_EQ(composition.svg(), composition.svg());
}

TEST(Composition, KeepsPicturesAsTheyWereAndAsText) {
    Document document = sineDocument();
    document.axes[xAxis].title = "before";
    Composition composition(595, 842);
    composition.add(document, {50, 500, 0, 0}, 0, 0);
    document.axes[xAxis].title = "after";
    composition.add(document, {50, 100, 300, 200}, unset, unset);
    const std::string pdf = composition.pdf();
    EXPECT_EQ(pdf, composition.pdf());
    const std::string text = outputOf("pdftotext $f -", pdf);
    EXPECT_TRUE(contains(text, "before") && contains(text, "after")) << text;
    const auto turned = [&](double angle, double shear) {
        Composition alone(0, 0);
        alone.add(document, {}, angle, shear);
        return alone.pdf();
    };
    EXPECT_EQ(turned(370, 1e3), turned(10, 10)) << "the most that is sheared";
    EXPECT_EQ(turned(-350, -1e3), turned(10, -10));
    EXPECT_NE(turned(0, 9), turned(0, 9.5));
    EXPECT_NE(turned(0, -9), turned(0, -9.5));
    Composition absurd(1e300, unset);
    absurd.add(document, {INFINITY, -1e300, 1e300, unset}, INFINITY, 1e300);
    EXPECT_EQ(pageSizeOf(absurd.pdf()).at(0), 14400) << "what PDF readers show";
    Composition tall(595, 1e5); // from its lower left corner on
    tall.add(document, {50, 100, 300, 0}, 0, 0);
    EXPECT_NEAR(inkBoxOf(tall.pdf()).at(1), 100, 4);
}

TEST(Composition, IsRefusedAsPixelsWhereRowsWouldBeTooLong) {
    EXPECT_EQ(refusalOf([] { Composition(7864, 1).png(); }), "");
    EXPECT_EQ(refusalOf([] { Composition(7864.1, 1).png(); }),
              "a picture of pixels can't be wider than 277 cm");
}
