// askedToEnd.h - a process that is asked to end, and has not heard it yet.
#ifndef TESTS_PLOTWERK_BASE_ASKEDTOEND_H
#define TESTS_PLOTWERK_BASE_ASKEDTOEND_H

#include <csignal>

// As long as it lives SIGTERM waits to be taken. When it doesn't come now, it has to come later.
struct AskedToEnd {
    explicit AskedToEnd(bool now = true) {
        sigaddset(&ends, SIGTERM);
        sigprocmask(SIG_BLOCK, &ends, nullptr);
        if (now) raise(SIGTERM);
    }
    ~AskedToEnd() {
        int taken = 0;
        sigwait(&ends, &taken);
        sigprocmask(SIG_UNBLOCK, &ends, nullptr);
    }
    sigset_t ends{};
};

#endif
