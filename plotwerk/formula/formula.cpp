#include "plotwerk/formula/formula.h"

#include "plotwerk/formula/parser.h"

#include <algorithm>

namespace plotwerk {

Formula::Formula(std::string_view text, std::span<const Variable> variables) {
    Parser parser(text, variables);
    compiled = parser.parse();
    names = parser.parameterNames();
    columnsRead = parser.columns();
}

void Formula::evaluate(const Inputs &inputs, std::span<const double> parameters,
                       std::span<double> out) const {
    Evaluator<double> evaluator(compiled);
    evaluator.setParameters(parameters);
    const int n = static_cast<int>(inputs.x.size());
    for (int i = 0; i < n; i += evaluator.blockSize()) {
        const int count = std::min(evaluator.blockSize(), n - i);
        std::copy_n(evaluator.values(inputs, i, count), count, out.data() + i);
    }
}

void Formula::differentiateByY(const Inputs &inputs, std::span<const double> parameters,
                               std::span<double> out) const {
    std::ranges::fill(out, 0);
    if (!usesY()) return;
    Evaluator<double> evaluator(compiled);
    evaluator.setParameters(parameters);
    const int n = static_cast<int>(inputs.x.size());
    for (int i = 0; i < n; i += evaluator.blockSize()) {
        const int count = std::min(evaluator.blockSize(), n - i);
        evaluator.values(inputs, i, count);
        evaluator.differentiate();
        std::copy_n(evaluator.derivativeByY(), count, out.data() + i);
    }
}

} // namespace plotwerk
