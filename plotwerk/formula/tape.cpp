#include "plotwerk/formula/tape.h"

#include "plotwerk/formula/kernels.h"

#include <cmath>
#include <utility>

namespace plotwerk {

int TapeBuilder::append(const Instruction &instruction) {
    const auto key = std::tuple{instruction.operation, instruction.operands, instruction.index};
    const auto [found, isNew] = known.try_emplace(key, size());
    if (isNew) tape.instructions.push_back(instruction);
    return found->second;
}

int TapeBuilder::constant(long double value) {
    // NaN and the two zeros are not told apart by the map's order
    const bool unordered = std::isnan(value) || value == 0;
    const int next = static_cast<int>(tape.constants.size());
    const int index = unordered ? next : knownConstants.try_emplace(value, next).first->second;
    if (index == next) tape.constants.push_back(value);

    Instruction leaf{Operation::constant};
    leaf.index = index;
    return append(leaf);
}

int TapeBuilder::variable(Operation which, int column) {
    Instruction leaf{which};
    leaf.index = column;
    leaf.varying = true;
    leaf.active = which == Operation::variableY;
    const int k = append(leaf);
    if (leaf.active) tape.y = k;
    return k;
}

int TapeBuilder::newParameter() {
    Instruction leaf{Operation::parameter};
    leaf.index = static_cast<int>(tape.parameters.size());
    leaf.active = true;
    const int k = append(leaf);
    tape.parameters.push_back(k);
    return k;
}

// Squares and cubes, without a call of pow for every point.
int TapeBuilder::wholePower(int base, int exponent) {
    const int square = apply(Operation::multiply, {base, base, -1});
    return exponent == 2 ? square : apply(Operation::multiply, {square, base, -1});
}

int TapeBuilder::apply(Operation operation, Operands operands) {
    const auto [a, b, c] = operands;
    if (isConstant(a) && isConstant(b) && isConstant(c)) {
        const long double from[3] = {constantAt(a), constantAt(b), constantAt(c)};
        long double value = 0;
        computeValues(operation, {&from[0], &from[1], &from[2]}, &value, 1);
        return constant(value);
    }
    if (operation == Operation::power && isConstant(b)) {
        const long double exponent = constantAt(b);
        if (exponent == 1) return a;
        if (exponent == 2 || exponent == 3) return wholePower(a, static_cast<int>(exponent));
    }

    Instruction instruction{operation, operands};
    for (int k : operands) {
        if (k < 0) continue;
        instruction.varying |= tape.instructions[k].varying;
        instruction.active |= tape.instructions[k].active;
    }
    return append(instruction);
}

Tape TapeBuilder::finish(int result) {
    tape.result = result;
    known.clear();
    knownConstants.clear();
    return std::exchange(tape, {});
}

} // namespace plotwerk
