#include "plotwerk/drawing/pages.h"

#include "plotwerk/drawing/picture.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>

using namespace plotwerk;

TEST(Composition, PlacesScalesTurnsAndShears) {
    const Document document = sineDocument();
    const std::vector<double> own = pageSizeOf(pdfOfDocument(document));
    const double h = 200 * own.at(1) / own.at(0); // of a picture 200 points wide
    // angle, shear, and the left, bottom, right and top of the ink
    const std::tuple<PageRectangle, double, double, std::vector<double>> cases[] = {
        {{300, 200, 200, h}, 0, 0, {300, 200, 500, 200 + h}},
        {{300, 200, 200, 0}, 0, 0, {300, 200, 500, 200 + h}},
        {{300, 200, 0, h}, 0, 0, {300, 200, 500, 200 + h}},
        {{300, 200, -260, -h}, 0, 0, {330, 200, 530, 200 + h}},
        {{300, 200, 200, h + 50}, 0, 0, {300, 225, 500, 225 + h}},
        {{300, 200, 200, h}, 90, 0, {300 - h, 200, 300, 400}},
        {{300, 200, 200, h}, 540, 0, {100, 200 - h, 300, 200}},
        {{300, 200, 200, h}, 0, 0.5, {300, 200, 500 + h / 2, 200 + h}}};
    for (const auto &[rectangle, angle, shear, box] : cases) {
        Composition composition(600, 500);
        composition.add(document, rectangle, angle, shear);
        const std::string pdf = composition.pdf();
        EXPECT_EQ(pageSizeOf(pdf), (std::vector<double>{600, 500}));
        const std::vector<double> ink = inkBoxOf(pdf);
        ASSERT_EQ(ink.size(), 4u);
        // the picture's own margin is 3 points before scaling; a sheared corner holds less
        for (std::size_t side = 0; side < 4; ++side)
            EXPECT_NEAR(ink[side], box[side], shear == 0 ? 4 : 20)
                << angle << ' ' << shear << ' ' << side;
    }
}

TEST(Composition, FitsThePageToItsPictures) {
    const Document upper = sineDocument();
    Document lower = upper;
    for (double &y : onlyCurve(lower).values) y *= 1e5; // wider numbers
    lower.axes[xAxis].title = "below";
    const Box above = Picture(upper).page();
    const Box below = Picture(lower).page();
    const double height = 8 * pointsPerCm;
    for (const double pageWidth : {0.0, 260.0}) {
        Composition composition(pageWidth, 0);
        EXPECT_TRUE(composition.empty());
        composition.add(lower, {60, -500, 0, 0}, 0, 0);
        composition.add(upper, {60, -500 + height, 0, 0}, 0, 0);
        const std::string pdf = composition.pdf();
        const std::vector<double> page = pageSizeOf(pdf);
        const std::vector<double> ink = inkBoxOf(pdf);
        // ten points around, instead of the margins of three
        EXPECT_NEAR(page[0], pageWidth > 0 ? 260 : united(above, below).width() + 14, 0.01);
        EXPECT_NEAR(page[1], below.bottom + height - above.top + 14, 0.01);
        EXPECT_NEAR(ink[0], pageWidth > 0 ? 60 + below.left + 3 : 10, 1.5);
        EXPECT_NEAR(ink[1], 10, 1.5);
    }
    Composition turned(0, 0); // by its frame's corner
    turned.add(upper, {0, 0, 0, 0}, 90, 0);
    const std::vector<double> page = pageSizeOf(turned.pdf());
    EXPECT_NEAR(page[0], above.height() + 14, 0.01);
    EXPECT_NEAR(page[1], above.width() + 14, 0.01);
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
