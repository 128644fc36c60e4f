#include "plotwerk/drawing/axisNumbers.h"
#include "plotwerk/drawing/numberText.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>
#include <complex>

using namespace plotwerk;

namespace {

std::string joined(const AxisMarks &marks) {
    std::string all;
    for (const AxisNumber &number : marks.numbers)
        all.append(all.empty() ? "" : " ").append(plainTextOf(number.text));
    return all;
}

// The numbers, and what they have in common.
std::string told(const AxisMarks &marks) {
    const std::string common = plainTextOf(marks.common);
    return joined(marks) + (common.empty() ? "" : " | " + common);
}

// The box of a number, all turned so that it is upright.
Box turnedBack(const PlacedNumber &number) {
    // y runs downwards, so that angles run clockwise
    const std::complex<double> turn = std::polar(1.0, number.angle * G_PI / 180);
    const std::complex<double> middle = turn * std::complex(number.middle.x, number.middle.y);
    return {middle.real() - number.width / 2, middle.imag() - number.height / 2,
            middle.real() + number.width / 2, middle.imag() + number.height / 2};
}

AxisMarks marksFor(const Axis &axis, Range range) {
    return marksBeside(axis, scaleOf(axis, range, 340), false, Side::below, Typesetter());
}

} // namespace

TEST(Scale, ReplacesLimitsThatCannotBeDrawn) {
    const struct {
        double min, max;
        bool logarithmic;
        double wantMin, wantMax;
    } cases[] = {
        {unset, unset, false, 0, 1},
        {unset, unset, true, 1, 10},
        {5, 5, false, 4.5, 5.5},
        {0, 0, false, -1, 1},
        {3, unset, false, 3, 4},
        {unset, 3, false, 2, 3},
        {7, 2, false, 2, 7},
        {-3, 100, true, 0.1, 100},
        {-3, -1, true, 1, 10},
        {-INFINITY, INFINITY, false, -8e307, 8e307},
        {-5, -5, false, -5.5, -4.5},
        {0, 1e-300, false, -1e-290, 1e-290},
        {unset, 0, true, 1, 10},
        {1e-300, 1e-300, false, -1e-290, 1e-290},
        {0, 100, true, 0.1, 100},
        {1, 1 + 1e-14, false, 0.9, 1.1},
        {5, unset, true, 5, 50},
        {1, 1 + 2e-14, false, 1, 1 + 2e-14},
        {1, INFINITY, true, 1, 8e307},
        {INFINITY, INFINITY, true, 8e306, 8e307},
        {5e-324, 1, true, 1e-307, 1},
        {5e-324, 5e-324, true, 1e-307, 1e-306},
        {5, 5, true, 5 / std::sqrt(10), 5 * std::sqrt(10)},
        {1, 1 + 2e-13, true, 1, 1 + 2e-13},
    };
    for (const auto &c : cases) {
        Axis axis;
        axis.logarithmic = c.logarithmic;
        const Scale scale = scaleOf(axis, {c.min, c.max}, 100);
        EXPECT_NEAR(scale.min, c.wantMin, 1e-9 * std::abs(c.wantMin)) << c.min << ".." << c.max;
        EXPECT_NEAR(scale.max, c.wantMax, 1e-9 * std::abs(c.wantMax)) << c.min << ".." << c.max;
    }
}

TEST(Increments, AreUsedWhereTheirTicksCanBeToldApart) {
    const struct {
        Range range;
        double length, increment;
        bool want;
    } cases[] = {{{0, 100}, 100, 2, true}, // two points between ticks
                 {{0, 100}, 100, 1.99, false},
                 {{-50, 50}, 100, 1.99, false},
                 {{0, 100}, 4000, 0.1, true}, // a thousand ticks
                 {{0, 100}, 4000, 0.099, false},
                 {{0, 100}, 100, 1e5, true}, // hardly one
                 {{-50, 50}, 100, 1e5, true},
                 {{0, 100}, 100, 1.01e5, false},
                 {{9e15, 9e15 + 100}, 100, 10, true}, // whose multiples are whole
                 {{9e15, 9e15 + 100}, 100, 8, false},
                 {{-9e15 - 100, -9e15}, 100, 8, false},
                 {{0, 100}, 100, 0, false},
                 {{0, 100}, 100, -2, false},
                 {{0, 100}, 100, unset, false}};
    for (const auto &c : cases)
        EXPECT_EQ(isUsableIncrement(c.increment, scaleOf({}, c.range, c.length)), c.want)
            << c.range.min << ' ' << c.length << ' ' << c.increment;
}

