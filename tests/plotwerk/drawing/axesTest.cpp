#include "plotwerk/drawing/axes.h"

#include "plotwerk/drawing/curveBars.h"
#include "plotwerk/drawing/symbols.h"
#include "tests/plotwerk/drawing/samples.h"

#include <algorithm>
#include <cmath>
#include <set>

using namespace plotwerk;

// Straight lines as "x,y x,y" in tenths of points, the nearer end first.
static std::string lineOf(Point a, Point b) {
    if (b.x < a.x || (b.x == a.x && b.y < a.y)) std::swap(a, b);
    char text[80];
    std::snprintf(text, sizeof text, "%ld,%ld %ld,%ld", std::lround(10 * a.x),
                  std::lround(10 * a.y), std::lround(10 * b.x), std::lround(10 * b.y));
    return text;
}

// Of all paths of that thickness which have two points.
static std::multiset<std::string> linesIn(const std::vector<Drawn> &drawn, double thickness) {
    std::multiset<std::string> lines;
    for (const Drawn &each : drawn)
        for (std::size_t i = 1; each.thickness == thickness && i < each.path.size(); ++i)
            if (!isBreak(each.path[i - 1]) && !isBreak(each.path[i]))
                lines.insert(lineOf(each.path[i - 1], each.path[i]));
    return lines;
}

// A frame of 200 by 100 points with x from 0 to 10 and y from 0 to 4, ticks of 8 points at every
// second number and small ones between.
static Document plain() {
    Document document = documentWith({1, 3}, {1, 3});
    document.frame.xAxisLength = 200 / pointsPerCm;
    document.frame.yAxisLength = 100 / pointsPerCm;
    document.frame.tickLength = 8 / pointsPerCm;
    for (const AxisCode code : {xAxis, yAxis})
        document.axes[code] = {
            .range = {0, code == xAxis ? 10.0 : 4.0}, .increment = 2, .ticks = 1};
    return document;
}

static PlacedFrame placed(const Document &document) {
    return frameOf(document, drawnCurvesOf(document), Typesetter());
}

static std::vector<Drawn> axesOf(const Document &document, bool grid = false) {
    const PlacedFrame frame = placed(document);
    return drawnBy([&](cairo_t *cr) { grid ? drawGrid(cr, frame) : drawAxes(cr, frame); });
}

TEST(Axes, HaveTicksOfTheirLengthsAtTheirPlacesOnAllSides) {
    for (const bool outside : {false, true})
        for (const bool reversed : {false, true}) {
            Document document = plain();
            document.axes[xAxis].range = {0.5, 10.5};
            document.axes[yAxis].range = {0.5, 4.5};
            document.axes[xAxis].reversed = document.axes[rightYAxis].noLine = reversed;
            for (Axis &axis : document.axes) {
                axis.insideTicks = !outside;
                axis.outsideTicks = outside;
            }
            std::multiset<std::string> want = {lineOf({0, 0}, {200, 0}),
                                               lineOf({200, 100}, {0, 100})};
            if (!reversed) want.insert(lineOf({200, 0}, {200, 100}));
            const double side = outside ? -1 : 1;
            for (int value = 1; value <= 10; ++value) {
                const double x = reversed ? 210 - 20 * value : 20 * value - 10;
                const double length = side * (value % 2 == 0 ? 8 : 4);
                want.insert(lineOf({x, 100}, {x, 100 - length}));
                want.insert(lineOf({x, 0}, {x, length}));
                if (value > 4) continue;
                const double y = 112.5 - 25 * value;
                want.insert(lineOf({0, y}, {length, y}));
                if (!reversed) want.insert(lineOf({200, y}, {200 - length, y}));
            }
            std::multiset<std::string> got = linesIn(axesOf(document), 0.75);
            got.erase(lineOf({0, 0}, {0, 100})); // the frame may be closed by itself
            EXPECT_EQ(got, want) << outside << reversed;
        }
}

