#include "plotwerk/drawing/timeTicks.h"

#include "plotwerk/drawing/axisNumbers.h"
#include "tests/plotwerk/drawing/samples.h"

#include <chrono>
#include <cmath>
#include <set>

using namespace plotwerk;

static double secondsAt(int year, unsigned month, unsigned day, double seconds = 0) {
    const std::chrono::sys_days date{std::chrono::year(year) / std::chrono::month(month) /
                                     std::chrono::day(day)};
    return static_cast<double>(date.time_since_epoch().count()) * 86400 + seconds;
}

static AxisMarks marksFor(const Axis &axis, double length = 340) {
    return marksBeside(axis, scaleOf(axis, axis.range, length), true, Side::below, Typesetter());
}

// All numbers, and after a bar what they have in common.
static std::string told(const AxisMarks &marks) {
    std::string all;
    for (const AxisNumber &number : marks.numbers) all += plainTextOf(number.text) + ' ';
    return all + "| " + plainTextOf(marks.common);
}

TEST(TimeTicks, TellDatesAndTimesOnce) {
    const double noon = secondsAt(2024, 3, 5, 43200);
    const struct {
        double from, to;
        std::size_t smallTicks;
        const char *want;
        double increment = unset;
    } cases[] = {
        {noon, noon + 0.004, 36,
         "12:00:00.000 12:00:00.001 12:00:00.002 12:00:00.003 12:00:00.004 | 2024-03-05"},
        {0, 1.2e-5, 10, "00:00:00.000000 00:00:00.000005 00:00:00.000010 | 1970-01-01"},
        {0, 9e-6, 14, "0 2 4 6 8 | \u00d710\u22126"}, // too short for times
        {noon + 0.1, noon + 1.3, 55, "12:00:00.4 12:00:00.8 12:00:01.2 | 2024-03-05"},
        {noon, noon + 60, 8, "12:00:00 12:00:15 12:00:30 12:00:45 12:01:00 | 2024-03-05"},
        {noon, noon + 4 * 3600, 44, "12:00 13:00 14:00 15:00 16:00 | 2024-03-05"},
        {noon + 600, noon + 7200, 99, "12:20 12:40 13:00 13:20 13:40 14:00 | 2024-03-05", 600},
        {noon, noon + 2 * 86400, 44, "12:00 Mar 6 12:00 Mar 7 12:00 | 2024"},
        {-3600, 3600, 20, "23:00 23:30 1970-01-01 00:30 01:00 | ", 1800},
        {secondsAt(2024, 12, 31, 43200), secondsAt(2025, 1, 1, 43200), 44,
         "12:00 18:00 2025-01-01 06:00 12:00 | "},
        {secondsAt(2024, 2, 28), secondsAt(2024, 3, 3), 44,
         "Feb 28 Feb 29 Mar 1 Mar 2 Mar 3 | 2024"},
        {secondsAt(2023, 2, 28), secondsAt(2023, 4, 5), 32,
         "Mar 6 Mar 13 Mar 20 Mar 27 Apr 3 | 2023"}, // Mondays
        {secondsAt(2023, 11, 30), secondsAt(2024, 3, 20), 48,
         "Dec 11 Dec 25 Jan 8 Jan 22 Feb 5 Feb 19 Mar 4 Mar 18 | 2023\u20132024"},
        {secondsAt(2024, 1, 1, 3600), secondsAt(2024, 5, 1, -3600), 16, // ticks nearly on it
         "Jan Feb Mar Apr May | 2024"},
        {secondsAt(2023, 8, 2), secondsAt(2024, 6, 1), 41,
         "Sep Oct Nov Dec Jan Feb Mar Apr May Jun | 2023\u20132024"},
        {secondsAt(2022, 7, 1), secondsAt(2023, 7, 1), 8,
         "2022-07 2022-10 2023-01 2023-04 2023-07 | "},
        {secondsAt(1968, 1, 1), secondsAt(1972, 1, 1), 44, "1968 1969 1970 1971 1972 | "},
        {secondsAt(1603, 5, 1), secondsAt(2000, 1, 1), 72,
         "1650 1700 1750 1800 1850 1900 1950 2000 | "},
        {0, 1e30, 15, "0.0 0.2 0.4 0.6 0.8 1.0 | \u00d71030"}};
    for (const auto &c : cases) {
        const Axis axis{.range = {c.from, c.to}, .increment = c.increment};
        const Scale scale = scaleOf(axis, axis.range, 340);
        const AxisMarks marks = marksFor(axis);
        EXPECT_EQ(told(marks), c.want);
        EXPECT_EQ(marks.smallTicks.size(), c.smallTicks) << c.want;
        for (const AxisNumber &number : marks.numbers) EXPECT_TRUE(isOnAxis(number.value, scale));
        // between two ticks there are as many small ones everywhere, Mondays in months aside
        for (std::size_t i = 2; i < marks.ticks.size(); ++i) {
            const auto between = [&](double low, double high) {
                return std::ranges::count_if(marks.smallTicks,
                                             [&](double v) { return v > low && v < high; });
            };
            EXPECT_NEAR(double(between(marks.ticks[i - 2], marks.ticks[i - 1])),
                        double(between(marks.ticks[i - 1], marks.ticks[i])), 1)
                << c.want;
        }
    }
}

