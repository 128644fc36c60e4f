#include "plotwerk/formula/evaluationTime.h"

#include "plotwerk/formula/evaluator.h"

#include <type_traits>

namespace plotwerk {

namespace {

struct OperationTime {
    EvaluationTime ofDouble;
    EvaluationTime ofExtended;
};

} // namespace

// Sines take longest far from 0, gamma and powers at negative numbers, and extended numbers at
// infinities.
static OperationTime timeOf(Operation operation) {
    switch (operation) {
    case Operation::exp:
    case Operation::log:
    case Operation::log1p:
    case Operation::log2:
    case Operation::log10:
    case Operation::asin:
    case Operation::acos:
    case Operation::atan: return {{18, 3}, {250, 15}};
    case Operation::expm1:
    case Operation::sinh:
    case Operation::cosh:
    case Operation::tanh:
    case Operation::erf:
    case Operation::erfc: return {{26, 27}, {260, 350}};
    case Operation::sin:
    case Operation::cos: return {{80, 80}, {260, 290}};
    case Operation::tan: return {{105, 3}, {260, 15}};
    case Operation::power: return {{42, 80}, {1000, 1200}};
    case Operation::atan2: return {{42, 11}, {90, 55}};
    case Operation::gamma: return {{200, 46}, {1350, 300}};
    case Operation::lgamma: return {{115, 46}, {530, 250}};
    case Operation::divide:
    case Operation::sqrt:
    case Operation::floor:
    case Operation::ceil:
    case Operation::round:
    case Operation::sign:
    case Operation::logicalNot:
    case Operation::logicalAnd:
    case Operation::logicalOr: return {{3, 6}, {20, 33}};
    default: return {{1, 2.5}, {15, 22}};
    }
}

template<class Real> EvaluationTime evaluationTime(const Tape &tape) {
    const double perBlock = 10.0 / blockSizeFor<Real>(tape);
    EvaluationTime time;
    for (const Instruction &each : tape.instructions) {
        const OperationTime both = timeOf(each.operation);
        const EvaluationTime &one = std::is_same_v<Real, double> ? both.ofDouble : both.ofExtended;
        if (each.varying) time.values += one.values;
        if (each.active) time.derivatives += one.derivatives;
        time.values += perBlock;
        time.derivatives += perBlock;
    }
    return time;
}

template EvaluationTime evaluationTime<double>(const Tape &);
template EvaluationTime evaluationTime<long double>(const Tape &);

} // namespace plotwerk