// The last tick is 1.98 points from the frame's side.
TEST(Axes, HaveNoTicksThatWouldThickenTheFrame) {
    Document document = plain();
    document.axes[xAxis].range = {0, 10.1};
    for (const double thickness : {1.5, 2.5}) {
        document.frame.axisThickness = thickness;
        const std::multiset<std::string> lines = linesIn(axesOf(document), thickness);
        const auto count = [&](double x) { return lines.count(lineOf({x, 100}, {x, 92})); };
        EXPECT_EQ(count(0), 1U) << "on the side itself";
        EXPECT_EQ(count(2 / 10.1 * 200), 1U);
        EXPECT_EQ(count(10 / 10.1 * 200), thickness < 2 ? 1U : 0U);
    }
}

TEST(Axes, HaveGridsBetweenTheSidesAndLinesWhereTheyCross) {
    Document document = plain();
    document.axes[xAxis].majorGrid = document.axes[yAxis].minorGrid = true;
    for (const AxisCode code : {upperXAxis, rightYAxis}) // which only repeat the others
        document.axes[code].minorGrid = document.axes[code].majorGrid = true;
    const std::vector<Drawn> grid = axesOf(document, true);
    std::multiset<std::string> coarse;
    for (int value = 2; value <= 8; value += 2)
        coarse.insert(lineOf({20.0 * value, 0}, {20.0 * value, 100}));
    EXPECT_EQ(linesIn(grid, 0.5), coarse);
    EXPECT_EQ(linesIn(grid, 0.35),
              (std::multiset<std::string>{lineOf({0, 25}, {200, 25}), lineOf({0, 75}, {200, 75})}));

    for (Axis &axis : document.axes) axis.insideTicks = false;
    document.frame.xAxisPos = 1; // one that crosses is enough for there to be no frame
    EXPECT_EQ(linesIn(axesOf(document), 0.75),
              (std::multiset<std::string>{lineOf({0, 75}, {200, 75}), lineOf({0, 0}, {0, 100})}));
    document.frame.yAxisPos = 2.5;
    EXPECT_EQ(linesIn(axesOf(document), 0.75),
              (std::multiset<std::string>{lineOf({0, 75}, {200, 75}), lineOf({50, 0}, {50, 100})}));
    document.axes[xAxis].noLine = true;
    EXPECT_EQ(linesIn(axesOf(document), 0.75),
              (std::multiset<std::string>{lineOf({50, 0}, {50, 100})}));
}

TEST(Axes, HaveArrowsAtTheEndOfAscendingValuesAndThenNoFrame) {
    const std::tuple<AxisCode, bool, Point, Point, const char *> cases[] = {
        {xAxis, false, {200, 100}, {209, 100}, "218,100 209,97 209,103"},
        {xAxis, true, {0, 100}, {-9, 100}, "-18,100 -9,103 -9,97"},
        {yAxis, false, {0, 0}, {0, -9}, "0,-18 -3,-9 3,-9"},
        {yAxis, true, {0, 100}, {0, 109}, "0,118 3,109 -3,109"}};
    for (const auto &[axis, reversed, end, shaft, head] : cases) {
        Document document = plain();
        document.frame.axisThickness = 1;
        document.axes[axis].arrow = true;
        document.axes[axis].reversed = reversed;
        for (Axis &each : document.axes) each.insideTicks = false, each.noNumbers = true;
        const std::vector<Drawn> drawn = axesOf(document);
        EXPECT_EQ(linesIn(drawn, 1),
                  (std::multiset<std::string>{lineOf({0, 100}, {200, 100}),
                                              lineOf({0, 0}, {0, 100}), lineOf(end, shaft)}));
        ASSERT_EQ(drawn.size(), 3U);
        EXPECT_EQ(described(drawn[1].path), head);
        EXPECT_EQ(drawn[1].thickness, 0) << "filled";
    }
}

// How far away the nearer edge of a box is from the line of an axis, which way positive.
static double beyond(const Box &box, const PlacedAxis &axis, double line) {
    const double near = axis.horizontal() ? box.top - line : box.left - line;
    const double far = axis.horizontal() ? box.bottom - line : box.right - line;
    return (near > 0 ? near : -far) * (near > 0 ? 1 : -1) * -axis.inwards();
}

