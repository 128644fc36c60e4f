// timeTicks.h - ticks and numbers of an axis whose values are points in time: seconds since
// 1970-01-01, in UTC.
#ifndef PLOTWERK_DRAWING_TIMETICKS_H
#define PLOTWERK_DRAWING_TIMETICKS_H

#include "plotwerk/drawing/ticks.h"

namespace plotwerk {

// Whether the scale can have dates and times: linear, within the years 1 to 9999, and not so short
// that doubles tell less than a microsecond apart.
bool isTimeScale(const Scale &scale);

// Ticks at steps of the calendar, from microseconds to thousands of years, days and longer ones at
// midnight, weeks on Mondays; or at multiples of the axis's increment, in seconds, since 1970. The
// numbers are as short as the steps allow: 12:30:05.250, 12:30, Mar 5, Mar or 2024. What they don't
// tell, the date or the year (2023–2024 from one to the next), is common to them; where it isn't,
// they tell it: at midnight the date stands for the time, and over a year and more dates are
// 2024-03-05 or 2024-03.
AxisMarks timeMarksOf(const Axis &axis, const Scale &scale, const NumberSpacing &spacing,
                      const NumbersFit &fit);

} // namespace plotwerk

#endif
