#include "plotwerk/model/attributes.h"

#include "plotwerk/files/documentFile.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/selection.h"
#include "tests/plotwerk/model/documents.h"

#include <climits>
#include <cmath>
#include <limits>
#include <sstream>

using namespace plotwerk;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

std::string saved(const Document &document) {
    std::ostringstream stream;
    writeDocument(stream, document, false);
    return stream.str();
}

const LookSwitches everySwitch{.line = 0,
                               .stepped = 1,
                               .yError = 1,
                               .xError = 1,
                               .dashed = 1,
                               .filled = 1,
                               .upperX = 1,
                               .rightY = 1,
                               .marker = 1,
                               .symbols = 1};
const LookValues everyValue{.sum = 3,
                            .interpolationPoints = 7,
                            .interpolationType = 1,
                            .symbolSize = 5,
                            .symbolInc = 2,
                            .symbol = {4, 3, 2, 1},
                            .lineThickness = 0.25,
                            .dashLength = {9, 8, 7, 6},
                            .lineColour = {.1, .2, .3, .4},
                            .fillColour = {.5, .6, .7, .8}};
const FrameChange everyLength{.xAxisLength = 10,
                              .yAxisLength = 20,
                              .tickLength = 0.5,
                              .axisThickness = 2,
                              .yAxisPos = 1,
                              .xAxisPos = -1,
                              .multiDimFit = 1,
                              .noLineOnReverse = 1};
const AxisChange everyAxisSetting{.increment = 0.5,
                                  .ticks = 4,
                                  .precision = 2,
                                  .logarithmic = 1,
                                  .insideTicks = 0,
                                  .outsideTicks = 1,
                                  .majorGrid = 1,
                                  .minorGrid = 1,
                                  .exponents = 1,
                                  .labelAngle = 45,
                                  .noLine = 1,
                                  .numbersInside = 1,
                                  .noNumbers = 1,
                                  .arrow = 1,
                                  .logTicksAt = 2,
                                  .logNumbersAt = 3,
                                  .reversed = 1,
                                  .labelDensity = 2};

} // namespace

// 2, -1 and NaN, which the changes begin with, leave a setting alone.
TEST(Attributes, GoToTheSelectedCurvesAndStayWhenLeftAlone) {
    Document document = sample();
    selectByIndex(document, {1, 2}, false);
    changeLook(document, everySwitch);
    changeLook(document, everyValue);
    changeFrame(document, everyLength);
    for (int axis = 1; axis <= 4; ++axis) changeAxis(document, axis, everyAxisSetting);
    for (const CurveRef &curve : curvesOf(document)) {
        const CurveLook &look = columnOf(document, curve).look;
        const bool chosen = curve.index == 1 || curve.index == 2;
        EXPECT_EQ(look.line, !chosen) << curve.index;
        EXPECT_EQ(look.symbols, chosen) << curve.index;
        EXPECT_EQ(look.symbol[3], chosen ? 1 : 0) << curve.index;
        EXPECT_EQ(look.dashLength[2], chosen ? 7 : 0) << curve.index;
        EXPECT_EQ(look.fillColour.blue, chosen ? 0.7 : 0.8) << curve.index;
    }

    const std::string before = saved(document);
    changeLook(document, LookSwitches{});
    changeLook(document, LookValues{});
    changeFrame(document, {});
    for (int axis = 1; axis <= 4; ++axis) changeAxis(document, axis, {});
    EXPECT_EQ(saved(document), before);
}

