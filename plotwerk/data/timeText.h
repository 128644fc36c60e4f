// timeText.h - dates and times as ISO 8601 writes them.
#ifndef PLOTWERK_DATA_TIMETEXT_H
#define PLOTWERK_DATA_TIMETEXT_H

namespace plotwerk {

// Reads a date, or a date and a time, at p and returns where it ends; null when none begins there.
// *seconds becomes the time since 1970-01-01 UTC, leap seconds aside. *isDate: the date stands
// alone. Years have four digits, 0001 to 9999, and days are those of the Gregorian calendar.
// "2024/02/29" is read as "2024-02-29", and in basic format "20240229T123456", whose date can't
// stand alone. The time follows after a 'T' or blanks, has hours and
// minutes, may have seconds with any fraction behind a point, or behind a comma where that is
// decimal, and a zone (Z, +01, +0100, +01:00). Without a zone it is UTC. As many instruments write
// it, "9:30" is read as "09:30", and "9:30 PM" as "21:30".
const char *readTime(const char *p, bool decimalComma, double *seconds, bool *isDate);

// Reads a time of day with its zone, as above, at p and returns where it ends; null when none
// begins there. *seconds becomes the time since midnight UTC.
const char *readTimeOfDay(const char *p, bool decimalComma, double *seconds);

} // namespace plotwerk

#endif
