// kernels.h - values and derivatives of the formula's operations over a block of points.
#ifndef PLOTWERK_FORMULA_KERNELS_H
#define PLOTWERK_FORMULA_KERNELS_H

#include "plotwerk/formula/tape.h"

#include <array>

namespace plotwerk {

// out[i] = operation(from[0][i], from[1][i], from[2][i]) for 0 <= i < n. NaN in gives NaN out, but
// for comparisons, which are false (!= true) as in C. Only for operations that have operands.
template<class Real>
void computeValues(Operation operation, std::array<const Real *, 3> from, Real *out, int n);

// The adjoint of a value, one sum for each point. Until it has begun nothing has been added, and
// its values are anything.
template<class Real> struct AdjointSum {
    Real *values;
    bool begun;
};

// Adds the contributions of the result's adjoint to those of the operands, wherever to[k] isn't
// null: to point i of to[k], adjoint[i] * d out / d from[k] at that point. An adjoint of 0
// contributes 0 even through an infinite derivative: neither the branch that `if` did not take nor
// the smaller argument of max counts. Steps and corners (floor, sign, comparisons, abs at 0) have
// the derivative 0.
template<class Real>
void propagateAdjoints(Operation operation, std::array<const Real *, 3> from, const Real *out,
                       const Real *adjoint, std::array<AdjointSum<Real> *, 3> to, int n);

} // namespace plotwerk

#endif