// And then the sensible part of the change isn't taken over either.
TEST(Attributes, ThatMakeNoSenseAreRefused) {
    Document document = selectedOf(table({1}, {column("a", {1})}));
    const std::string before = saved(document);
    const auto expectRefused = [&](const auto &cases, auto work) {
        for (const auto &c : cases) {
            EXPECT_EQ(refusalOf(document, [&](auto &d) { work(d, c.first); }), c.second);
            EXPECT_EQ(saved(document), before) << c.second;
        }
    };
    const std::pair<LookSwitches, const char *> switches[] = {
        {{.line = 0, .stepped = 3}, "stepped can't be 3"},
        {{.line = 0, .symbols = -1}, "sym can't be -1"}};
    expectRefused(switches, [](auto &d, const auto &change) { changeLook(d, change); });

    const std::pair<LookValues, const char *> looks[] = {
        {{.sum = -2}, "sum can't be -2"},
        {{.sum = 5, .interpolationPoints = -1}, "interpolationPoints can't be -1"},
        {{.sum = 5, .interpolationType = 2}, "interpolationType can't be 2"},
        {{.sum = 5, .symbolSize = 200.5}, "symbolSize can't be 200.5"},
        {{.sum = 5, .dashLength = {1001}}, "a dash length can't be 1001"},
        {{.sum = 5, .lineThickness = -1}, "lineThickness can't be -1"},
        {{.sum = 5, .lineColour = {.red = -0.1}}, "a part of a colour can't be -0.1"},
        {{.sum = 5, .interpolationPoints = 2e6}, "interpolationPoints can't be 2e+06"},
        {{.sum = 5, .symbolInc = 0}, "symbolInc can't be 0"},
        {{.sum = 5, .symbol = {0, 0, 0, -2}}, "a symbol can't be -2"},
        {{.sum = 5, .lineThickness = infinity}, "lineThickness can't be inf"},
        {{.sum = 5, .dashLength = {1, 1, 1, -0.5}}, "a dash length can't be -0.5"},
        {{.sum = 5, .fillColour = {0, 0, 0, 1.5}}, "a part of a colour can't be 1.5"}};
    expectRefused(looks, [](auto &d, const auto &change) { changeLook(d, change); });

    const std::pair<FrameChange, const char *> frames[] = {
        {{.xAxisLength = 5, .yAxisLength = -infinity}, "yAxisLength can't be -inf"},
        {{.xAxisLength = 0.9}, "xAxisLength can't be 0.9"},
        {{.xAxisLength = 5, .yAxisLength = 101}, "yAxisLength can't be 101"},
        {{.xAxisLength = 5, .axisThickness = 21}, "axisThickness can't be 21"},
        {{.xAxisLength = 5, .tickLength = -0.1}, "tickLength can't be -0.1"},
        {{.xAxisLength = 5, .multiDimFit = 7}, "multiDimFit can't be 7"}};
    expectRefused(frames, changeFrame);

    const std::pair<AxisChange, const char *> axes[] = {
        {{.increment = infinity}, "inc can't be inf"},
        {{.increment = -1}, "inc can't be -1"},
        {{.increment = 5, .precision = 17}, "prec can't be 17"},
        {{.increment = 5, .minorGrid = 4}, "minorgrid can't be 4"},
        {{.increment = 5, .labelAngle = 361}, "labelAngle can't be 361"},
        {{.increment = 5, .labelAngle = -361}, "labelAngle can't be -361"},
        {{.increment = 5, .logNumbersAt = 601}, "lognumberAt can't be 601"},
        {{.increment = 5, .labelDensity = 11}, "labelDensity can't be 11"},
        {{.increment = 5, .ticks = 101}, "ticks can't be 101"},
        {{.increment = 5, .precision = INT_MIN}, "prec can't be -2.14748e+09"},
        {{.increment = 5, .logTicksAt = 0}, "logticksAt can't be 0"},
        {{.increment = 5, .labelDensity = 0}, "labelDensity can't be 0"}};
    expectRefused(axes, [](auto &d, const auto &change) { changeAxis(d, 1, change); });

    const std::pair<int, const char *> numbers[] = {{0, "no axis has the number 0"},
                                                    {5, "no axis has the number 5"}};
    expectRefused(numbers, [](auto &d, int axis) { changeAxis(d, axis, {.increment = 5}); });

    const std::pair<PlacedText, const char *> texts[] = {
        {{"t", infinity}, "at_X can't be inf"}, {{"t", 0, 0, -infinity}, "angle can't be -inf"}};
    expectRefused(texts, placeText);

    Document unselected = sample();
    EXPECT_THROW(changeLook(unselected, LookSwitches{}), Refusal);
}

