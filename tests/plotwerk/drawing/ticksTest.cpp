#include "plotwerk/drawing/axisNumbers.h"
#include "plotwerk/drawing/numberText.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace plotwerk;

namespace {

std::string joined(const AxisMarks &marks) {
    std::string all;
    for (const AxisNumber &number : marks.numbers) {
        if (!all.empty()) all += ' ';
        all += plainTextOf(number.text);
    }
    return all;
}

AxisMarks marksFor(const Axis &axis, Range range, double length = 340) {
    const Typesetter typesetter;
    return marksBeside(axis, scaleOf(axis, range, length), Side::below, typesetter);
}

} // namespace

TEST(Scale, ReplacesLimitsThatCannotBeDrawn) {
    const struct {
        double min, max;
        bool logarithmic;
        double wantMin, wantMax;
    } cases[] = {
        {unset, unset, false, 0, 1}, {unset, unset, true, 1, 10},
        {5, 5, false, 4.5, 5.5},     {0, 0, false, -1, 1},
        {3, unset, false, 3, 4},     {unset, 3, false, 2, 3},
        {7, 2, false, 2, 7},         {-3, 100, true, 0.1, 100},
        {-3, -1, true, 1, 10},       {-INFINITY, INFINITY, false, -8e307, 8e307},
    };
    for (const auto &c : cases) {
        Axis axis;
        axis.logarithmic = c.logarithmic;
        const Scale scale = scaleOf(axis, {c.min, c.max}, 100);
        EXPECT_DOUBLE_EQ(scale.min, c.wantMin) << c.min << ".." << c.max;
        EXPECT_DOUBLE_EQ(scale.max, c.wantMax) << c.min << ".." << c.max;
    }
}

TEST(Scale, PlacesValues) {
    Axis axis;
    EXPECT_DOUBLE_EQ(scaleOf(axis, {2, 4}, 100).position(3), 50);
    EXPECT_DOUBLE_EQ(scaleOf(axis, {4, 2}, 100).position(2.5), 75); // descending limits
    EXPECT_DOUBLE_EQ(scaleOf(axis, {2, 4}, 100).position(1e308), 1e12);
    EXPECT_NEAR(scaleOf(axis, {1e6 - 1e-6, 1e6 + 1e-6}, 100).position(1e6), 50, 0.01);
    EXPECT_TRUE(std::isnan(scaleOf(axis, {2, 4}, 100).position(unset)));

    axis.logarithmic = true;
    EXPECT_DOUBLE_EQ(scaleOf(axis, {1, 100}, 100).position(10), 50);
    EXPECT_NEAR(scaleOf(axis, {1e-300, 1e300}, 100).position(1), 50, 1e-9);
    EXPECT_TRUE(std::isnan(scaleOf(axis, {1, 100}, 100).position(0)));
    axis.reversed = true;
    EXPECT_DOUBLE_EQ(scaleOf(axis, {1, 1000}, 90).position(10), 60);
}

