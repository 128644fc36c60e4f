// timer.h - a stopwatch on the wall clock.
#ifndef PLW_UTIL_TIME_TIMER_H
#define PLW_UTIL_TIME_TIMER_H

namespace plw {

// The wall clock's time in seconds, in steps of a microsecond.
double startTimer();

// Seconds since startTimer returned start, by the wall clock: wrong, even negative, when that was
// set in between.
double stopTimer(double start);

} // namespace plw

#endif
