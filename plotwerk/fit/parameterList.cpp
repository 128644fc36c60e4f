#include "plotwerk/fit/parameterList.h"

#include "plotwerk/base/refusal.h"
#include "util/text/charclass.h"
#include "util/text/equation.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unordered_map>

namespace plotwerk {

// The first place of each name. It holds as long as the names stay where they are.
static std::unordered_map<std::string_view, std::size_t>
placesOf(const std::vector<FitParameter> &parameters) {
    std::unordered_map<std::string_view, std::size_t> places;
    for (std::size_t i = 0; i < parameters.size(); ++i) places.try_emplace(parameters[i].name, i);
    return places;
}

std::vector<FitParameter> parametersNamed(const std::vector<std::string> &names,
                                          const std::vector<FitParameter> &known) {
    const auto places = placesOf(known);
    std::vector<FitParameter> parameters;
    for (const std::string &name : names) {
        const auto old = places.find(name);
        parameters.push_back(old != places.end() ? known[old->second] : FitParameter{name});
    }
    return parameters;
}

// scanEquation ends a value at every comma: those inside numbers become points first.
static void decimalCommasToDots(std::string &text) {
    for (std::size_t i = 1; i + 1 < text.size(); ++i)
        if (text[i] == ',' && plw::isDigit(text[i - 1]) && plw::isDigit(text[i + 1])) text[i] = '.';
}

[[noreturn]] static void refuse(const std::string &what) {
    throw Refusal("parameter list: " + what);
}

// The value of a word that is a number from end to end. Refuses others.
static double numberOf(const std::string &word, const std::string &name) {
    char *end = nullptr;
    const double value = std::strtod(word.c_str(), &end);
    if (end == word.c_str() || *end != '\0' || !std::isfinite(value))
        refuse(name + " = \"" + word + "\" is not a number");
    return value;
}

// Bounds become words of their own, without a comma in them, which would end the assignment.
static std::string withBoundsApart(const std::string &text) {
    std::string apart;
    apart.reserve(text.size());
    bool inside = false;
    for (const char c : text) {
        if (c == '[') apart += ' ';
        inside = c == '[' || (inside && c != ']' && c != '\n');
        apart += inside && c == ',' ? ';' : c;
        if (c == ']') apart += ' ';
    }
    return apart;
}

static std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

// "[least; most]" at the cursor, which moves behind it.
static Range takeBounds(const char *&cursor, const FitParameter &parameter) {
    const std::string_view inside(cursor + 1, std::strcspn(cursor + 1, "]\n"));
    const std::size_t middle = inside.find(';');
    cursor += 1 + inside.size();
    if (*cursor != ']' || middle == std::string_view::npos)
        refuse("the bounds of " + parameter.name + " are not [least; most]");
    ++cursor;

    const auto limit = [&](std::string_view word) {
        word = trimmed(word);
        return word.empty() ? unset : numberOf(std::string(word), parameter.name);
    };
    const Range bounds{limit(inside.substr(0, middle)), limit(inside.substr(middle + 1))};
    if (bounds.min >= bounds.max)
        refuse("the bounds of " + parameter.name + " leave nothing between them");
    if (parameter.value < bounds.min || parameter.value > bounds.max)
        refuse(parameter.name + " begins outside of its bounds");
    return bounds;
}

static void skipBlanks(const char *&cursor) {
    cursor += std::strspn(cursor, " \t");
}

// What may follow a value: its error, bounds, and marks.
static void takeRest(const char *&cursor, FitParameter &parameter) {
    skipBlanks(cursor);
    if (std::strncmp(cursor, "+-", 2) == 0) {
        cursor += 2;
        skipBlanks(cursor);
        cursor += std::strcspn(cursor, " \t\n,");
        skipBlanks(cursor);
    }
    if (*cursor == '[') parameter.bounds = takeBounds(cursor, parameter);
    skipBlanks(cursor);
    if (*cursor == '|') ++cursor;
    skipBlanks(cursor);
    if (*cursor == '!') {
        parameter.fixed = true;
        ++cursor;
    }
}

// A word on its own, not the name of an assignment. The cursor moves behind it.
static bool takeWord(char *&cursor, std::string_view word) {
    if (std::strncmp(cursor, word.data(), word.size()) != 0) return false;
    const char *behind = cursor + word.size();
    const char *next = behind + std::strspn(behind, " \t");
    if (*next == '=' || (next == behind && std::strchr("\n,", *next) == nullptr)) return false;
    cursor += word.size();
    return true;
}

void readParameterList(std::string_view text, char decimalSeparator,
                       std::vector<FitParameter> &parameters, bool &absoluteErrors) {
    std::string list(text);
    std::ranges::replace(list, '\r', ' ');
    if (decimalSeparator == ',') decimalCommasToDots(list);
    list = withBoundsApart(list);
    const std::string uncut = list; // scanEquation writes NULs over what ended a word

    std::vector<FitParameter> read = parameters;
    const auto places = placesOf(parameters);
    bool absolute = absoluteErrors;
    char *cursor = list.data();
    for (;;) {
        cursor += std::strspn(cursor, " \t\n,");
        if (*cursor == '\0') break;

        if (const bool word = takeWord(cursor, "absolute"); word || takeWord(cursor, "scaled")) {
            absolute = word;
            continue;
        }
        const auto start = static_cast<std::size_t>(cursor - list.data());
        char *name = nullptr;
        char *value = nullptr;
        if (plw::scanEquation(&cursor, &name, &value) == 0)
            refuse("no \"name = value\" at \"" +
                   uncut.substr(start, uncut.find('\n', start) - start) + "\"");

        const auto place = places.find(name);
        if (place == places.end()) throw Refusal("no parameter \"" + std::string(name) + "\"");
        FitParameter &parameter = read[place->second];

        const std::size_t length = std::strlen(value);
        const bool marked = length > 1 && value[length - 1] == '!';
        if (marked) value[length - 1] = '\0';
        parameter = {parameter.name, numberOf(value, name), unset, marked};

        // what may follow up to the line's end or a comma
        const char terminator = uncut[static_cast<std::size_t>(cursor - list.data()) - 1];
        if (terminator == '\n' || terminator == ',') continue;
        const char *rest = cursor;
        takeRest(rest, parameter);
        cursor += rest - cursor;
    }
    parameters = std::move(read);
    absoluteErrors = absolute;
}

} // namespace plotwerk
