// askedToEnd.h - a process that is asked to end, and has not heard it yet.
#ifndef TESTS_PLOTWERK_BASE_ASKEDTOEND_H
#define TESTS_PLOTWERK_BASE_ASKEDTOEND_H

#include <csignal>

// As long as it lives SIGTERM waits to be taken.
struct AskedToEnd {
    AskedToEnd() {
        sigaddset(&ends, SIGTERM);
        sigprocmask(SIG_BLOCK, &ends, nullptr);
        raise(SIGTERM);
    }
    ~AskedToEnd() {
        int taken = 0;
        sigwait(&ends, &taken);
        sigprocmask(SIG_UNBLOCK, &ends, nullptr);
    }
    sigset_t ends{};
};

#endif
