#include "plotwerk/model/attributes.h"

#include "plotwerk/files/documentFile.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/selection.h"
#include "tests/plotwerk/model/documents.h"

#include <climits>
#include <cmath>
#include <functional>
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

const LookValues everyValue{.sum = 3,
                            .interpolationPoints = 7,
                            .interpolationType = 1,
                            .symbolSize = 5,
                            .symbolInc = 2,
                            .symbol = {4, 3, 2, 1},
                            .lineThickness = 0.25,
                            .dashLength = {9, 8, 7, 6},
                            .lineColour = {0.1, 0.2, 0.3, 0.4},
                            .fillColour = {0.5, 0.6, 0.7, 0.8}};

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

TEST(Attributes, GoToTheSelectedCurvesOnly) {
    Document document = sample();
    selectByIndex(document, {1, 2}, false);
    changeLook(document, LookSwitches{.line = 0, .stepped = 1, .symbols = 1});
    changeLook(document, everyValue);
    for (const CurveRef &curve : curvesOf(document)) {
        const CurveLook &look = columnOf(document, curve).look;
        const bool chosen = curve.index == 1 || curve.index == 2;
        EXPECT_EQ(look.line, !chosen) << curve.index;
        EXPECT_EQ(look.stepped, chosen) << curve.index;
        EXPECT_EQ(look.symbol[3], chosen ? 1 : 0) << curve.index;
        EXPECT_EQ(look.dashLength[2], chosen ? 7 : 0) << curve.index;
        EXPECT_EQ(look.fillColour.blue, chosen ? 0.7 : 0.8) << curve.index;
    }
    EXPECT_TRUE(document.changed);

    selectByIndex(document, {0, 0}, false);
    EXPECT_NE(saved(document).find("\"lineThickness\":0.25"), std::string::npos);
}

// 2, -1 and NaN, which the changes begin with.
TEST(Attributes, ThatAreLeftAloneStay) {
    Document document = sample();
    selectByIndex(document, {0, -1}, false);
    changeLook(document, LookSwitches{1, 1, 1, 1, 1, 1, 1, 1, 1, 1});
    changeLook(document, everyValue);
    changeFrame(document, {10, 20, 0.5, 2, 1, -1, 1, 1});
    for (int axis = 1; axis <= 4; ++axis) changeAxis(document, axis, everyAxisSetting);
    const std::string before = saved(document);

    changeLook(document, LookSwitches{});
    changeLook(document, LookValues{});
    changeFrame(document, {});
    for (int axis = 1; axis <= 4; ++axis) changeAxis(document, axis, {});
    EXPECT_EQ(saved(document), before);
}