TEST(Axes, HaveNumbersBesideTheirTicks) {
    for (const bool inside : {false, true})
        for (const bool ticks : {false, true})
            for (const bool noLine : {false, true}) {
                Document document = plain();
                document.axes[upperXAxis].range = document.axes[rightYAxis].range = {0, 4};
                for (Axis &axis : document.axes) {
                    axis.numbersInside = inside;
                    axis.outsideTicks = ticks != inside;
                    axis.insideTicks = ticks == inside;
                    axis.noLine = noLine;
                }
                const PlacedFrame frame = placed(document);
                for (const PlacedAxis &axis : frame.axes) {
                    const double gap = axis.horizontal() ? 6.5 : 5;
                    const double want = gap + (ticks && !noLine ? 8 : 0);
                    EXPECT_GE(axis.numbers.size(), 1u) << axis.code;
                    for (const PlacedNumber &number : axis.numbers) {
                        const Box box = number.bounds();
                        EXPECT_NEAR(beyond(box, axis, frame.line[axis.code]), inside ? -want : want,
                                    1e-9)
                            << axis.code << inside << ticks << noLine;
                        const Box ink = inkOf([&](cairo_t *cr) { number.draw(cr); });
                        expectNear(ink, {box.left, box.top, ink.right, box.bottom});
                    }
                }
            }
    Document document = plain();
    document.axes[xAxis].noNumbers = true;
    document.frame.yAxisPos = 5;
    document.frame.tickLength = 10;
    const PlacedFrame frame = placed(document);
    EXPECT_TRUE(frame.axes[xAxis].numbers.empty());
    EXPECT_EQ(frame.tickLength, 25) << "a quarter of the frame";
    for (const PlacedNumber &number : frame.axes[yAxis].numbers)
        EXPECT_NEAR(number.bounds().right, 100 - 5, 1e-9);
}

TEST(Axes, HaveSlantedNumbersWithOneEndAtTheTick) {
    // from the tick to the middle, of numbers that rise
    const std::pair<AxisCode, Point> cases[] = {
        {xAxis, {-1, 0}}, {upperXAxis, {1, 0}}, {yAxis, {0, 1}}, {rightYAxis, {0, -1}}};
    for (const auto &[axis, middle] : cases)
        for (const double angle : {45.0, -45.0, 11.0, 79.0, 9.0, 81.0}) {
            Document document = plain();
            document.axes[axis].range = {1000, 5000};
            document.axes[axis].increment = 1000;
            document.axes[axis].labelAngle = angle;
            const PlacedFrame frame = placed(document);
            for (const PlacedNumber &number : frame.axes[axis].numbers) {
                const double tick = frame.scales[axis].position(number.value);
                const bool horizontal = isHorizontal(axis);
                const double turn = angle * G_PI / 180;
                const bool slanted = angle != 9 && angle != 81; // else as level or upright ones
                const double along =
                    slanted
                        ? number.width / 2 *
                              (horizontal ? std::copysign(std::cos(turn), angle) : std::sin(turn))
                        : 0;
                EXPECT_NEAR(horizontal ? number.middle.x - tick : number.middle.y - 100 + tick,
                            along * (horizontal ? middle.x : middle.y), 1e-9)
                    << axis << ' ' << angle;
                EXPECT_NEAR(beyond(number.bounds(), frame.axes[axis], frame.line[axis]),
                            horizontal ? 6.5 : 5, 1e-9)
                    << axis << ' ' << angle;
            }
        }
}

TEST(Axes, HaveWhatNumbersShareAtTheirEndApartFromAll) {
    Document document = plain();
    document.frame.xAxisLength = document.frame.yAxisLength = 10;
    for (Axis &axis : document.axes) axis = {.range = {1e9, 1.00001e9}};
    const PlacedFrame frame = placed(document);
    std::vector<Box> boxes;
    Box numbers[axisCount];
    for (const PlacedAxis &axis : frame.axes) {
        ASSERT_TRUE(axis.common);
        boxes.push_back(axis.common->bounds());
        numbers[axis.code] = axis.numbers.front().bounds();
        for (const PlacedNumber &number : axis.numbers) {
            boxes.push_back(number.bounds());
            numbers[axis.code] = united(numbers[axis.code], number.bounds());
        }
    }
    expectApart(boxes);
    const auto common = [&](AxisCode code) { return frame.axes[code].common->bounds(); };
    EXPECT_NEAR(common(xAxis).right, frame.width, 1e-9);
    EXPECT_NEAR(common(xAxis).top, numbers[xAxis].bottom + 5, 1e-9);
    EXPECT_NEAR(common(upperXAxis).right, frame.width, 1e-9);
    EXPECT_NEAR(common(upperXAxis).bottom, numbers[upperXAxis].top - 5, 1e-9);
    EXPECT_NEAR(common(yAxis).left, numbers[yAxis].left, 1e-9);
    EXPECT_NEAR(common(rightYAxis).right, numbers[rightYAxis].right, 1e-9);
    for (const AxisCode code : {yAxis, rightYAxis}) // above the number at the corner
        EXPECT_NEAR(common(code).bottom, numbers[upperXAxis].top - 5, 1e-9);

    const Box ink = inkOf([&](cairo_t *cr) { drawAxes(cr, frame); });
    EXPECT_NEAR(ink.bottom, common(xAxis).bottom, 1);
    expectNear(frame.outside, {ink.left, ink.top, ink.right, numbers[xAxis].bottom});
}