TEST(Scale, PlacesValues) {
    const struct {
        Range range;
        bool logarithmic, reversed;
        double value, position;
    } cases[] = {{{2, 4}, false, false, 3, 50},
                 {{2, 4}, false, true, 3.5, 25},
                 {{4, 2}, false, false, 2.5, 75}, // descending limits
                 {{4, 2}, false, true, 2.5, 25},
                 {{-8e307, 8e307}, false, false, 4e307, 75},
                 {{1, 1000}, true, true, 10, 200.0 / 3},
                 {{1000, 1}, true, false, 10, 200.0 / 3},
                 {{1, 100}, true, false, 0.1, -50},
                 {{1e-300, 1e300}, true, false, 1, 50},
                 {{1e5, 1e5 * (1 + 2e-9)}, true, false, 1e5 * (1 + 1e-9), 50}};
    for (const auto &c : cases) {
        Axis axis;
        axis.logarithmic = c.logarithmic;
        axis.reversed = c.reversed;
        const Scale scale = scaleOf(axis, c.range, 100);
        EXPECT_NEAR(scale.position(c.value), c.position, c.range.min < 1e5 ? 1e-9 : 0.01);
        EXPECT_NEAR(scale.value(c.position) / c.value, 1, 1e-12) << c.value;
    }
    Axis axis;
    EXPECT_EQ(scaleOf(axis, {2, 4}, 100).position(1e308), 1e12);
    EXPECT_TRUE(std::isnan(scaleOf(axis, {2, 4}, 100).position(unset)));
    axis.logarithmic = true;
    EXPECT_TRUE(std::isnan(scaleOf(axis, {1, 100}, 100).position(0)));
}

TEST(Ticks, AreAtRoundNumbersWithCommonDecimals) {
    const auto linear = [](Axis &) {};
    const auto logarithmic = [](Axis &axis) { axis.logarithmic = true; };
    const struct {
        Range range;
        void (*change)(Axis &);
        const char *want;
    } cases[] = {
        {{-0.3, 0.3}, linear, "\u22120.3 \u22120.2 \u22120.1 0.0 0.1 0.2 0.3"},
        {{0.13, 9.7}, linear, "1 2 3 4 5 6 7 8 9"},
        {{0, 4e6}, linear, "0 1 2 3 4 | \u00d7106"},
        {{-1e-7, 5e-8},
         linear,
         "\u22121.0 \u22120.8 \u22120.6 \u22120.4 \u22120.2 0.0 0.2 0.4 | \u00d710\u22127"},
        {{1e6 - 1e-6, 1e6 + 1e-6},
         linear,
         "\u22121.0 \u22120.5 0.0 0.5 1.0 | \u00d710\u22126 + 1000000"},
        {{1700000000, 1700003300}, linear, "0 500 1000 1500 2000 2500 3000 | + 1.7\u00d7109"},
        {{1.2345e9, 1.2346e9},
         linear,
         "1.23450 1.23452 1.23454 1.23456 1.23458 1.23460 | \u00d7109"},
        {{-2, 99.9999}, linear, "0 20 40 60 80 100"},
        {{100, 99999.99}, logarithmic, "100 1000 10000 100000"},
        {{0.01, 1000},
         [](Axis &a) { a.logarithmic = true, a.precision = 1; },
         "0.01 0.1 1.0 10.0 100.0 1000.0"},
        {{5, 5}, linear, "4.6 4.8 5.0 5.2 5.4"},
        {{0.01, 1000}, logarithmic, "10\u22122 10\u22121 100 101 102 103"},
        {{1, 1e6}, logarithmic, "100 101 102 103 104 105 106"},
        {{1, 100},
         [](Axis &axis) { axis.logarithmic = axis.exponents = true, axis.logNumbersAt = 1; },
         "100 101 102"},
        {{2, 8}, logarithmic, "2 3 4 5 6 7 8"},
        {{15, 900}, logarithmic, "20 30 50 70 100 200 300 500 700"},
        {{15, 95}, [](Axis &a) { a.logarithmic = true, a.labelAngle = 45; }, "20 30 50 70"},
        {{1, 1001}, logarithmic, "1 10 100 1000"},
        {{1, 10000}, logarithmic, "100 101 102 103 104"},
        {{0.1, 80}, logarithmic, "0.1 1 10"},
        {{1e-300, 1e300}, logarithmic, "10\u2212300 10\u2212200 10\u2212100 100 10100 10200 10300"},
        {{0, 5}, [](Axis &axis) { axis.increment = 2.5, axis.precision = 3; }, "0.000 2.500 5.000"},
        {{-1.1, 1.1}, [](Axis &axis) { axis.precision = 0; }, "\u22121 0 1"},
        {{0, 0.1}, [](Axis &axis) { axis.precision = 0; }, "0.00 0.02 0.04 0.06 0.08 0.10"},
        {{0, 15}, [](Axis &a) { a.exponents = true; }, "0 0.5\u00d7101 1.0\u00d7101 1.5\u00d7101"},
        {{0, 10}, [](Axis &axis) { axis.labelDensity = 0.6; }, "0 5 10"},
        {{0, 10}, [](Axis &axis) { axis.labelDensity = 3; }, "0 1 2 3 4 5 6 7 8 9 10"},
        {{0, 10}, [](Axis &axis) { axis.labelDensity = 0.4; }, "0 10"},
        {{1234560, 1234570},
         linear,
         "1234560 1234562 1234564 1234566 1234568 1234570"}, // seven digits are read, eight aren't
        {{12345600, 12345610}, linear, "0 2 4 6 8 10 | + 12345600"},
        {{0.001234, 0.001236}, linear, "1.2340 1.2345 1.2350 1.2355 1.2360 | \u00d710\u22123"},
        {{0.1234, 0.123401}, linear, "0.1234000 0.1234002 0.1234004 0.1234006 0.1234008 0.1234010"},
        {{1, 1e8},
         [](Axis &axis) { axis.logarithmic = true, axis.labelDensity = 0.3; },
         "100 102 104 106 108"},
        // two numbers at least, however few are asked for
        {{0, 7}, [](Axis &axis) { axis.labelDensity = 0.1; }, "0 5"},
        {{5, 2000},
         [](Axis &axis) { axis.logarithmic = true, axis.labelDensity = 0.1; },
         "10 100 1000"},
        {{15, 95},
         [](Axis &axis) { axis.logarithmic = true, axis.precision = 12; },
         "20.000000000000 50.000000000000"},
        {{1, 5},
         [](Axis &axis) { axis.increment = 1.2345678; },
         "1.2345678 2.4691356 3.7037034 4.9382712"},
        // an offset where numbers are more than a thousand times as large as they differ
        {{246.776, 247.024},
         [](Axis &axis) { axis.increment = 0.12345; },
         "\u22120.12345 0.00000 0.12345 | + 246.9"},
        {{246.653, 246.901},
         [](Axis &axis) { axis.increment = 0.12345; },
         "246.65310 246.77655 246.90000"},
        // an increment with a tick or none within the limits
        {{-1, 10}, [](Axis &axis) { axis.increment = 5e3; }, "0"},
        {{-1, 10}, [](Axis &axis) { axis.increment = 2e4; }, "0 2 4 6 8 10"},
        // too many ticks for the paper; too many numbers
        {{0, 10}, [](Axis &axis) { axis.increment = 1e-9; }, "0 2 4 6 8 10"},
        {{0, 100}, [](Axis &axis) { axis.increment = 1; }, "0 10 20 30 40 50 60 70 80 90 100"},
    };
    for (const auto &c : cases) {
        Axis axis;
        c.change(axis);
        EXPECT_EQ(told(marksFor(axis, c.range)), c.want) << c.range.min << ".." << c.range.max;
    }
}

