#include "plotwerk/model/attributes.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/model/limits.h"
#include "plotwerk/model/structure.h"
#include "tests/plotwerk/model/documents.h"

#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <sstream>

using namespace plotwerk;

static constexpr double infinity = std::numeric_limits<double>::infinity();

using Set = std::function<void(Document &, double)>;

template<class Change, class Number>
static Set set(void (*apply)(Document &, const Change &), Number Change::*setting) {
    return [=](Document &document, double value) {
        Change change;
        change.*setting = static_cast<Number>(value);
        apply(document, change);
    };
}

static void changeX(Document &document, const AxisChange &change) {
    changeAxis(document, 1, change);
}

TEST(Attributes, MayStandAtTheirLimitsNotBeyond) {
    const Set symbol = [](Document &d, double value) {
        changeLook(d, {.symbol = {0, 0, 0, static_cast<int>(value)}});
    };
    const Set dashLength = [](Document &d, double value) {
        changeLook(d, {.dashLength = {1, 1, 1, value}});
    };
    const Set red = [](Document &d, double value) {
        changeLook(d, {.lineColour = {.red = value}});
    };
    const Set opacity = [](Document &d, double value) {
        changeLook(d, {.fillColour = {0, 0, 0, value}});
    };
    const Set x = [](Document &d, double value) { placeText(d, {"t", value}); };
    const Set angle = [](Document &d, double value) { placeText(d, {"t", 0, 0, value}); };
    const struct {
        const char *name;
        Set set;
        double below, least, most, above; // NaN: no such number
    } cases[] = {
        {"stepped", set(changeLook, &LookSwitches::stepped), -1, 0, 1, 3},
        {"sum", set(changeLook, &LookValues::sum), -2, 0, INT_MAX, nan_},
        {"interpolationPoints", set(changeLook, &LookValues::interpolationPoints), -1, 0, 1e6, 2e6},
        {"interpolationType", set(changeLook, &LookValues::interpolationType), -2, 0, 1, 2},
        {"symbolSize", set(changeLook, &LookValues::symbolSize), -0.5, 0, 200, 200.5},
        {"symbolInc", set(changeLook, &LookValues::symbolInc), 0, 1, INT_MAX, nan_},
        {"lineThickness", set(changeLook, &LookValues::lineThickness), -1, 0, 50, infinity},
        {"a symbol", symbol, -2, 0, 15, 16},
        {"a dash length", dashLength, -0.5, 0, 1000, 1001},
        {"a part of a colour", red, -0.1, 0, 1, 1.5},
        {"a part of a colour", opacity, -0.1, 0, 1, 1.5},
        {"xAxisLength", set(changeFrame, &FrameChange::xAxisLength), 0.9, 1, 100, 101},
        {"yAxisLength", set(changeFrame, &FrameChange::yAxisLength), -infinity, 1, 100, 101},
        {"tickLength", set(changeFrame, &FrameChange::tickLength), -0.1, 0, 100, 101},
        {"axisThickness", set(changeFrame, &FrameChange::axisThickness), -1, 0, 20, 21},
        {"multiDimFit", set(changeFrame, &FrameChange::multiDimFit), -1, 0, 1, 7},
        {"inc", set(changeX, &AxisChange::increment), -1, 1e-300, 1e300, infinity},
        {"ticks", set(changeX, &AxisChange::ticks), -2, 0, 100, 101},
        {"prec", set(changeX, &AxisChange::precision), INT_MIN, 0, 16, 17},
        {"minorgrid", set(changeX, &AxisChange::minorGrid), -1, 0, 1, 4},
        {"labelAngle", set(changeX, &AxisChange::labelAngle), -361, -360, 360, 361},
        {"logticksAt", set(changeX, &AxisChange::logTicksAt), 0, 1, 600, 601},
        {"lognumberAt", set(changeX, &AxisChange::logNumbersAt), 0, 1, 600, 601},
        {"labelDensity", set(changeX, &AxisChange::labelDensity), 0, 0.1, 10, 11},
        {"at_X", x, -infinity, -1e308, 1e308, infinity},
        {"angle", angle, -infinity, -1e308, 1e308, infinity}};
    for (const auto &c : cases) {
        Document document = selectedOf(table({1}, {column("a", {1})}));
        const auto refusalOfValue = [&](double value) {
            return refusalOf(document, [&](Document &d) { c.set(d, value); });
        };
        for (const double value : {c.least, c.most})
            EXPECT_EQ(refusalOfValue(value), "") << c.name << ' ' << value;
        for (const double value : {c.below, c.above}) {
            if (std::isnan(value)) continue;
            std::ostringstream reason;
            reason << c.name << " can't be " << value;
            if (c.least > -1e9 && c.most < 1e9) reason << ", only " << c.least << " to " << c.most;
            EXPECT_EQ(refusalOfValue(value), reason.str());
        }
    }
    Document document;
    for (const int number : {0, 5})
        EXPECT_EQ(refusalOf(document, [&](Document &d) { changeAxis(d, number, {}); }),
                  "no axis has the number " + std::to_string(number));
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
    for (const PlacedText &elsewhere : {PlacedText{"", 0.4, 0.5, 0, true, true},
                                        {"", 0.5, 0.4, 0, true, true},
                                        {"", 0.5, 0.5, 0, false, true}}) {
        placeText(document, elsewhere);
        ASSERT_EQ(document.texts.size(), 3U);
    }
    placeText(document, {"", 0.5, 0.5, 0, true, true});
    placeText(document, {"three", unset, unset, unset, false, false});
    ASSERT_EQ(document.texts.size(), 2U);
    EXPECT_EQ(document.texts[0].text, "two");
    placeText(document, {"", 0.5, 0.5, 0, true, false});
    placeText(document, {"", 0.25, 0.5, 0, true, false});
    ASSERT_EQ(document.texts.size(), 1U);
    EXPECT_TRUE(document.texts[0].text == "three" && document.texts[0].angle == 0);
}

