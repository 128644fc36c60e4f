#include "client/answer.h"

#include <cstdarg>
#include <cstdio>

void answer(const char *format, ...) {
    va_list values;
    va_start(values, format);
    std::vprintf(format, values);
    va_end(values);
    std::fflush(stdout);
}