TEST(Axes, HaveWhatNumbersShareAboveTheFrameOrThem) {
    for (const double max : {1e9 + 1e4, 1e9 + 1.9e4}) {
        Document document = plain();
        document.axes[yAxis] = {.range = {1e9, max}};
        const PlacedFrame frame = placed(document);
        const PlacedAxis &axis = frame.axes[yAxis];
        ASSERT_TRUE(axis.common);
        const double top = axis.numbers.back().bounds().top;
        EXPECT_EQ(top < 0, max < 1e9 + 1.5e4) << "one stands at the upper end, the other doesn't";
        EXPECT_NEAR(axis.common->bounds().bottom, std::min(top, 0.0) - 5, 1e-9);
    }
}

static std::vector<double> numbersOf(const Document &document, AxisCode code) {
    std::vector<double> values;
    const PlacedFrame frame = placed(document);
    for (const PlacedNumber &number : frame.axes[code].numbers) values.push_back(number.value);
    return values;
}

TEST(Axes, HaveNoNumbersOnTheLinesOfOthers) {
    Document document = plain();
    document.axes[yAxis].increment = 1;
    document.frame.xAxisPos = 1;
    document.frame.yAxisPos = 4;
    EXPECT_EQ(numbersOf(document, xAxis), (std::vector<double>{0, 2, 6, 8, 10}));
    EXPECT_EQ(numbersOf(document, yAxis), (std::vector<double>{0, 2, 3, 4}));
    document.axes[yAxis].noLine = document.axes[xAxis].noLine = true;
    EXPECT_EQ(numbersOf(document, xAxis), (std::vector<double>{0, 2, 4, 6, 8, 10}));
    EXPECT_EQ(numbersOf(document, yAxis), (std::vector<double>{0, 1, 2, 3, 4}));
}

TEST(Axes, HaveNumbersOnlyMoreThanAPointFromTheEndsOfOtherLines) {
    for (const AxisCode code : {xAxis, yAxis})
        for (const bool inside : {false, true})
            for (double away = -2.05; away < 3; away += 0.25) {
                Document document = plain();
                for (Axis &axis : document.axes) {
                    axis.numbersInside = inside;
                    axis.insideTicks = false;
                    axis.increment = 2;
                }
                document.frame.xAxisPos = document.frame.yAxisPos = 2;
                const double at = code == xAxis ? (6.5 - away) / 25 : (5 - away) / 20;
                (code == xAxis ? document.frame.xAxisPos : document.frame.yAxisPos) =
                    inside ? (code == xAxis ? 4 : 10) - at : at;
                const std::vector<double> values = numbersOf(document, code);
                EXPECT_EQ(std::ranges::count(values, 2), away > 1) << code << inside << away;
            }
}

TEST(Axes, ReachAsFarAsTheirTicks) {
    const std::tuple<bool, bool, double> cases[] = {
        {true, false, 8}, {false, false, 0}, {true, true, 0}};
    for (const auto &[ticks, noLine, away] : cases) {
        Document document = plain();
        for (Axis &axis : document.axes)
            axis = {.outsideTicks = ticks, .noLine = noLine, .noNumbers = true};
        SCOPED_TRACE(away);
        expectNear(placed(document).outside, {-away, -away, 200 + away, 100 + away}, 1e-9);
    }
}

