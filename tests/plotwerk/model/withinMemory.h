// withinMemory.h - work in a process that may have little more memory than it has.
#ifndef TESTS_PLOTWERK_MODEL_WITHINMEMORY_H
#define TESTS_PLOTWERK_MODEL_WITHINMEMORY_H

#include "plotwerk/base/refusal.h"

#include <fstream>
#include <new>
#include <sys/resource.h>
#include <unistd.h>

// Ends the process: 0 when the work is done or refused, 1 when it finds no memory.
template<class Work> [[noreturn]] void doWithin(rlim_t bytes, Work work) {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const rlim_t most = pages * static_cast<rlim_t>(getpagesize()) + bytes;
    const rlimit limit{most, most};
    setrlimit(RLIMIT_AS, &limit);
    try {
        work();
    } catch (const std::bad_alloc &) {
        _exit(1);
    } catch (const plotwerk::Refusal &) {
    }
    _exit(0);
}

inline bool isDoneOrRefused(int status) {
    return WIFEXITED(status) && WEXITSTATUS(status) <= 1;
}

#endif
