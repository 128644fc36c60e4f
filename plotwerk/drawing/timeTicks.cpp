#include "plotwerk/drawing/timeTicks.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

namespace plotwerk {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

static constexpr std::int64_t secondsOfDay = 86400;
static constexpr double shortestSpan = 1e-5; // ten ticks of the finest step
static constexpr int mostDecimals = 6;       // of seconds: microseconds in 2024 need 16 digits

static sys_days dayOf(int year, unsigned month) {
    return std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(1);
}

static double secondsOf(sys_days day) {
    return static_cast<double>(day.time_since_epoch().count() * secondsOfDay);
}

static year_month_day dateOf(std::int64_t day) {
    return sys_days(days(day));
}

bool isTimeScale(const Scale &scale) {
    return !scale.logarithmic && scale.min >= secondsOf(dayOf(1, 1)) &&
           scale.max <= secondsOf(dayOf(9999, 12)) && scale.max - scale.min >= shortestSpan;
}

namespace {

// A number of seconds or of months; years are twelve months.
struct TimeStep {
    double seconds = 0;
    int months = 0;
    double origin = 0; // a tick, in seconds

    double meanSeconds() const { return months > 0 ? months * 30.436875 * secondsOfDay : seconds; }
};

constexpr double minute = 60;
constexpr double hour = 3600;
constexpr double day = secondsOfDay;
constexpr double firstMonday = 4 * day; // 1970-01-05
constexpr int yearOfMonths = 12;

constexpr TimeStep steps[] = {{1e-6},
                              {2e-6},
                              {5e-6},
                              {1e-5},
                              {2e-5},
                              {5e-5},
                              {1e-4},
                              {2e-4},
                              {5e-4},
                              {1e-3},
                              {2e-3},
                              {5e-3},
                              {0.01},
                              {0.02},
                              {0.05},
                              {0.1},
                              {0.2},
                              {0.5},
                              {1},
                              {2},
                              {5},
                              {10},
                              {15},
                              {30},
                              {1 * minute},
                              {2 * minute},
                              {5 * minute},
                              {10 * minute},
                              {15 * minute},
                              {30 * minute},
                              {1 * hour},
                              {2 * hour},
                              {3 * hour},
                              {6 * hour},
                              {12 * hour},
                              {1 * day},
                              {2 * day},
                              {7 * day, 0, firstMonday},
                              {14 * day, 0, firstMonday},
                              {0, 1},
                              {0, 3},
                              {0, 6},
                              {0, 1 * yearOfMonths},
                              {0, 2 * yearOfMonths},
                              {0, 5 * yearOfMonths},
                              {0, 10 * yearOfMonths},
                              {0, 20 * yearOfMonths},
                              {0, 50 * yearOfMonths},
                              {0, 100 * yearOfMonths},
                              {0, 200 * yearOfMonths},
                              {0, 500 * yearOfMonths},
                              {0, 1000 * yearOfMonths},
                              {0, 2000 * yearOfMonths},
                              {0, 5000 * yearOfMonths}};

} // namespace

// Months since the beginning of the year 0.
static int monthsBefore(double seconds) {
    const auto date = dateOf(static_cast<std::int64_t>(std::floor(seconds / day)));
    return static_cast<int>(date.year()) * 12 + static_cast<int>(unsigned(date.month())) - 1;
}

static double beginOfMonth(int months) {
    return secondsOf(dayOf(months / 12, static_cast<unsigned>(months % 12 + 1)));
}

static std::vector<double> ticksAt(const TimeStep &step, const Scale &scale) {
    std::vector<double> ticks;
    if (step.months > 0) {
        const int last = monthsBefore(scale.max) + step.months;
        for (int at = monthsBefore(scale.min) / step.months * step.months; at <= last;
             at += step.months)
            if (const double tick = beginOfMonth(at); isOnAxis(tick, scale)) ticks.push_back(tick);
        return ticks;
    }
    if (step.origin == 0) return multiplesOf(step.seconds, scale);
    const double first = std::floor((scale.min - step.origin) / step.seconds);
    const int count = static_cast<int>(std::ceil((scale.max - scale.min) / step.seconds)) + 1;
    for (int k = 0; k <= count; ++k)
        if (const double tick = step.origin + (first + k) * step.seconds; isOnAxis(tick, scale))
            ticks.push_back(tick);
    return ticks;
}

namespace {

// A point in time, in parts of a second that are whole numbers.
struct CalendarTime {
    year_month_day date;
    std::int64_t secondsOfDay = 0;
    std::int64_t parts = 0; // 10^-decimals s
    std::int64_t dayNumber = 0;

