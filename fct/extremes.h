// extremes.h - the single steps of the searches for crossings and extremes, for those who need all.
#ifndef PLW_FCT_EXTREMES_H
#define PLW_FCT_EXTREMES_H

#include "fct/fct.h"

namespace plw {

// Whether y[i], with a neighbour on both sides, is a local extreme as nextExtreme has it.
bool isExtreme(const double *y, int i);

// Index of the first sample from `start` on between which and the next f takes the value, and the
// position of the crossing in *t; -1 and *t left alone if there is none. The products of tiny
// differences underflow to 0: then it is no crossing, and *t may lie anywhere.
int crossingFrom(const Fct *f, int start, double value, double *t);

} // namespace plw

#endif