TEST(Axes, TellTimesWhereTheirCurvesDo) {
    for (const bool other : {false, true})
        for (const bool ofX : {false, true}) {
            Document document = plain();
            Table &table = document.sources[0].tables[0];
            for (Axis &axis : document.axes) axis = {.range = {0, 4 * 86400.0}};
            table.y[0].look.upperX = table.y[0].look.rightY = other;
            (ofX ? table.x : table.y[0]).isTime = true;
            const PlacedFrame frame = placed(document);
            for (const PlacedAxis &axis : frame.axes) {
                ASSERT_FALSE(axis.marks.numbers.empty());
                const bool its = axis.horizontal() == ofX &&
                                 (axis.code == upperXAxis || axis.code == rightYAxis) == other;
                const std::string text = plainTextOf(axis.marks.numbers.front().text);
                EXPECT_EQ(text, its ? "Jan 1" : "0") << axis.code << other << ofX;
            }
        }
}

TEST(Axes, HavePowersOfTenWhoseDigitsStandAtTheTick) {
    Document document = plain();
    for (Axis &axis : document.axes) axis = {.range = {1, 1e8}, .logarithmic = true};
    const PlacedFrame frame = placed(document);
    const double digit = -Typesetter().line(richTextOf("10"), numberSize).ink().top;
    for (const AxisCode code : {yAxis, rightYAxis})
        for (const PlacedNumber &number : frame.axes[code].numbers)
            EXPECT_NEAR(number.bounds().bottom - digit / 2,
                        100 - frame.scales[code].position(number.value), 0.01);
}

static Box titlesOf(const Document &document) {
    const std::vector<DrawnCurve> curves = drawnCurvesOf(document);
    const Typesetter typesetter;
    const PlacedFrame frame = frameOf(document, curves, typesetter);
    return inkOf([&](cairo_t *cr) { drawTitles(cr, frame, document, curves, typesetter); });
}

TEST(Titles, StandBesideTheNumbersOrAtTheEndsOfCrossingAxes) {
    Document document = plain();
    document.sources.clear();
    for (const AxisCode code : {upperXAxis, rightYAxis}) document.axes[code].range = {0, 4};
    for (Axis &axis : document.axes) axis.outsideTicks = true;
    const auto of = [&](AxisCode code) {
        Document titled = document;
        titled.axes[code].title = "Title";
        return titlesOf(titled);
    };
    const Box out = placed(document).outside;
    EXPECT_NEAR(of(xAxis).top, out.bottom + 7, 1);
    EXPECT_NEAR(of(upperXAxis).bottom, out.top - 7, 1);
    EXPECT_NEAR(of(yAxis).right, out.left - 7, 1);
    EXPECT_NEAR(of(rightYAxis).left, out.right + 7, 1);
    for (const AxisCode code : {xAxis, upperXAxis, yAxis, rightYAxis}) {
        EXPECT_NEAR((of(code).left + of(code).right) / 2,
                    isHorizontal(code) ? 100 : of(code).left + of(code).width() / 2, 1);
        EXPECT_EQ(of(code).width() > of(code).height(), isHorizontal(code));
    }

    for (const AxisCode code : {yAxis, rightYAxis}) { // straight upwards
        Document high = document;
        high.frame.yAxisLength = 500 / pointsPerCm;
        high.axes[code].title = "A title that is as long as all of the axis, and would lean far";
        EXPECT_NEAR(titlesOf(high).width(), of(code).width(), 4);
    }

    Document above = document; // with the title of the document over that of an axis
    above.title = above.axes[upperXAxis].title = "Title";
    EXPECT_NEAR(titlesOf(above).top, out.top - 2 * (7 + of(upperXAxis).height()), 1.5);
    above.axes[upperXAxis].title = "";
    EXPECT_NEAR((titlesOf(above).left + titlesOf(above).right) / 2, 100, 1);

    Document shared = document; // beside what the numbers have in common, or below it
    shared.axes[xAxis] = {.range = {1e9, 1.00001e9}, .title = "T", .outsideTicks = true};
    const PlacedFrame sharing = placed(shared);
    EXPECT_NEAR(titlesOf(shared).top, sharing.outside.bottom + 7, 1);
    shared.axes[xAxis].title = "A title that is as long as all of the axis";
    EXPECT_NEAR(titlesOf(shared).top, sharing.axes[xAxis].common->bounds().bottom + 7, 1);

    document.frame.xAxisPos = 1;
    document.frame.yAxisPos = 2.5;
    EXPECT_NEAR(of(xAxis).left, 200 + 2 * 8.25 + 3.5, 1);
    EXPECT_NEAR((of(xAxis).top + of(xAxis).bottom) / 2, 75, 1);
    EXPECT_NEAR(of(yAxis).bottom, -2 * 8.25 - 3.5, 1);
    EXPECT_NEAR((of(yAxis).left + of(yAxis).right) / 2, 50, 1);
    const double height = of(yAxis).height();
    document.axes[yAxis].title = document.title = "Title";
    EXPECT_NEAR(titlesOf(document).top, -2 * 8.25 - 3.5 - height - 7 - height, 1.5);

    for (const double position : {-100.0, 100.0}) { // no farther than the frame
        document.frame.xAxisPos = position;
        EXPECT_EQ(placed(document).line[xAxis], position < 0 ? 100 : 0);
    }
}

