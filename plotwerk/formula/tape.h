// tape.h - a formula as a flat list of instructions, each computing one value from earlier ones.
#ifndef PLOTWERK_FORMULA_TAPE_H
#define PLOTWERK_FORMULA_TAPE_H

#include <array>
#include <map>
#include <tuple>
#include <vector>

namespace plotwerk {

// clang-format off
enum class Operation : unsigned char {
    // leaves
    constant, variableX, variableY, variableColumn, parameter,
    // of one value
    negate, logicalNot, exp, expm1, log, log1p, log2, log10, sqrt, sin, cos, tan, asin, acos, atan,
    sinh, cosh, tanh, abs, erf, erfc, gamma, lgamma, floor, ceil, round, sign,
    // of two values
    add, subtract, multiply, divide, power, atan2, minimum, maximum,
    less, lessEqual, greater, greaterEqual, equal, notEqual, logicalAnd, logicalOr,
    // of three values
    choose
};
// clang-format on

using Operands = std::array<int, 3>; // instructions whose values are taken; -1: none

struct Instruction {
    Operation operation;
    Operands operands{-1, -1, -1};
    int index = -1;       // of the constant, of the parameter or of the column
    bool varying = false; // differs from point to point: depends on x, y or a column
    bool active = false;  // depends on a parameter or on y
};

// Instruction k computes value k. The formula's value is that of `result`.
struct Tape {
    std::vector<Instruction> instructions;
    std::vector<long double> constants;
    std::vector<int> parameters; // parameters[j]: the instruction that holds parameter j
    int y = -1;                  // the instruction that holds y; -1: the formula doesn't use it
    int result = -1;
};

// Appends to a tape. What is on it already is not computed twice, and what depends on constants
// alone is computed now.
class TapeBuilder {
  public:
    int constant(long double value);
    int variable(Operation which, int column = -1);
    int newParameter();
    int apply(Operation operation, Operands operands);

    // Hands the tape over; the builder is empty then.
    Tape finish(int result);

    int size() const { return static_cast<int>(tape.instructions.size()); }

  private:
    int append(const Instruction &instruction);
    int wholePower(int base, int exponent);
    bool isConstant(int k) const {
        return k < 0 || tape.instructions[k].operation == Operation::constant;
    }
    long double constantAt(int k) const {
        return k < 0 ? 0 : tape.constants[tape.instructions[k].index];
    }

    Tape tape;
    std::map<std::tuple<Operation, Operands, int>, int> known;
    std::map<long double, int> knownConstants;
};

} // namespace plotwerk

#endif
