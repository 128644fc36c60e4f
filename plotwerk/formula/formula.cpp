#include "plotwerk/formula/formula.h"

#include "plotwerk/formula/evaluator.h"
#include "plotwerk/formula/parser.h"

#include <algorithm>
#include <utility>

namespace plotwerk {

Formula::Formula(std::string_view text) {
    Parser parser(text);
    compiled = parser.parse();
    names = parser.parameterNames();
    readsY = std::ranges::any_of(compiled.instructions, [](const Instruction &instruction) {
        return instruction.operation == Operation::variableY;
    });
}

void Formula::evaluate(std::span<const double> x, std::span<const double> y,
                       std::span<const double> parameters, std::span<double> out) const {
    Evaluator<double> evaluator(compiled);
    evaluator.setParameters(parameters);
    const int n = static_cast<int>(x.size());
    for (int i = 0; i < n; i += evaluator.blockSize()) {
        const int count = std::min(evaluator.blockSize(), n - i);
        const double *values =
            evaluator.values(x.data() + i, readsY ? y.data() + i : nullptr, count);
        std::copy_n(values, count, out.data() + i);
    }
}

} // namespace plotwerk
