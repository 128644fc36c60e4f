// answer.h - answers on the standard output, each flushed at once for whoever reads the pipe.
#ifndef CALLPLW_ANSWER_H
#define CALLPLW_ANSWER_H

// Prints as printf does.
[[gnu::format(printf, 1, 2)]] void answer(const char *format, ...);

#endif