TEST(TimeTicks, HaveAsManySmallOnesAsTheAxisAsksFor) {
    const Range months{secondsAt(2024, 1, 1), secondsAt(2024, 5, 1)};
    const auto small = [&](int ticks) {
        return marksFor({.range = months, .ticks = ticks}).smallTicks;
    };
    EXPECT_EQ(small(0).size(), 0U);
    EXPECT_EQ(small(1), (std::vector{secondsAt(2024, 1, 16, 43200), secondsAt(2024, 2, 15, 43200),
                                     secondsAt(2024, 3, 16, 43200), secondsAt(2024, 4, 16)}));
    EXPECT_EQ(small(1000), small(-1)) << "there is no room for so many";
}

TEST(TimeTicks, OfShortAxesAreTwoRatherThanThoseOfAFinerStep) {
    const double noon = secondsAt(2024, 3, 5, 43200);
    const std::tuple<double, double, double, std::size_t, const char *> cases[] = {
        {noon, 100, 200, 2, "Apr Jul | 2024"},
        {noon, 90, 800, 2, "2025 2026 | "},
        {noon, 40, 1.0 / 24, 2, "12:00 13:00 | 2024-03-05"},
        {1.9, 40, 2.2 / 86400, 2, "00:00:02 | 1970-01-01"}, // the next step has no tick
        {secondsAt(2024, 12, 31, 64800), 60, 0.5, 3, "18:00 06:00 | "}};
    for (const auto &[from, length, days, ticks, want] : cases) {
        const AxisMarks marks = marksFor({.range = {from, from + 86400 * days}}, length);
        EXPECT_EQ(told(marks), want);
        EXPECT_EQ(marks.ticks.size(), ticks) << want;
    }
}

TEST(TimeTicks, AreAtStepsOfTheCalendar) {
    std::set<double> want; // in seconds, months negative
    for (double microseconds = 1e-6; microseconds < 0.5; microseconds *= 10)
        for (const int digit : {1, 2, 5}) want.insert(std::round(digit * microseconds * 1e6) / 1e6);
    for (const int seconds : {1, 2, 5, 10, 15, 30}) want.insert({1.0 * seconds, 60.0 * seconds});
    for (const int hours : {1, 2, 3, 6, 12, 24, 48, 7 * 24, 14 * 24}) want.insert(3600.0 * hours);
    for (const int months : {1, 3, 6}) want.insert(-months);
    for (const int years : {1, 2, 5, 10, 20, 50, 100, 200, 500, 1000, 2000, 5000})
        want.insert(-12.0 * years);
    std::set<double> got;
    for (const double length : {100, 150, 340, 700})
        for (double span = 1e-5; span < 3.15e11; span *= 1.1) {
            const double from = span < 1e9 ? 0 : secondsAt(1, 1, 1);
            const AxisMarks marks = timeMarksOf({}, scaleOf({}, {from, from + span}, length),
                                                {16, 24, 70}, [](auto &) { return true; });
            if (marks.ticks.size() < 2) continue;
            const double step = marks.ticks[1] - marks.ticks[0];
            got.insert(step < 27 * 86400.0 ? std::round(step * 1e6) / 1e6
                                           : -std::round(step / 86400 / 30.436875));
        }
    EXPECT_EQ(got, want);
}
