#include "plotwerk/model/attributes.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/model/limits.h"
#include "plotwerk/model/structure.h"
#include "tests/plotwerk/model/documents.h"

#include <climits>
#include <cmath>
#include <functional>
#include <sstream>

using namespace plotwerk;

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
    const Set x = [](Document &d, double value) { placeText(d, {"t", value}); };
    const Set angle = [](Document &d, double value) { placeText(d, {"t", 0, 0, value}); };
    // name and setter; what is below the least, the least, the most, and what is above (NaN:
    // nothing)
    const std::tuple<const char *, Set, double, double, double, double> cases[] = {
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
    for (const auto &[name, set, below, least, most, above] : cases)
        for (const double value : {below, least, most, above}) {
            if (std::isnan(value)) continue;
            std::ostringstream reason;
            if (value < least || value > most) reason << name << " can't be " << value;
            if (reason.tellp() > 0 && least > -1e9 && most < 1e9)
                reason << ", only " << least << " to " << most;
            Document document = selectedOf(table({1}, {column("a", {1})}));
            const auto setIt = [&, &apply = set](Document &d) { apply(d, value); };
            EXPECT_EQ(refusalOf(document, setIt), reason.str()) << name << ' ' << value;
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
    const std::pair<PlacedText, const char *> steps[] = {
        {{"one", 0.5, 0.5, 0, false, false}, "one "},
        {{"two", 0.5, 0.5, 0, true, false}, "one two "},
        {{"other y", 0.5, 0.5, 0, true, true}, "one two other y "},
        {{"", 0.4, 0.5, 0, true, true}, "one two other y "},
        {{"", 0.5, 0.4, 0, true, true}, "one two other y "},
        {{"", 0.5, 0.5, 0, false, true}, "one two other y "},
        {{"", 0.5, 0.5, 0, true, true}, "one two "},
        {{"three", unset, unset, unset, false, false}, "two three "},
        {{"", 0.5, 0.5, 0, true, false}, "three "}};
    Document document;
    for (const auto &[text, want] : steps) {
        placeText(document, text);
        std::string all;
        for (const PlacedText &each : document.texts) all += each.text + ' ';
        EXPECT_EQ(all, want);
    }
    EXPECT_EQ(document.texts[0].angle, 0);
}

TEST(Texts, AreNoLongerThanTheirLimit) {
    Document document;
    document.texts.resize(1);
    for (std::string *text : {&document.title, &document.formula, &document.axes[rightYAxis].title,
                              &document.texts[0].text}) {
        text->assign(longestText, 'x');
        EXPECT_NO_THROW(requireWithinLimits(document));
        *text += 'x';
        EXPECT_THROW(requireWithinLimits(document), Refusal);
        text->clear();
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
    const auto onlyTable = [](Document &d) -> Table & { return d.sources[0].tables[0]; };
    EXPECT_GE(perPart([&](Document &d) { onlyTable(d).y.emplace_back(); }), sizeof(Column));
    EXPECT_NEAR(perPart([&](Document &d) { onlyTable(d).x.values.push_back(1); }), 8, 2);
    EXPECT_NEAR(perPart([&](Document &d) { onlyTable(d).y[0].values.push_back(1); }), 8, 2);
}