TEST(Attributes, ThatMakeNoSenseAreRefused) {
    using Work = std::function<void(Document &)>;
    const auto look = [](auto member, auto value) -> Work {
        return [=](Document &document) {
            LookValues values{.sum = 5}; // the sensible part isn't taken over either
            values.*member = value;
            changeLook(document, values);
        };
    };
    const auto frame = [](auto member, auto value) -> Work {
        return [=](Document &document) {
            FrameChange change{.xAxisLength = 5};
            change.*member = value;
            changeFrame(document, change);
        };
    };
    const auto axis = [](auto member, auto value) -> Work {
        return [=](Document &document) {
            AxisChange change{.increment = 5};
            change.*member = value;
            changeAxis(document, 1, change);
        };
    };
    const auto axisNumber = [](int number) -> Work {
        return [=](Document &document) { changeAxis(document, number, {.increment = 5}); };
    };
    const struct {
        Work work;
        const char *reason;
    } cases[] = {
        {[](Document &d) { changeLook(d, LookSwitches{.line = 0, .stepped = 3}); },
         "stepped can't be 3"},
        {[](Document &d) { changeLook(d, LookSwitches{.line = 0, .symbols = -1}); },
         "sym can't be -1"},
        {look(&LookValues::interpolationPoints, 2e6), "interpolationPoints can't be 2e+06"},
        {look(&LookValues::interpolationType, 2), "interpolationType can't be 2"},
        {look(&LookValues::symbolSize, -1.0), "symbolSize can't be -1"},
        {look(&LookValues::symbolInc, 0), "symbolInc can't be 0"},
        {look(&LookValues::symbol, std::array{0, 0, 0, -2}), "a symbol can't be -2"},
        {look(&LookValues::lineThickness, infinity), "lineThickness can't be inf"},
        {look(&LookValues::dashLength, std::array{1.0, 1.0, 1.0, -0.5}),
         "a dash length can't be -0.5"},
        {look(&LookValues::lineColour, Colour{0, 0, 0, 1.5}), "a part of a colour can't be 1.5"},
        {look(&LookValues::fillColour, Colour{-0.1, 0, 0, 1}), "a part of a colour can't be -0.1"},
        {frame(&FrameChange::yAxisLength, -infinity), "yAxisLength can't be -inf"},
        {frame(&FrameChange::yAxisLength, 0.0), "yAxisLength can't be 0"},
        {frame(&FrameChange::axisThickness, -1.0), "axisThickness can't be -1"},
        {frame(&FrameChange::multiDimFit, 7), "multiDimFit can't be 7"},
        {axis(&AxisChange::increment, -1.0), "inc can't be -1"},
        {axis(&AxisChange::increment, infinity), "inc can't be inf"},
        {axis(&AxisChange::ticks, 101), "ticks can't be 101"},
        {axis(&AxisChange::precision, INT_MIN), "prec can't be -2.14748e+09"},
        {axis(&AxisChange::arrow, INT_MAX), "arrow can't be 2.14748e+09"},
        {axis(&AxisChange::logTicksAt, 0), "logticksAt can't be 0"},
        {axis(&AxisChange::labelDensity, 0.0), "labelDensity can't be 0"},
        {axisNumber(0), "no axis has the number 0"},
        {axisNumber(5), "no axis has the number 5"},
        {[](Document &d) {
             placeText(d, {"t", infinity, 0, 0, false, false});
         },
         "at_X can't be inf"},
        {[](Document &d) {
             placeText(d, {"t", 0, 0, -infinity, false, false});
         },
         "angle can't be -inf"},
    };
    Document document = selectedOf(table({1}, {column("a", {1})}));
    const std::string before = saved(document);
    for (const auto &c : cases) {
        EXPECT_EQ(refusalOf(document, c.work), c.reason);
        EXPECT_EQ(saved(document), before) << c.reason;
    }
    Document unselected = sample();
    EXPECT_EQ(refusalOf(unselected, [](Document &d) { changeLook(d, LookSwitches{}); }),
              "no curve is selected");
}

TEST(Attributes, GoBackToAutomatic) {
    Document document;
    changeAxis(document, 2, {.increment = 3});
    EXPECT_EQ(document.axes[yAxis].increment, 3);
    changeAxis(document, 2, {.increment = 0});
    EXPECT_TRUE(std::isnan(document.axes[yAxis].increment));

    changeFrame(document, {.yAxisPos = 2, .xAxisPos = -2});
    changeFrame(document, {.yAxisPos = infinity});
    EXPECT_TRUE(std::isnan(document.frame.yAxisPos));
    EXPECT_EQ(document.frame.xAxisPos, -2);
}

TEST(PlacedTexts, HaveOnePlaceEach) {
    Document document;
    placeText(document, {"one", 0.5, 0.5, 0, false, false});
    placeText(document, {"two", 0.5, 0.5, 0, true, false});
    placeText(document, {"three", unset, unset, unset, false, false});
    ASSERT_EQ(document.texts.size(), 2U);
    EXPECT_EQ(document.texts[0].text, "two");
    EXPECT_EQ(document.texts[1].text, "three");
    EXPECT_EQ(document.texts[1].angle, 0);

    placeText(document, {"", 0.5, 0.5, 0, true, false});
    placeText(document, {"", 0.25, 0.5, 0, true, false});
    ASSERT_EQ(document.texts.size(), 1U);
    EXPECT_EQ(document.texts[0].text, "three");
}
