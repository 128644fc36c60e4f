#include "plotwerk/fit/parameterList.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/model/parameterText.h"
#include "util/text/charclass.h"
#include "util/text/equation.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace plotwerk {

static const FitParameter *find(const std::vector<FitParameter> &parameters,
                                std::string_view name) {
    const auto found = std::ranges::find(parameters, name, &FitParameter::name);
    return found == parameters.end() ? nullptr : &*found;
}

std::vector<FitParameter> parametersNamed(const std::vector<std::string> &names,
                                          const std::vector<FitParameter> &known) {
    std::vector<FitParameter> parameters;
    for (const std::string &name : names) {
        const FitParameter *old = find(known, name);
        parameters.push_back(old != nullptr ? *old : FitParameter{name});
    }
    return parameters;
}

// scanEquation ends a value at every comma: those inside numbers become points first.
static void decimalCommasToDots(std::string &text) {
    for (std::size_t i = 1; i + 1 < text.size(); ++i)
        if (text[i] == ',' && plw::isDigit(text[i - 1]) && plw::isDigit(text[i + 1])) text[i] = '.';
}

// The value of a word that is a number from end to end. Refuses others.
static double numberOf(const char *word, const char *name) {
    char *end = nullptr;
    const double value = std::strtod(word, &end);
    if (end == word || *end != '\0' || !std::isfinite(value))
        throw Refusal("parameter list: " + std::string(name) + " = \"" + word +
                      "\" is not a number");
    return value;
}

void readParameterList(std::string_view text, char decimalSeparator,
                       std::vector<FitParameter> &parameters) {
    std::string list(text);
    std::ranges::replace(list, '\r', ' ');
    if (decimalSeparator == ',') decimalCommasToDots(list);
    const std::string uncut = list; // scanEquation writes NULs over what ended a word

    std::vector<FitParameter> read = parameters;
    char *cursor = list.data();
    for (;;) {
        cursor += std::strspn(cursor, " \t\n,");
        if (*cursor == '\0') break;

        const auto start = static_cast<std::size_t>(cursor - list.data());
        char *name = nullptr;
        char *value = nullptr;
        if (plw::scanEquation(&cursor, &name, &value) == 0)
            throw Refusal("parameter list: no \"name = value\" at \"" +
                          uncut.substr(start, uncut.find('\n', start) - start) + "\"");

        const auto parameter = std::ranges::find(read, std::string_view(name), &FitParameter::name);
        if (parameter == read.end()) throw Refusal("no parameter \"" + std::string(name) + "\"");

        const std::size_t length = std::strlen(value);
        const bool marked = length > 1 && value[length - 1] == '!';
        if (marked) value[length - 1] = '\0';
        *parameter = {parameter->name, numberOf(value, name), unset, marked};

        // what may follow up to the line's end or a comma
        const char terminator = uncut[static_cast<std::size_t>(cursor - list.data()) - 1];
        if (terminator == '\n' || terminator == ',') continue;
        cursor += std::strspn(cursor, " \t");
        if (std::strncmp(cursor, "+-", 2) == 0) {
            cursor += 2 + std::strspn(cursor + 2, " \t");
            cursor += std::strcspn(cursor, " \t\n,");
            cursor += std::strspn(cursor, " \t");
        }
        if (*cursor == '!') {
            parameter->fixed = true;
            ++cursor;
        }
    }
    parameters = std::move(read);
}

std::optional<std::string> fitVariable(std::string_view name,
                                       const std::vector<FitParameter> &parameters,
                                       const FitResult &result) {
    if (const FitParameter *parameter = find(parameters, name)) return allDigits(parameter->value);
    constexpr std::string_view suffix = ".error";
    if (name.ends_with(suffix)) {
        const FitParameter *parameter =
            find(parameters, name.substr(0, name.size() - suffix.size()));
        if (parameter != nullptr) return allDigits(parameter->error);
    }
    if (name == "chiq") return allDigits(result.chiSquare);
    if (name == "lambda") return allDigits(result.lambda);
    if (name == "iterations") return std::to_string(result.iterations);
    if (name == "points") return std::to_string(result.points);
    return std::nullopt;
}

} // namespace plotwerk
