// completeness.h - what every search, evaluation and integral asks of a function first.
#ifndef PLW_FCT_COMPLETENESS_H
#define PLW_FCT_COMPLETENESS_H

#include "fct/fct.h"
#include "util/files/fatal.h"

namespace plw {

// Ends the process with the message and n if the function is of fixed length and not full.
inline void requireComplete(const Fct *f, const char *message) {
    if (f->fixedLen && f->n != f->size) myexit(message, f->n);
}

} // namespace plw

#endif
