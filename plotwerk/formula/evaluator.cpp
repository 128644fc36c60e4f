#include "plotwerk/formula/evaluator.h"

#include <algorithm>
#include <cstddef>

namespace plotwerk {

template<class Real> int blockSizeFor(const Tape &formula) {
    constexpr std::size_t most = 1024 / sizeof(Real);
    const std::size_t fitting = 64 * most / (formula.instructions.size() + 1);
    return static_cast<int>(std::clamp<std::size_t>(fitting, 8, most));
}

template<class Real>
Evaluator<Real>::Evaluator(const Tape &formula)
    : tape(&formula),
      block(blockSizeFor<Real>(formula)),
      values_(formula.instructions.size() * block) {
    for (int k = 0; const Instruction &instruction : tape->instructions) {
        if (instruction.operation == Operation::constant)
            std::fill_n(valueOf(k), block, static_cast<Real>(tape->constants[instruction.index]));
        ++k;
    }
}

template<class Real>
void Evaluator<Real>::compute(const Instruction &instruction, Real *out, int n) {
    const auto [a, b, c] = instruction.operands;
    computeValues<Real>(instruction.operation, {valueOrNull(a), valueOrNull(b), valueOrNull(c)},
                        out, n);
}

template<class Real> void Evaluator<Real>::setParameters(std::span<const Real> parameters) {
    for (int k = 0; const Instruction &instruction : tape->instructions) {
        Real *out = valueOf(k++);
        if (instruction.varying || instruction.operation == Operation::constant) continue;

        // the same at every point: computed once, for whole blocks
        if (instruction.operation == Operation::parameter)
            *out = parameters[instruction.index];
        else
            compute(instruction, out, 1);
        std::fill_n(out + 1, block - 1, *out);
    }
}

template<class Real> const Real *Evaluator<Real>::values(const Inputs &inputs, int first, int n) {
    points = n;
    for (int k = 0; const Instruction &instruction : tape->instructions) {
        Real *out = valueOf(k++);
        if (instruction.operation == Operation::variableX)
            std::copy_n(inputs.x.data() + first, n, out);
        else if (instruction.operation == Operation::variableY)
            std::copy_n(inputs.y.data() + first, n, out);
        else if (instruction.operation == Operation::variableColumn)
            std::copy_n(inputs.columns[instruction.index].data() + first, n, out);
        else if (instruction.varying)
            compute(instruction, out, n);
    }
    return valueOf(tape->result);
}

template<class Real> void Evaluator<Real>::differentiate() {
    adjoints.resize(values_.size());
    sums.clear();
    for (int k = 0; k < std::ssize(tape->instructions); ++k) sums.push_back({adjointOf(k), false});
    std::fill_n(adjointOf(tape->result), points, Real(1));
    sums[tape->result].begun = true;

    for (int k = static_cast<int>(sums.size()) - 1; k >= 0; --k) {
        const Instruction &instruction = tape->instructions[k];
        if (!instruction.active) continue;
        if (instruction.operation <= Operation::parameter) {
            if (!sums[k].begun) std::fill_n(adjointOf(k), points, Real(0));
            continue;
        }
        if (!sums[k].begun) continue; // the result doesn't depend on it

        std::array<const Real *, 3> from{};
        std::array<AdjointSum<Real> *, 3> to{};
        for (int o = 0; o < 3; ++o) {
            const int operand = instruction.operands[o];
            from[o] = valueOrNull(operand);
            if (operand >= 0 && tape->instructions[operand].active) to[o] = &sums[operand];
        }
        propagateAdjoints<Real>(instruction.operation, from, valueOf(k), adjointOf(k), to, points);
    }
}

template int blockSizeFor<double>(const Tape &);
template int blockSizeFor<long double>(const Tape &);
template class Evaluator<double>;
template class Evaluator<long double>;

} // namespace plotwerk