TEST(Texts, AreNoLongerThanTheirLimit) {
    std::string &(*const texts[])(Document &) = {
        [](Document &d) -> std::string & { return d.title; },
        [](Document &d) -> std::string & { return d.formula; },
        [](Document &d) -> std::string & { return d.axes[rightYAxis].title; },
        [](Document &d) -> std::string & { return d.texts.emplace_back().text; }};
    for (const auto &text : texts) {
        Document document;
        std::string &filled = text(document).assign(longestText, 'x');
        EXPECT_NO_THROW(requireWithinLimits(document));
        filled += 'x';
        EXPECT_THROW(requireWithinLimits(document), Refusal);
    }
}

TEST(Documents, TakeTheMemoryOfAllTheirParts) {
    const std::string name(100, 'n');
    const auto perPart = [](const std::function<void(Document &)> &add) {
        Document document;
        document.sources.push_back({"", {{}}});
        document.sources[0].tables[0].y.resize(1);
        const double before = bytesOf(document);
        for (int i = 0; i < 1000; ++i) add(document);
        return (bytesOf(document) - before) / 1000;
    };
    EXPECT_GE(perPart([](Document &d) { d.parameters.emplace_back(); }), sizeof(FitParameter));
    EXPECT_GE(perPart([&](Document &d) { d.texts.push_back({name}); }), sizeof(PlacedText) + 100);
    EXPECT_GE(perPart([&](Document &d) { d.sources.push_back({name, {}}); }), sizeof(Source) + 100);
    EXPECT_GE(perPart([](Document &d) { d.sources[0].tables.emplace_back(); }), sizeof(Table));
    EXPECT_GE(perPart([](Document &d) { d.sources[0].tables[0].y.emplace_back(); }),
              sizeof(Column));
    for (const bool ofX : {true, false}) {
        const double each = perPart([&](Document &d) {
            Table &table = d.sources[0].tables[0];
            (ofX ? table.x : table.y[0]).values.push_back(1);
        });
        EXPECT_NEAR(each, sizeof(double), 2);
    }
}
