// evaluationTime.h - what it costs to compute a formula.
#ifndef PLOTWERK_FORMULA_EVALUATIONTIME_H
#define PLOTWERK_FORMULA_EVALUATIONTIME_H

#include "plotwerk/formula/tape.h"

namespace plotwerk {

// CPU time at one point, in nanoseconds: at the arguments that take longest, and a third more.
struct EvaluationTime {
    double values = 0;
    double derivatives = 0; // beside the values
};

// Of a formula that an Evaluator<Real> computes; Real is double or long double.
template<class Real> EvaluationTime evaluationTime(const Tape &tape);

} // namespace plotwerk

#endif
