#include "plotwerk/drawing/axisNumbers.h"
#include "plotwerk/drawing/numberText.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>
#include <complex>

using namespace plotwerk;

namespace {

// The numbers, and what they have in common.
std::string told(const AxisMarks &marks) {
    std::string all;
    for (const AxisNumber &number : marks.numbers)
        all.append(all.empty() ? "" : " ").append(plainTextOf(number.text));
    const std::string common = plainTextOf(marks.common);
    return all + (common.empty() ? "" : " | " + common);
}

// The box of a number, all turned so that it is upright.
Box turnedBack(const PlacedNumber &number) {
    // y runs downwards, so that angles run clockwise
    const std::complex<double> turn = std::polar(1.0, number.angle * G_PI / 180);
    const std::complex<double> middle = turn * std::complex(number.middle.x, number.middle.y);
    return {middle.real() - number.width / 2, middle.imag() - number.height / 2,
            middle.real() + number.width / 2, middle.imag() + number.height / 2};
}

AxisMarks marksFor(const Axis &axis, double length = 340, Side side = Side::below) {
    return marksBeside(axis, scaleOf(axis, axis.range, length), false, side, Typesetter());
}

} // namespace

TEST(Scale, ReplacesLimitsThatCannotBeDrawn) {
    const double inf = INFINITY, root = std::sqrt(10);
    const std::tuple<Range, bool, Range> cases[] = {{{unset, unset}, false, {0, 1}},
                                                    {{unset, unset}, true, {1, 10}},
                                                    {{3, unset}, false, {3, 4}},
                                                    {{unset, 3}, false, {2, 3}},
                                                    {{5, unset}, true, {5, 50}},
                                                    {{unset, 0}, true, {1, 10}},
                                                    {{-5, -5}, false, {-5.5, -4.5}},
                                                    {{0, 0}, false, {-1, 1}},
                                                    {{7, 2}, false, {2, 7}},
                                                    {{-3, 100}, true, {0.1, 100}},
                                                    {{0, 100}, true, {0.1, 100}},
                                                    {{-3, -1}, true, {1, 10}},
                                                    {{-inf, inf}, false, {-8e307, 8e307}},
                                                    {{inf, inf}, true, {8e306, 8e307}},
                                                    {{5e-324, 5e-324}, true, {1e-307, 1e-306}},
                                                    {{0, 1e-300}, false, {-1e-290, 1e-290}},
                                                    {{5, 5}, true, {5 / root, 5 * root}},
                                                    {{1, 1 + 1e-14}, false, {0.9, 1.1}},
                                                    {{1, 1 + 2e-14}, false, {1, 1 + 2e-14}},
                                                    {{1, 1 + 2e-13}, true, {1, 1 + 2e-13}}};
    for (const auto &[range, logarithmic, want] : cases) {
        const Scale scale = scaleOf({.logarithmic = logarithmic}, range, 100);
        EXPECT_NEAR(scale.min, want.min, 1e-9 * std::abs(want.min)) << range.min << range.max;
        EXPECT_NEAR(scale.max, want.max, 1e-9 * std::abs(want.max)) << range.min << range.max;
    }
}