TEST(Numbers, TakeACommonPowerRatherThanBeFew) {
    const struct {
        Range range;
        const char *want;
    } cases[] = {{{-0.001, 0.001}, "\u22121.0 \u22120.5 0.0 0.5 1.0 | \u00d710\u22123"},
                 {{-20000, 20000}, "\u22122 \u22121 0 1 2 | \u00d7104"},
                 {{-0.002, 0.002}, "\u22120.002 \u22120.001 0.000 0.001 0.002"}, // fit as they are
                 {{-0.01, 0.01}, "\u22120.010 \u22120.005 0.000 0.005 0.010"}};
    for (const auto &c : cases) {
        const Axis axis;
        EXPECT_EQ(
            told(marksBeside(axis, scaleOf(axis, c.range, 170), false, Side::below, Typesetter())),
            c.want);
    }
}

TEST(Ticks, HaveSmallOnesBetweenThem) {
    Axis axis;
    axis.increment = 2.5;
    axis.ticks = 4;
    EXPECT_EQ(marksFor(axis, {0, 10}).smallTicks.size(), 16u);
    axis.ticks = 1000;
    EXPECT_LE(marksFor(axis, {0, 10}).smallTicks.size(), 340 / leastGivenTickDistance);
    axis.ticks = 0;
    EXPECT_EQ(marksFor(axis, {0, 10}).smallTicks.size(), 0u);
    axis.ticks = -1;
    const struct {
        double increment, distance;
        std::size_t between;
    } cases[] = {{1, 17, 4}, {1, 12, 1}, {1, 5, 0}, {2, 17, 3}, {2, 11, 1}, {5, 17, 4}, {5, 12, 0}};
    for (const auto &c : cases) {
        axis.increment = c.increment;
        const double most = 10 * c.increment;
        const AxisMarks marks = marksBeside(axis, scaleOf(axis, {0, most}, 10 * c.distance), false,
                                            Side::below, Typesetter());
        EXPECT_EQ(marks.smallTicks.size(), 10 * c.between) << c.increment << ' ' << c.distance;
    }
    axis.increment = unset;
    axis.logarithmic = true;
    const struct {
        double least, most, length;
        int logTicksAt;
        std::size_t ticks, small;
    } decades[] = {
        {1, 1e3, 340, -1, 4, 24},                                    // at 2..9
        {1, 1e17, 340, -1, 18, 136},     {1, 1e18, 340, -1, 19, 0},  // too short for these
        {1, 1e25, 300, -1, 26, 0},       {1, 1e30, 340, -1, 11, 20}, // too short for a tick each
        {1, 1e4, 340, 2, 3, 2},          {1, 1e20, 340, 10, 3, 18},
        {1, 1e170, 340, 1, 171, 0},      {1, 1e171, 340, 1, 9, 0},
        {1, 1e100, 300, 5, 21, 80},      {1, 1e170, 340, 10, 18, 68}, // every second decade
        {1e-170, 1e170, 340, 10, 35, 34}};                            // every fifth
    for (const auto &c : decades) {
        axis.logTicksAt = c.logTicksAt;
        const AxisMarks marks = marksBeside(axis, scaleOf(axis, {c.least, c.most}, c.length), false,
                                            Side::below, Typesetter());
        EXPECT_EQ(marks.ticks.size(), c.ticks) << c.most << ' ' << c.logTicksAt;
        EXPECT_EQ(marks.smallTicks.size(), c.small) << c.most << ' ' << c.logTicksAt;
    }
    axis.logTicksAt = -1;
    EXPECT_EQ(marksFor(axis, {15, 900}).smallTicks,
              (std::vector<double>{40, 60, 80, 90, 400, 600, 800, 900}));
    axis.logNumbersAt = 2;
    axis.ticks = 0;
    EXPECT_EQ(joined(marksFor(axis, {1, 1e4})), "100 102 104");
    EXPECT_TRUE(marksFor(axis, {1, 1e4}).smallTicks.empty());
    axis.logNumbersAt = -1;
    axis.logTicksAt = 1; // too many decades for a tick at each
    EXPECT_EQ(marksFor(axis, {1e-300, 1e300}).ticks.size(),
              marksFor(axis, {1e-300, 1e300}).numbers.size());
}

