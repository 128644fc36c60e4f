// refusalOf.h - why work is refused.
#ifndef TESTS_PLOTWERK_BASE_REFUSALOF_H
#define TESTS_PLOTWERK_BASE_REFUSALOF_H

#include "plotwerk/base/refusal.h"

#include <string>

// Empty when it is done.
template<class Work> std::string refusalOf(Work work) {
    try {
        work();
        return "";
    } catch (const plotwerk::Refusal &refusal) {
        return refusal.what();
    }
}

#endif