TEST(Attributes, MayStandAtTheirLimits) {
    Document document = selectedOf(table({1}, {column("a", {1})}));
    changeLook(document, {.sum = 0,
                          .interpolationPoints = 0,
                          .interpolationType = 0,
                          .symbolSize = 0,
                          .symbolInc = 1,
                          .symbol = {0, 0, 0, 0},
                          .lineThickness = 0,
                          .dashLength = {0, 0, 0, 0},
                          .lineColour = {0, 0, 0, 0},
                          .fillColour = {0, 0, 0, 0}});
    changeLook(document, {.sum = INT_MAX,
                          .interpolationPoints = 1e6,
                          .interpolationType = 1,
                          .symbolSize = 200,
                          .symbolInc = INT_MAX,
                          .symbol = {INT_MAX, 0, 0, 0},
                          .lineThickness = 50,
                          .dashLength = {1000, 0, 0, 0},
                          .lineColour = {1, 1, 1, 1},
                          .fillColour = {1, 1, 1, 1}});
    changeFrame(document,
                {.xAxisLength = 1, .yAxisLength = 1, .tickLength = 0, .axisThickness = 0});
    changeFrame(document,
                {.xAxisLength = 100, .yAxisLength = 100, .tickLength = 100, .axisThickness = 20});
    changeAxis(document, 1,
               {.increment = 1e-300,
                .ticks = 0,
                .precision = 0,
                .labelAngle = -360,
                .logTicksAt = 1,
                .logNumbersAt = 1,
                .labelDensity = 0.1});
    changeAxis(document, 1,
               {.increment = 1e300,
                .ticks = 100,
                .precision = 16,
                .labelAngle = 360,
                .logTicksAt = 600,
                .logNumbersAt = 600,
                .labelDensity = 10});
    EXPECT_EQ(document.sources[0].tables[0].y[0].look.lineThickness, 50);
    EXPECT_EQ(document.frame.xAxisLength, 100);
    EXPECT_EQ(document.axes[xAxis].logNumbersAt, 600);
}

TEST(Attributes, GoBackToAutomatic) {
    Document document;
    changeAxis(document, 2, {.increment = 3});
    changeAxis(document, 2, {.increment = 0});
    EXPECT_TRUE(std::isnan(document.axes[yAxis].increment));

    changeFrame(document, {.yAxisPos = 2, .xAxisPos = -2});
    changeFrame(document, {.yAxisPos = infinity});
    EXPECT_TRUE(std::isnan(document.frame.yAxisPos) && document.frame.xAxisPos == -2);
}

TEST(PlacedTexts, HaveOnePlaceEach) {
    Document document;
    placeText(document, {"one", 0.5, 0.5, 0, false, false});
    placeText(document, {"two", 0.5, 0.5, 0, true, false});
    placeText(document, {"other y", 0.5, 0.5, 0, true, true});
    ASSERT_EQ(document.texts.size(), 3U);
    placeText(document, {"", 0.5, 0.5, 0, true, true});
    placeText(document, {"three", unset, unset, unset, false, false});
    ASSERT_EQ(document.texts.size(), 2U);
    EXPECT_EQ(document.texts[0].text, "two");
    placeText(document, {"", 0.5, 0.5, 0, true, false});
    placeText(document, {"", 0.25, 0.5, 0, true, false});
    ASSERT_EQ(document.texts.size(), 1U);
    EXPECT_TRUE(document.texts[0].text == "three" && document.texts[0].angle == 0);
}