    bool midnight() const { return secondsOfDay == 0 && parts == 0; }
};

// What the numbers of an axis show.
enum class Shown { years, months, days, minutes, seconds };

} // namespace

static CalendarTime calendarTime(double seconds, int decimals) {
    const auto perSecond = static_cast<std::int64_t>(std::pow(10.0, decimals));
    const std::int64_t all = std::llround(seconds * static_cast<double>(perSecond));
    const std::int64_t perDay = secondsOfDay * perSecond;
    const std::int64_t number = all / perDay - (all % perDay < 0);
    const std::int64_t rest = all - number * perDay;
    return {dateOf(number), rest / perSecond, rest % perSecond, number};
}

template<class... Number> static std::string printed(const char *format, Number... numbers) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, static_cast<int>(numbers)...);
    return text.data();
}

static std::string yearOf(const CalendarTime &time) {
    return printed("%d", static_cast<int>(time.date.year()));
}

static std::string yearsOf(const CalendarTime &first, const CalendarTime &last) {
    const std::string year = yearOf(first);
    return first.date.year() == last.date.year() ? year : year + "\u2013" + yearOf(last);
}

static std::string monthOf(const CalendarTime &time) {
    static constexpr const char *names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return names[unsigned(time.date.month()) - 1];
}

static std::string dayText(const CalendarTime &time, bool withYear) {
    if (!withYear) return monthOf(time) + printed(" %d", unsigned(time.date.day()));
    return printed("%d-%02d-%02d", static_cast<int>(time.date.year()), unsigned(time.date.month()),
                   unsigned(time.date.day()));
}

static std::string timeText(const CalendarTime &time, Shown shown, int decimals) {
    std::string text = printed("%02d:%02d", time.secondsOfDay / 3600, time.secondsOfDay / 60 % 60);
    if (shown == Shown::minutes) return text;
    text += printed(":%02d", time.secondsOfDay % 60);
    return decimals > 0 ? text + printed(".%0*d", decimals, time.parts) : text;
}

static Shown shownAt(const TimeStep &step) {
    if (step.months > 0) return step.months % 12 == 0 ? Shown::years : Shown::months;
    if (step.seconds >= day) return Shown::days;
    return std::fmod(step.seconds, minute) == 0 ? Shown::minutes : Shown::seconds;
}

// Of seconds: as many as the step has.
static int decimalsOf(const TimeStep &step, int precision) {
    int decimals = std::clamp(precision, 0, mostDecimals);
    if (step.months > 0) return 0;
    const auto isWhole = [&] {
        const double parts = step.seconds * std::pow(10.0, decimals);
        return std::abs(parts - std::round(parts)) < 1e-6 * parts;
    };
    while (decimals < mostDecimals && !isWhole()) ++decimals;
    return decimals;
}

static RichText plain(std::string text) {
    TextRun run;
    run.text = std::move(text);
    return {run};
}

// Numbers at the ticks, and what is common to them.
static void setNumbers(const TimeStep &step, int precision, AxisMarks &marks) {
    const Shown shown = shownAt(step);
    const int decimals = shown == Shown::seconds ? decimalsOf(step, precision) : 0;
    marks.numbers.clear();
    marks.common.clear();
    if (marks.ticks.empty()) return;
    const CalendarTime first = calendarTime(marks.ticks.front(), decimals);
    const CalendarTime last = calendarTime(marks.ticks.back(), decimals);
    const bool oneDay = first.dayNumber == last.dayNumber;
    const bool times = shown == Shown::minutes || shown == Shown::seconds;
    constexpr int daysOfYear = 365;
    const bool oneYear = times ? first.date.year() == last.date.year()
                               : last.dayNumber - first.dayNumber < daysOfYear;
    if (times && oneDay)
        marks.common = plain(dayText(first, true));
    else if (shown != Shown::years && oneYear)
        marks.common = plain(yearsOf(first, last));

    for (const double tick : marks.ticks) {
        const CalendarTime time = calendarTime(tick, decimals);
        std::string text;
        if (shown == Shown::years)
            text = yearOf(time);
        else if (shown == Shown::months)
            text = oneYear ? monthOf(time)
                           : yearOf(time) + printed("-%02d", unsigned(time.date.month()));
        else if (shown == Shown::days || (time.midnight() && !oneDay))
            text = dayText(time, !oneYear);
        else
            text = timeText(time, shown, decimals);
        marks.numbers.push_back({tick, plain(std::move(text))});
    }
}

