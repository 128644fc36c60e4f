// What Plotwerk reads from others: data, formulas and lists of parameters.
#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/data/dataText.h"
#include "plotwerk/data/dataTextWriter.h"
#include "plotwerk/fit/fit.h"
#include "plotwerk/fit/parameterList.h"
#include "plotwerk/model/parameterText.h"
#include "tests/fuzz/fuzz.h"

#include <algorithm>
#include <bit>
#include <cmath>

using namespace plotwerk;

static char separatorOf(const std::string &input) {
    return (fuzz::firstByte(input) & 1) != 0 ? ',' : '.';
}

static std::vector<const Column *> columnsOf(const Table &table) {
    std::vector<const Column *> columns{&table.x};
    for (const Column &column : table.y) columns.push_back(&column);
    return columns;
}

static bool isSame(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) ||
           std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

static bool isSameParameter(const FitParameter &a, const FitParameter &b) {
    return a.name == b.name && a.value == b.value && a.fixed == b.fixed;
}

namespace fuzz {

// The tables of a text or a file are rectangular, and written they are read as they were.
void dataText(const std::string &input) {
    const char separator = separatorOf(input);
    const auto read = (firstByte(input) & 2) != 0 ? readDataFile : readDataText;
    setLogLevel(LogLevel::error);
    std::vector<DataTable> tables;
    try {
        tables = read(afterFirstByte(input), separator);
    } catch (const Refusal &) {
        return;
    }
    for (const DataTable &read : tables) {
        const std::vector<const Column *> columns = columnsOf(read.table);
        require(columns.size() > 1 && !read.table.x.values.empty());
        std::string text;
        writeDataText(columns, separator, text);
        const std::vector<DataTable> again = readDataText(text, separator);
        require(again.size() == 1);
        require(std::ranges::equal(columns, columnsOf(again[0].table),
                                   [&](const Column *a, const Column *b) {
                                       return a->values.size() == read.table.x.values.size() &&
                                              std::ranges::equal(a->values, b->values, isSame);
                                   }));
    }
}

// A formula that is taken has a value or NaN everywhere, its parameters can be told by their list,
// and a fit by it succeeds or leaves them.
void formula(const std::string &input) {
    std::vector<FitParameter> parameters;
    try {
        const Formula formula(input);
        parameters = parametersNamed(formula.parameterNames(), {});
        std::vector<double> x{0, -1, 0.5, 2, 1e300, NAN}, y{1, 0, -2, 3, NAN, 5}, out(x.size());
        formula.evaluate({x, y, {}}, std::vector<double>(parameters.size(), 1), out);

        const FitOutcome outcome = fit(formula, {x, y, {}, {}}, parameters, 1);
        for (const FitParameter &parameter : parameters)
            require(outcome.status == fitConverged ? std::isfinite(parameter.value)
                                                   : parameter.value == 1);
        require((outcome.status == fitConverged) == outcome.reason.empty());
    } catch (const Refusal &refusal) {
        require(std::string(refusal.what()).starts_with("formula, line "));
        return;
    }
    for (FitParameter &parameter : parameters) parameter.error = unset;
    std::vector<FitParameter> read = parameters;
    for (FitParameter &parameter : read) parameter.value = 0;
    bool absolute = false;
    readParameterList(plotwerk::parameterList(parameters, '.'), '.', read, absolute);
    require(std::ranges::equal(parameters, read, isSameParameter));
}

// A list sets finite values, or nothing at all; what was set is written so that it is read again.
void parameterList(const std::string &input) {
    const char separator = separatorOf(input);
    const std::vector<FitParameter> before{{"a", 1, 0.5}, {"b", 2, 0.25, true}, {"\u00e4_1", 3}};
    std::vector<FitParameter> parameters = before, again = before;
    bool absolute = false;
    try {
        readParameterList(afterFirstByte(input), separator, parameters, absolute);
    } catch (const Refusal &) {
        require(!absolute && std::ranges::equal(parameters, before, isSameParameter));
        return;
    }
    for (FitParameter &parameter : parameters) {
        require(std::isfinite(parameter.value));
        parameter.error = unset;
    }
    readParameterList(plotwerk::parameterList(parameters, separator), separator, again, absolute);
    require(std::ranges::equal(parameters, again, isSameParameter));
}

} // namespace fuzz