TEST(Ticks, AreAtRoundNumbersWithCommonDecimals) {
    const struct {
        double min, max;
        const char *want;
    } cases[] = {
        {0, 10, "0 2 4 6 8 10"},
        {0, 1, "0.0 0.2 0.4 0.6 0.8 1.0"},
        {-0.3, 0.3, "\u22120.3 \u22120.2 \u22120.1 0.0 0.1 0.2 0.3"},
        {0.13, 9.7, "2 4 6 8"},
        {1000, 5000, "1000 1500 2000 2500 3000 3500 4000 4500 5000"},
        {0, 4e6, "0 1\u00d7106 2\u00d7106 3\u00d7106 4\u00d7106"},
        {-5e-7, 5e-7,
         "\u22124\u00d710\u22127 \u22122\u00d710\u22127 0 2\u00d710\u22127 4\u00d710\u22127"},
        {123456, 123457, "123456.0 123456.2 123456.4 123456.6 123456.8 123457.0"},
        {1e6 - 1e-6, 1e6 + 1e-6, "999999.999999 1000000.000000 1000000.000001"},
        {5, 5, "4.6 4.8 5.0 5.2 5.4"},
        {0, 1e300, "0 0.2\u00d710300 0.4\u00d710300 0.6\u00d710300 0.8\u00d710300 1.0\u00d710300"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(joined(marksFor({}, {c.min, c.max})), c.want) << c.min << ".." << c.max;
}

TEST(Ticks, OfLogarithmicAxesAreAtDecades) {
    const struct {
        double min, max;
        const char *want;
    } cases[] = {
        {0.01, 1000, "0.01 0.1 1 10 100 1000"},
        {1e-5, 1e2, "10\u22125 10\u22124 10\u22123 10\u22122 10\u22121 100 101 102"},
        {1, 100, "1 10 100"},
        {3, 60, "3 5 7 10 20 30 50"},
        {2, 8, "2 3 4 5 6 7 8"},
        {1000, 1010, "1000 1002 1004 1006 1008 1010"},
        {1e-300, 1e300, "10\u2212300 10\u2212200 10\u2212100 100 10100 10200 10300"},
    };
    Axis axis;
    axis.logarithmic = true;
    for (const auto &c : cases)
        EXPECT_EQ(joined(marksFor(axis, {c.min, c.max})), c.want) << c.min << ".." << c.max;

    EXPECT_EQ(marksFor(axis, {1, 1000}).smallTicks.size(), 24u); // 2..9 in three decades
    axis.logNumbersAt = 2;
    EXPECT_EQ(joined(marksFor(axis, {1, 1e4})), "1 100 10000");
}

TEST(Ticks, FollowTheAxisSettings) {
    Axis axis;
    axis.increment = 2.5;
    axis.ticks = 4;
    const AxisMarks marks = marksFor(axis, {0, 10});
    EXPECT_EQ(joined(marks), "0.0 2.5 5.0 7.5 10.0");
    EXPECT_EQ(marks.smallTicks.size(), 16u);

    axis.precision = 3;
    EXPECT_EQ(joined(marksFor(axis, {0, 10})), "0.000 2.500 5.000 7.500 10.000");
    axis = {};
    axis.exponents = true;
    EXPECT_EQ(joined(marksFor(axis, {0, 40})), "0 1\u00d7101 2\u00d7101 3\u00d7101 4\u00d7101");
    axis = {};
    axis.labelDensity = 0.4;
    EXPECT_EQ(joined(marksFor(axis, {0, 10})), "0 5 10");

    // an increment with too many ticks for the paper is left aside, numbers that don't fit are
    // thinned
    axis = {};
    axis.increment = 1e-9;
    EXPECT_EQ(joined(marksFor(axis, {0, 10})), "0 2 4 6 8 10");
    axis.increment = 1;
    EXPECT_EQ(joined(marksFor(axis, {0, 100})), "0 10 20 30 40 50 60 70 80 90 100");
    EXPECT_EQ(marksFor(axis, {0, 100}).ticks.size(), 101u);
}

// Every axis has at least one number, few ticks, all within its limits, and none of its numbers
// touches another, whatever the range.
TEST(Ticks, StandApartOnNastyRanges) {
    const Range ranges[] = {{0, 1},          {-1e-300, 1e-300},      {1e-300, 1e300},
                            {-8e307, 8e307}, {1e6 - 1e-6, 1e6},      {1e6, 1e6 * (1 + 1e-12)},
                            {-1e15, 1e15},   {1e15, 1e15 + 1},       {999999, 1000001},
                            {0.1, 0.3},      {5e-324, 5e-324},       {-1.0 / 3, 2.0 / 3},
                            {1, 1.0000001},  {12345.678, 12345.679}, {99, 1e7},
                            {3e-5, 2e5},     {unset, unset},         {1e300, 1.0001e300}};
    const Typesetter typesetter;
    for (const Side side : {Side::below, Side::leftOf})
        for (const double length : {28.0, 57.0, 340.0, 2835.0})
            for (const bool logarithmic : {false, true})
                for (const double angle : {0.0, 30.0, 90.0, -60.0})
                    for (const Range &range : ranges)
                        for (const double increment : {unset, 0.05}) {
                            Axis axis;
                            axis.logarithmic = logarithmic;
                            axis.labelAngle = angle;
                            axis.increment = increment;
                            const Scale scale = scaleOf(axis, range, length);
                            const AxisMarks marks = marksBeside(axis, scale, side, typesetter);
                            const auto numbers =
                                placedNumbers(marks.numbers, scale, side, angle, 0, typesetter);
                            const auto what = ::testing::Message()
                                              << range.min << ".." << range.max << " log "
                                              << logarithmic << " length " << length << " angle "
                                              << angle << " side " << static_cast<int>(side)
                                              << " increment " << increment;
                            EXPECT_TRUE(standApart(numbers, side)) << what;
                            EXPECT_GE(numbers.size(), length > 50 ? 1u : 0u) << what;
                            EXPECT_LE(marks.ticks.size(), 1010u) << what;
                            EXPECT_LE(marks.smallTicks.size(), 2010u) << what;
                            for (const double tick : marks.ticks)
                                EXPECT_TRUE(scale.shows(tick)) << tick << ' ' << what;
                        }
}