// The finest step that divides this one into at most mostParts parts.
static std::optional<TimeStep> divided(const TimeStep &step, double mostParts, double distance) {
    for (const TimeStep &finer : steps) {
        const double parts = step.meanSeconds() / finer.meanSeconds();
        if (parts > mostParts + 1e-9 || distance / parts < leastSmallTickDistance) continue;
        if (parts < 1.5) break;
        const bool whole = step.months > 0 ? finer.months > 0 && step.months % finer.months == 0
                                           : std::abs(parts - std::round(parts)) < 1e-9;
        if (whole && finer.origin == 0) return finer;
    }
    return std::nullopt;
}

// Small ticks at the finest step of the calendar (days or Mondays in months), or as many to each
// step as the axis asks for.
static std::vector<double> smallTicks(const Axis &axis, const TimeStep &step, const Scale &scale,
                                      const std::vector<double> &ticks) {
    const double distance = scale.length * step.meanSeconds() / (scale.max - scale.min);
    std::vector<double> small;
    if (axis.ticks >= 0 && distance / (axis.ticks + 1) >= leastGivenTickDistance) {
        Scale wider = scale;
        wider.min = std::max(scale.min - step.meanSeconds() * 1.1, secondsOf(dayOf(1, 1)));
        wider.max = scale.max + step.meanSeconds() * 1.1;
        wider.length = wider.factor * (wider.max - wider.min);
        const std::vector<double> around = ticksAt(step, wider);
        for (std::size_t i = 1; i < around.size(); ++i)
            for (int part = 1; part <= axis.ticks; ++part)
                small.push_back(
                    std::lerp(around[i - 1], around[i], double(part) / (axis.ticks + 1)));
    } else if (const auto finer = divided(step, 12, distance)) {
        small = ticksAt(*finer, scale);
    } else if (step.months == 1) {
        const bool roomForDays = distance >= 31 * leastSmallTickDistance;
        small = ticksAt(roomForDays ? TimeStep{day} : TimeStep{7 * day, 0, firstMonday}, scale);
    }
    std::erase_if(small, [&](double value) {
        return !isOnAxis(value, scale) || std::ranges::binary_search(ticks, value);
    });
    return small;
}

// The widest step with enough ticks, but none finer than spacing.close allows.
static std::size_t chosenStep(const Scale &scale, const NumberSpacing &spacing) {
    const double least = spacing.close * (scale.max - scale.min) / scale.length;
    std::size_t chosen = 0;
    while (chosen + 1 < std::size(steps) && steps[chosen].meanSeconds() < least) ++chosen;
    while (chosen + 1 < std::size(steps) &&
           static_cast<double>(ticksAt(steps[chosen + 1], scale).size()) >=
               spacing.least(scale.length))
        ++chosen;
    return chosen;
}

AxisMarks timeMarksOf(const Axis &axis, const Scale &scale, const NumberSpacing &spacing,
                      const NumbersFit &fit) {
    AxisMarks marks;
    if (isUsableIncrement(axis.increment, scale)) {
        const TimeStep step{axis.increment};
        marks.ticks = ticksAt(step, scale);
        if (!marks.ticks.empty()) {
            setNumbers(step, axis.precision, marks);
            marks.numbers =
                thinned(marks.numbers, std::round(marks.ticks.front() / step.seconds), fit);
            marks.smallTicks = smallTicks(axis, step, scale, marks.ticks);
            return marks;
        }
    }

    const std::size_t chosen = chosenStep(scale, spacing);
    const auto markAt = [&](std::size_t index) {
        marks.ticks = ticksAt(steps[index], scale);
        setNumbers(steps[index], axis.precision, marks);
    };
    std::size_t step = chosen;
    for (markAt(step); marks.numbers.size() > 1 && !fit(marks.numbers);) markAt(++step);
    if (marks.numbers.size() < 3) {
        // times are long: rather a part of them, or those of a finer step
        step = chosen;
        for (markAt(step); marks.ticks.size() < 2 && step > 0;) markAt(--step);
        const double first = steps[step].months > 0 ? 0 : marks.ticks.front() / steps[step].seconds;
        marks.numbers = thinned(marks.numbers, std::round(first), fit);
    }
    marks.smallTicks = smallTicks(axis, steps[step], scale, marks.ticks);
    return marks;
}

} // namespace plotwerk
