#include "plotwerk/base/refusal.h"
#include "plotwerk/fit/parameterList.h"
#include "tests/fuzz/fuzz.h"

#include <algorithm>
#include <cmath>

using namespace plotwerk;

namespace {

bool isSame(const FitParameter &a, const FitParameter &b) {
    return a.name == b.name && a.value == b.value && a.fixed == b.fixed;
}

} // namespace

// A list sets finite values, or nothing at all; what was set is written so that it is read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const char separator = size > 0 && (data[0] & 1) != 0 ? ',' : '.';
    const std::vector<FitParameter> before{{"a", 1, 0.5}, {"b", 2, 0.25, true}, {"\u00e4_1", 3}};
    std::vector<FitParameter> parameters = before;
    try {
        readParameterList(afterFirstByte(data, size), separator, parameters);
    } catch (const Refusal &) {
        require(std::ranges::equal(parameters, before, isSame));
        return 0;
    }
    for (FitParameter &parameter : parameters) {
        require(std::isfinite(parameter.value));
        parameter.error = unset;
    }
    std::vector<FitParameter> again = before;
    readParameterList(parameterList(parameters, separator), separator, again);
    require(std::ranges::equal(parameters, again, isSame));
    return 0;
}