TEST(Numbers, HaveNoSignBeforeZeroAndPowersAsSuperscripts) {
    const NumberFormat format{.decimals = 1};
    EXPECT_EQ(plainTextOf(numberText(-0.04, format)), "0.0");
    EXPECT_EQ(plainTextOf(numberText(-0.06, format)), "\u22120.1");
    EXPECT_EQ(commonText({.exponent = 6}).back().script, 1);
}

// Every axis has at least one number, few ticks, all within its limits, and none of its numbers
// touches another, whatever the range.
TEST(Ticks, StandApartOnNastyRanges) {
    const Range ranges[] = {{0, 1},
                            {-1e-300, 1e-300},
                            {1e-300, 1e300},
                            {-8e307, 8e307},
                            {1e6 - 1e-6, 1e6},
                            {1e6, 1e6 * (1 + 1e-12)},
                            {1e15, 1e15 + 1},
                            {999999, 1000001},
                            {5e-324, 5e-324},
                            {-1.0 / 3, 2.0 / 3},
                            {12345.678, 12345.679},
                            {3e-5, 2e5}};
    const Typesetter typesetter;
    Axis axis;
    const auto check = [&](const Range &range, double length, Side side) {
        SCOPED_TRACE(testing::Message()
                     << range.min << ".." << range.max << " log " << axis.logarithmic << " length "
                     << length << " angle " << axis.labelAngle << " increment " << axis.increment);
        const Scale scale = scaleOf(axis, range, length);
        const AxisMarks marks = marksBeside(axis, scale, false, side, typesetter);
        std::vector<Box> boxes;
        for (const PlacedNumber &number :
             placedNumbers(marks.numbers, scale, side, axis.labelAngle, 0, typesetter))
            boxes.push_back(turnedBack(number));
        expectApart(boxes);
        EXPECT_GE(marks.numbers.size(), length > 50 ? 1u : 0u);
        EXPECT_LE(marks.ticks.size(), 1010u);
        EXPECT_LE(marks.smallTicks.size(), 2010u);
        for (const double tick : marks.ticks) EXPECT_TRUE(scale.shows(tick)) << tick;
    };
    for (axis.labelAngle = -60; axis.labelAngle <= 90; axis.labelAngle += 50)
        for (const double increment : {unset, 0.05})
            for (const bool logarithmic : {false, true})
                for (const double length : {28.0, 57.0, 340.0, 2835.0})
                    for (const Range &range : ranges) {
                        axis.increment = increment;
                        axis.logarithmic = logarithmic;
                        check(range, length, Side::below);
                        check(range, length, Side::leftOf);
                    }
}