TEST(Increments, AreUsedWhereTheirTicksCanBeToldApart) {
    const std::tuple<Range, double, double, bool> cases[] = {
        {{0, 100}, 100, 2, true}, // two points between ticks
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
    for (const auto &[range, length, increment, want] : cases)
        EXPECT_EQ(isUsableIncrement(increment, scaleOf({}, range, length)), want)
            << range.min << ' ' << length << ' ' << increment;
}

TEST(Scale, PlacesValues) {
    const struct {
        Range range;
        bool logarithmic, reversed;
        double value, position;
    } cases[] = {{{2, 4}, false, false, 3, 50},
                 {{2, 4}, false, true, 3.5, 25},
                 {{4, 2}, false, false, 2.5, 75},
                 {{4, 2}, false, true, 2.5, 25},
                 {{-8e307, 8e307}, false, false, 4e307, 75},
                 {{1, 1000}, true, true, 10, 200.0 / 3},
                 {{1000, 1}, true, false, 10, 200.0 / 3},
                 {{1, 100}, true, false, 0.1, -50},
                 {{1e-300, 1e300}, true, false, 1, 50},
                 {{1e5, 1e5 * (1 + 2e-9)}, true, false, 1e5 * (1 + 1e-9), 50}};
    for (const auto &c : cases) {
        const Axis axis{.logarithmic = c.logarithmic, .reversed = c.reversed};
        const Scale scale = scaleOf(axis, c.range, 100);
        EXPECT_NEAR(scale.position(c.value), c.position, c.range.min < 1e5 ? 1e-9 : 0.01);
        EXPECT_NEAR(scale.value(c.position) / c.value, 1, 1e-12) << c.value;
    }
    const Scale linear = scaleOf({}, {2, 4}, 100);
    EXPECT_EQ(linear.position(1e308), 1e12);
    EXPECT_TRUE(std::isnan(linear.position(unset)));
    EXPECT_TRUE(std::isnan(scaleOf({.logarithmic = true}, {1, 100}, 100).position(0)));
}

TEST(Ticks, AreAtRoundNumbersWithCommonDecimals) {
    const struct {
        Axis axis;
        const char *want;
        double length = 340;
    } cases[] = {
        {{.range = {-0.3, 0.3}}, "\u22120.3 \u22120.2 \u22120.1 0.0 0.1 0.2 0.3"},
        {{.range = {0, 4e6}}, "0 1 2 3 4 | \u00d7106"},
        {{.range = {-1e-7, 5e-8}},
         "\u22121.0 \u22120.8 \u22120.6 \u22120.4 \u22120.2 0.0 0.2 0.4 | \u00d710\u22127"},
        {{.range = {1e6 - 1e-6, 1e6 + 1e-6}},
         "\u22121.0 \u22120.5 0.0 0.5 1.0 | \u00d710\u22126 + 1000000"},
        {{.range = {1700000000, 1700003300}}, "0 500 1000 1500 2000 2500 3000 | + 1.7\u00d7109"},
        {{.range = {1.2345e9, 1.2346e9}},
         "1.23450 1.23452 1.23454 1.23456 1.23458 1.23460 | \u00d7109"},
        {{.range = {0.001234, 0.001236}}, "1.2340 1.2345 1.2350 1.2355 1.2360 | \u00d710\u22123"},
        {{.range = {0.1234, 0.123401}},
         "0.1234000 0.1234002 0.1234004 0.1234006 0.1234008 0.1234010"},
        {{.range = {-2, 99.9999}}, "0 20 40 60 80 100"},
        // seven digits are read, eight aren't
        {{.range = {1234560, 1234570}}, "1234560 1234562 1234564 1234566 1234568 1234570"},
        {{.range = {12345600, 12345610}}, "0 2 4 6 8 10 | + 12345600"},

        {{.range = {2, 8}, .logarithmic = true}, "2 3 4 5 6 7 8"},
        {{.range = {15, 900}, .logarithmic = true}, "20 30 50 70 100 200 300 500 700"},
        {{.range = {0.1, 80}, .logarithmic = true}, "0.1 1 10"},
        {{.range = {1, 1001}, .logarithmic = true}, "1 10 100 1000"},
        {{.range = {100, 99999.99}, .logarithmic = true}, "100 1000 10000 100000"},
        {{.range = {0.01, 1000}, .logarithmic = true}, "10\u22122 10\u22121 100 101 102 103"},
        {{.range = {1e-300, 1e300}, .logarithmic = true},
         "10\u2212300 10\u2212200 10\u2212100 100 10100 10200 10300"},
        {{.range = {1, 1e50}, .logarithmic = true},
         "100 105 1010 1015 1020 1025 1030 1035 1040 1045 1050"},
        {{.range = {0.01, 1000}, .precision = 1, .logarithmic = true},
         "0.01 0.1 1.0 10.0 100.0 1000.0"},
        {{.range = {1, 100}, .logarithmic = true, .exponents = true, .logNumbersAt = 1},
         "100 101 102"},
        {{.range = {1, 1e4}, .ticks = 0, .logarithmic = true, .logNumbersAt = 2}, "100 102 104"},
        {{.range = {15, 95}, .logarithmic = true, .labelAngle = 45}, "20 30 50 70"},

        {{.range = {0, 5}, .increment = 2.5, .precision = 3}, "0.000 2.500 5.000"},
        {{.range = {-1.1, 1.1}, .precision = 0}, "\u22121 0 1"},
        {{.range = {0, 0.1}, .precision = 0}, "0.00 0.02 0.04 0.06 0.08 0.10"},
        {{.range = {0, 15}, .exponents = true}, "0 0.5\u00d7101 1.0\u00d7101 1.5\u00d7101"},
        {{.range = {1, 5}, .increment = 1.2345678}, "1.2345678 2.4691356 3.7037034 4.9382712"},
        // an offset where numbers are more than a thousand times as large as they differ
        {{.range = {246.776, 247.024}, .increment = 0.12345},
         "\u22120.12345 0.00000 0.12345 | + 246.9"},
        {{.range = {246.653, 246.901}, .increment = 0.12345}, "246.65310 246.77655 246.90000"},
        // an increment with a tick or none within the limits, with too many ticks or numbers
        {{.range = {-1, 10}, .increment = 5e3}, "0"},
        {{.range = {-1, 10}, .increment = 2e4}, "0 2 4 6 8 10"},
        {{.range = {0, 10}, .increment = 1e-9}, "0 2 4 6 8 10"},
        {{.range = {0, 100}, .increment = 1}, "0 10 20 30 40 50 60 70 80 90 100"},

        {{.range = {0, 10}, .labelDensity = 3}, "0 1 2 3 4 5 6 7 8 9 10"},
        {{.range = {0, 10}, .labelDensity = 0.6}, "0 5 10"},
        {{.range = {0, 10}, .labelDensity = 0.4}, "0 10"},
        {{.range = {1, 1e8}, .logarithmic = true, .labelDensity = 0.3}, "100 102 104 106 108"},
        // two numbers at least, however few are asked for
        {{.range = {0, 7}, .labelDensity = 0.1}, "0 5"},
        {{.range = {5, 2000}, .logarithmic = true, .labelDensity = 0.1}, "10 100 1000"},
        {{.range = {15, 95}, .precision = 12, .logarithmic = true},
         "20.000000000000 50.000000000000"},
        // rather a common power than few
        {{.range = {-0.001, 0.001}}, "\u22121.0 \u22120.5 0.0 0.5 1.0 | \u00d710\u22123", 170},
        {{.range = {-20000, 20000}}, "\u22122 \u22121 0 1 2 | \u00d7104", 170},
        {{.range = {-0.002, 0.002}}, "\u22120.002 \u22120.001 0.000 0.001 0.002", 170}};
    for (const auto &[axis, want, length] : cases)
        EXPECT_EQ(told(marksFor(axis, length)), want) << axis.range.min << ".." << axis.range.max;
    for (const Range &range : {Range{0, 103}, Range{0, 5}, Range{-1, 1}}) // on three centimetres
        EXPECT_GE(marksFor({.range = range}, 85, Side::leftOf).numbers.size(), 5U) << range.max;
    for (const double length : {20, 40, 60, 85, 120, 170}) {
        for (const double max : {5, 7, 11, 15, 103}) { // in any unit
            const auto ticksOf = [&](double unit) {
                return marksFor({.range = {0, max * unit}}, length, Side::leftOf).ticks.size();
            };
            EXPECT_EQ(ticksOf(1e-6), ticksOf(1)) << length << ' ' << max;
            EXPECT_EQ(ticksOf(1e6), ticksOf(1)) << length << ' ' << max;
        }
    }
}

TEST(Ticks, HaveSmallOnesBetweenThem) {
    const std::tuple<Axis, double, std::size_t, std::size_t> cases[] = {
        {{.range = {0, 10}, .increment = 2.5, .ticks = 4}, 340, 5, 16},
        {{.range = {0, 10}, .increment = 2.5, .ticks = 0}, 340, 5, 0},
        {{.range = {0, 10}, .increment = 1}, 170, 11, 40},
        {{.range = {0, 10}, .increment = 1}, 120, 11, 10},
        {{.range = {0, 10}, .increment = 1}, 50, 11, 0},
        {{.range = {0, 20}, .increment = 2}, 170, 11, 30},
        {{.range = {0, 20}, .increment = 2}, 110, 11, 10},
        {{.range = {0, 50}, .increment = 5}, 170, 11, 40},
        {{.range = {0, 50}, .increment = 5}, 120, 11, 0},
        {{.range = {1, 1e3}, .logarithmic = true}, 340, 4, 24}, // at 2..9
        {{.range = {1, 1e4}, .ticks = 0, .logarithmic = true}, 340, 5, 0},
        {{.range = {1, 1e17}, .logarithmic = true}, 340, 18, 136},
        {{.range = {1, 1e18}, .logarithmic = true}, 340, 19, 0}, // too short for these
        {{.range = {1, 1e25}, .logarithmic = true}, 300, 26, 0},
        {{.range = {1, 1e30}, .logarithmic = true}, 340, 11, 20}, // too short for a tick each
        {{.range = {1, 1e4}, .logarithmic = true, .logTicksAt = 2}, 340, 3, 2},
        {{.range = {1, 1e170}, .logarithmic = true, .logTicksAt = 1}, 340, 171, 0},
        {{.range = {1, 1e171}, .logarithmic = true, .logTicksAt = 1}, 340, 9, 0},
        {{.range = {1, 1e100}, .logarithmic = true, .logTicksAt = 5}, 300, 21, 80},
        {{.range = {1, 1e170}, .logarithmic = true, .logTicksAt = 10}, 340, 18, 68},
        {{.range = {1e-170, 1e170}, .logarithmic = true, .logTicksAt = 10}, 340, 35, 34}};
    for (const auto &[axis, length, ticks, small] : cases) {
        const AxisMarks marks = marksFor(axis, length);
        EXPECT_EQ(marks.ticks.size(), ticks) << axis.range.max << ' ' << length;
        EXPECT_EQ(marks.smallTicks.size(), small) << axis.range.max << ' ' << length;
    }
    const Axis many{.range = {0, 10}, .increment = 2.5, .ticks = 1000};
    EXPECT_LE(marksFor(many).smallTicks.size(), 340 / leastGivenTickDistance);
    EXPECT_EQ(marksFor({.range = {15, 900}, .logarithmic = true}).smallTicks,
              (std::vector<double>{40, 60, 80, 90, 400, 600, 800, 900}));
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
    const Range ranges[] = {{0, 1},           {-1e-300, 1e-300}, {1e-300, 1e300},
                            {-8e307, 8e307},  {1e6 - 1e-6, 1e6}, {1e6, 1e6 * (1 + 1e-12)},
                            {1e15, 1e15 + 1}, {5e-324, 5e-324},  {-1.0 / 3, 2.0 / 3},
                            {3e-5, 2e5}};
    const Typesetter typesetter;
    Axis axis;
    const auto check = [&](double length, Side side) {
        SCOPED_TRACE(testing::Message()
                     << axis.range.min << ".." << axis.range.max << " log " << axis.logarithmic
                     << " length " << length << " angle " << axis.labelAngle);
        const Scale scale = scaleOf(axis, axis.range, length);
        const AxisMarks marks = marksFor(axis, length, side);
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
    for (const Range &range : ranges)
        for (const double angle : {-60, -10, 40, 90})
            for (const bool logarithmic : {false, true})
                for (const double length : {28.0, 57.0, 340.0, 2835.0}) {
                    axis = {.range = range, .logarithmic = logarithmic, .labelAngle = angle};
                    if (length == 340) axis.increment = 0.05;
                    check(length, Side::below);
                    check(length, Side::leftOf);
                }
}
