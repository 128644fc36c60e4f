// evaluator.h - runs a tape over blocks of points.
#ifndef PLOTWERK_FORMULA_EVALUATOR_H
#define PLOTWERK_FORMULA_EVALUATOR_H

#include "plotwerk/formula/kernels.h"
#include "plotwerk/formula/tape.h"

#include <span>
#include <vector>

namespace plotwerk {

// What a formula reads, one element per point: y and columns only where it does.
struct Inputs {
    std::span<const double> x;
    std::span<const double> y{};
    std::vector<std::span<const double>> columns{};
};

// How many points an evaluator takes at a time: as many as keep a short formula, with its
// derivatives, in the first-level cache, and one of common length in the second-level cache.
template<class Real> int blockSizeFor(const Tape &formula);

// Values, and exact derivatives by all parameters and by y in one backward run (reverse
// accumulation), at up to blockSize() points at a time. Nothing is allocated after construction.
// Real is double or long double. The tape must outlive the evaluator.
template<class Real> class Evaluator {
  public:
    explicit Evaluator(const Tape &formula);

    int blockSize() const { return block; }

    // To be called before values(). One number per parameter of the tape.
    void setParameters(std::span<const Real> parameters);

    // The formula at n <= blockSize() points from the first one on; valid until the next call.
    const Real *values(const Inputs &inputs, int first, int n);

    // Computes the derivatives at the points of the last values(); derivative(j) gives them.
    void differentiate();

    // The derivatives by parameter j, one for each point.
    const Real *derivative(int j) const { return adjointOf(tape->parameters[j]); }

    // Those by y, which the formula must use.
    const Real *derivativeByY() const { return adjointOf(tape->y); }

  private:
    void compute(const Instruction &instruction, Real *out, int n);
    Real *valueOf(int k) { return values_.data() + static_cast<long>(k) * block; }
    const Real *valueOrNull(int k) { return k < 0 ? nullptr : valueOf(k); }
    Real *adjointOf(int k) { return adjoints.data() + static_cast<long>(k) * block; }
    const Real *adjointOf(int k) const { return adjoints.data() + static_cast<long>(k) * block; }

    const Tape *tape;
    int block;
    int points = 0;
    std::vector<Real> values_;
    std::vector<Real> adjoints;
    std::vector<AdjointSum<Real>> sums; // of adjoints, one for each instruction
};

} // namespace plotwerk

#endif