// The bars and caps of the only curve.
static std::vector<Drawn> barsOf(const Document &document) {
    const Placed placed(document);
    return drawnBy([&](cairo_t *cr) { drawErrorBars(cr, placed.curves[0], placed.frame); });
}

TEST(ErrorBars, ReachAsFarAsTheErrorsWithCapsAcross) {
    Document document = plain(); // 20 points for 1 of x, 25 for 1 of y
    std::vector<Column> &y = document.sources[0].tables[0].y;
    y.push_back(column("y +", {0.4, 0}));
    y.push_back(column("y -", {-0.8, 1}));
    y.push_back(column("dx", {0, 2}));
    y[0].look.xError = y[0].look.yError = true;
    std::multiset<std::string> want = {lineOf({20, 65}, {20, 95}), lineOf({18, 65}, {22, 65}),
                                       lineOf({18, 95}, {22, 95}), lineOf({60, 25}, {60, 50}),
                                       lineOf({58, 50}, {62, 50}), lineOf({20, 25}, {100, 25}),
                                       lineOf({20, 23}, {20, 27}), lineOf({100, 23}, {100, 27})};
    EXPECT_EQ(linesIn(barsOf(document), 1), want);

    // the mean (2, 2) of both, with errors of a half of the root of the sum of squares
    y[0].look.sum = 2;
    want = {lineOf({20, 50}, {60, 50}), lineOf({20, 48}, {20, 52}), lineOf({60, 48}, {60, 52})};
    y[0].look.yError = false;
    EXPECT_EQ(linesIn(barsOf(document), 1), want);

    document.sources[0].tables[0].x.values = {1, 1}; // bars that overlap are one
    y = {column("y", {2, 2.1}), column("y +", {1.5, 0.2}), column("y -", {-1.5, 0.2})};
    y[0].look.yError = true;
    EXPECT_EQ(linesIn(barsOf(document), 1).count(lineOf({20, 12.5}, {20, 87.5})), 1u);
}

TEST(ErrorBars, HaveCapsNoWiderThanTheSymbol) {
    Document document = plain();
    std::vector<Column> &y = document.sources[0].tables[0].y;
    y.push_back(column("y error", {0.4, 0}));
    y[0].look = {.yError = true, .symbols = true, .symbolSize = 2, .lineThickness = 0.1};
    for (int i = 0; i < 2 * symbolCount; ++i) {
        const int code = i % symbolCount;
        const int first = i < symbolCount ? code : 15; // a dot, under another symbol
        y[0].look.symbol = {first, i < symbolCount ? 0 : code, 0, 0};
        const auto reach = [](const std::vector<Drawn> &drawn) { // to the right of x = 20
            double most = 0;
            for (const Drawn &each : drawn)
                for (const Point &p : each.path)
                    if (!isBreak(p)) most = std::max(most, p.x - 20);
            return most;
        };
        const double half = reach(barsOf(document));
        const double symbol = reach(drawnBy([&](cairo_t *cr) {
                                  drawSymbol(cr, first, {20, 75}, 200, 1, Colour{}, true);
                                  if (code > 0) drawSymbol(cr, code, {20, 75}, 200, 1, {}, true);
                              })) /
                              100;
        EXPECT_NEAR(half, symbol, 0.01) << i;
    }
}
