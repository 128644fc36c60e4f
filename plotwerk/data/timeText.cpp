#include "plotwerk/data/timeText.h"

#include "util/text/charclass.h"

#include <chrono>

namespace plotwerk {

// Reads exactly count digits; null when there are fewer.
static const char *readDigits(const char *p, int count, int *value) {
    *value = 0;
    for (; count > 0; --count, ++p) {
        if (!plw::isDigit(*p)) return nullptr;
        *value = 10 * *value + (*p - '0');
    }
    return p;
}

// Reads two digits behind the separator; behind nothing where that is NUL.
static const char *readPair(const char *p, char separator, int *value) {
    if (p == nullptr || (separator != '\0' && *p++ != separator)) return nullptr;
    return readDigits(p, 2, value);
}

// Nothing separates the parts of the basic format.
static const char *readDate(const char *p, double *seconds, bool *isBasic) {
    int year, month, day;
    p = readDigits(p, 4, &year);
    if (p == nullptr) return nullptr;
    const char separator = *p == '-' || *p == '/' ? *p : '\0';
    *isBasic = separator == '\0';
    p = readPair(p, separator, &month);
    p = readPair(p, separator, &day);
    if (p == nullptr || year == 0) return nullptr;

    const std::chrono::year_month_day date{std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    if (!date.ok()) return nullptr;
    *seconds =
        std::chrono::duration<double>(std::chrono::sys_days(date).time_since_epoch()).count();
    return p;
}

// Reads the fraction at p, and returns where it ends.
static const char *readFraction(const char *p, double *fraction) {
    double digits = 0, scale = 1;
    for (; plw::isDigit(*p); ++p) {
        if (scale >= 1e15) continue; // beyond what a double holds
        digits = 10 * digits + (*p - '0');
        scale *= 10;
    }
    *fraction = digits / scale;
    return p;
}

// Reads a zone at p, if there is one, and returns where it ends.
static const char *readZone(const char *p, int *seconds) {
    *seconds = 0;
    if (*p == 'Z' || *p == 'z') return p + 1;
    const char *sign = p;
    while (*sign == ' ') ++sign;
    if (*sign != '+' && (*sign != '-' || sign != p)) return p; // " -5" is the next number
    int hours, minutes;
    const char *end = readDigits(sign + 1, 2, &hours);
    if (end == nullptr) return p;
    const char *behind = readDigits(end + (*end == ':'), 2, &minutes);
    if (behind == nullptr) behind = end; // of an hour alone: minutes is 0
    if (hours > 23 || minutes > 59 || plw::isDigit(*behind) || *behind == '.') return p;
    if (sign != p && behind == end) return p; // " +5" likewise
    *seconds = (*sign == '-' ? -60 : 60) * (60 * hours + minutes);
    return behind;
}

// Reads AM or PM at p, if it makes sense of the hour, and returns where it ends.
static const char *readHalfOfDay(const char *p, int *hour) {
    const char *letter = p;
    while (*letter == ' ') ++letter;
    const bool isAm = *letter == 'A' || *letter == 'a';
    const bool isPm = *letter == 'P' || *letter == 'p';
    if ((!isAm && !isPm) || (letter[1] != 'M' && letter[1] != 'm')) return p;
    if (isPm ? *hour == 0 : *hour > 12) return p;
    if (*hour <= 12) *hour = *hour % 12 + (isPm ? 12 : 0); // else it is one of 24
    return letter + 2;
}

static const char *readClock(const char *p, char separator, bool decimalComma, double *seconds) {
    int hour, minute, second = 0, zone;
    double fraction = 0;
    p = readDigits(p, separator != '\0' && plw::isDigit(*p) && p[1] == separator ? 1 : 2, &hour);
    p = readPair(p, separator, &minute);
    if (p == nullptr) return nullptr;
    if (separator == '\0' ? plw::isDigit(*p) : *p == separator) {
        p = readPair(p, separator, &second);
        if (p == nullptr) return nullptr;
        if ((*p == '.' || (*p == ',' && decimalComma)) && plw::isDigit(p[1]))
            p = readFraction(p + 1, &fraction);
    }
    p = readHalfOfDay(p, &hour);
    const bool midnight = hour == 24 && minute == 0 && second == 0 && fraction == 0;
    if ((hour > 23 && !midnight) || minute > 59 || second > 60) return nullptr;
    p = readZone(p, &zone);
    *seconds = 3600 * hour + 60 * minute + second - zone + fraction;
    return p;
}

const char *readTimeOfDay(const char *p, bool decimalComma, double *seconds) {
    return readClock(p, ':', decimalComma, seconds);
}

const char *readTime(const char *p, bool decimalComma, double *seconds, bool *isDate) {
    bool isBasic;
    p = readDate(p, seconds, &isBasic);
    if (p == nullptr) return nullptr;
    *isDate = true;
    const char *time = p;
    if (*time == 'T' || *time == 't')
        ++time;
    else
        while (*time == ' ' && !isBasic) ++time;
    double sinceMidnight;
    const char *end =
        time == p ? nullptr : readClock(time, isBasic ? '\0' : ':', decimalComma, &sinceMidnight);
    if (end == nullptr) return isBasic ? nullptr : p; // digits alone are a number
    *isDate = false;
    *seconds += sinceMidnight;
    return end;
}

} // namespace plotwerk
