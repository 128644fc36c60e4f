#include "plotwerk/base/refusal.h"
#include "plotwerk/fit/fit.h"
#include "plotwerk/fit/parameterList.h"
#include "tests/fuzz/fuzz.h"

#include <algorithm>
#include <cmath>

using namespace plotwerk;

// A formula that is taken has a value or NaN everywhere, its parameters can be told by their list,
// and a fit by it succeeds or leaves them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text(data, data + size);
    std::vector<FitParameter> parameters;
    try {
        const Formula formula(text);
        parameters = parametersNamed(formula.parameterNames(), {});
        std::vector<double> x{0, -1, 0.5, 2, 1e300, NAN}, y{1, 0, -2, 3, NAN, 5}, out(x.size());
        formula.evaluate(x, y, std::vector<double>(parameters.size(), 1), out);

        const FitOutcome outcome =
            fit(formula, {x, y, {}, {}}, parameters, std::chrono::seconds(1));
        for (const FitParameter &parameter : parameters)
            require(outcome.status == fitConverged ? std::isfinite(parameter.value)
                                                   : parameter.value == 1);
        require((outcome.status == fitConverged) == outcome.reason.empty());
    } catch (const Refusal &refusal) {
        require(std::string(refusal.what()).starts_with("formula, line "));
        return 0;
    }
    for (FitParameter &parameter : parameters) parameter.error = unset;
    std::vector<FitParameter> read = parameters;
    for (FitParameter &parameter : read) parameter.value = 0;
    readParameterList(parameterList(parameters, '.'), '.', read);
    require(std::ranges::equal(parameters, read, {}, &FitParameter::value, &FitParameter::value));
    return 0;
}
