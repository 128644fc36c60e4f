#include "plotwerk/data/cellText.h"

#include "util/text/charclass.h"
#include "util/text/scanline.h"

#include <algorithm>
#include <string>

namespace plotwerk {

static void skipDigits(std::string_view &text) {
    while (!text.empty() && plw::isDigit(text.front())) text.remove_prefix(1);
}

static bool skip(std::string_view &text, std::string_view any) {
    if (text.empty() || any.find(text.front()) == std::string_view::npos) return false;
    text.remove_prefix(1);
    return true;
}

// Whether nothing, or just an exponent, is left.
static bool endsAsNumber(std::string_view text) {
    if (text.empty()) return true;
    if (!skip(text, "eEdD")) return false;
    skip(text, "+-");
    const bool any = !text.empty();
    skipDigits(text);
    return any && text.empty();
}

// Skips one to three digits, the first not 0, and groups of three behind separators; how many
// groups.
static int skipGroups(std::string_view &text, char separator) {
    if (text.empty() || text.front() == '0') return 0;
    std::size_t first = 0;
    while (first < text.size() && plw::isDigit(text[first])) ++first;
    if (first == 0 || first > 3) return 0;
    const auto groupFollows = [&](std::size_t at) {
        if (at + 4 > text.size() || text[at] != separator) return false;
        if (at + 4 < text.size() && plw::isDigit(text[at + 4])) return false;
        return std::all_of(&text[at + 1], &text[at + 1] + 3, plw::isDigit);
    };
    std::size_t at = first;
    for (; groupFollows(at); at += 4) {
    }
    if (at == first) return 0;
    text.remove_prefix(at);
    return static_cast<int>((at - first) / 4);
}

bool hasDecimalComma(std::string_view text) {
    skip(text, "+-");
    if (skipGroups(text, '.') == 0) {
        if (text.empty() || !(plw::isDigit(text.front()) || text.front() == ',')) return false;
        skipDigits(text);
    }
    if (!skip(text, ",") || text.empty() || !plw::isDigit(text.front())) return false;
    skipDigits(text);
    return endsAsNumber(text);
}

bool hasGroupCommas(std::string_view text) {
    skip(text, "+-");
    if (skipGroups(text, ',') == 0) return false;
    if (skip(text, ".")) skipDigits(text);
    return endsAsNumber(text);
}

// "1.234.567", which is no decimal point.
static bool hasGroupPoints(std::string_view text) {
    skip(text, "+-");
    return skipGroups(text, '.') > 1 && text.empty();
}

// Makes Fortran's exponents those of C.
static void unifyExponent(std::string &number) {
    const std::size_t d = std::min(number.find('d'), number.find('D'));
    if (d != std::string::npos) {
        if (endsAsNumber(std::string_view(number).substr(d))) number[d] = 'e';
        return;
    }
    // a field that has no room for the letter: 1.5-103
    const std::size_t sign = std::min(number.find('+', 1), number.find('-', 1));
    if (sign == std::string::npos || sign + 4 != number.size() || number[sign - 1] == 'e' ||
        number[sign - 1] == 'E' || number.find('.') > sign)
        return;
    if (std::all_of(number.end() - 3, number.end(), plw::isDigit)) number.insert(sign, 1, 'e');
}

static constexpr std::string_view minusSign = "\u2212";

bool mayBeNumber(std::string_view text) {
    if (text.starts_with(minusSign)) text.remove_prefix(minusSign.size());
    return !text.empty() &&
           (plw::isDigit(text.front()) ||
            std::string_view("+-.,iInN").find(text.front()) != std::string_view::npos);
}

bool readNumber(std::string_view text, Commas commas, double *value) {
    if (!mayBeNumber(text)) return false;
    const bool hasMinusSign = text.starts_with(minusSign);
    if (hasMinusSign) text.remove_prefix(minusSign.size());
    std::string number(hasMinusSign ? "-" : "");
    number += text;
    if (text.find(',') != std::string_view::npos) {
        const bool decimal = hasDecimalComma(number);
        const bool groups = hasGroupCommas(number);
        if (!decimal && !groups) return false;
        const bool isDecimal = decimal && (commas == Commas::decimal || !groups);
        std::erase(number, isDecimal ? '.' : ',');
        std::replace(number.begin(), number.end(), ',', '.');
    } else if (commas == Commas::decimal && hasGroupPoints(number)) {
        std::erase(number, '.');
    }
    unifyExponent(number);
    int count;
    const char *end = plw::scanline(number.c_str(), value, 1, &count);
    return end == number.c_str() + number.size() && end != number.c_str();
}

bool isSpreadsheetError(const char *p) {
    const char *end = p + 1;
    while (*end >= 'A' && *end <= 'Z') ++end;
    const std::string_view letters(p + 1, end);
    if (letters == "NV") return true;
    if (letters == "N" || letters == "DIV") return *end == '/';
    return !letters.empty() && (*end == '!' || *end == '?');
}

bool meansMissing(std::string_view text) {
    static constexpr std::string_view words[] = {
        "",  "NA", "N/A", "n/a",  "n.a.", "N.A.", "<NA>", "NULL", "null",   "None",  "none",
        "-", "--", "---", "----", "?",    ".",    "..",   "...",  "\u2013", "\u2014"};
    if (std::find(std::begin(words), std::end(words), text) != std::end(words)) return true;
    if (text.front() == '#') return isSpreadsheetError(std::string(text).c_str());
    return text.find_first_not_of('*') == std::string_view::npos; // too long for Fortran's field
}

static bool isUnitSymbol(std::string_view symbol) {
    static constexpr std::string_view plain[] = {
        "%",      "\u2030",  "\u00b0",  "deg",     "rad",    "min",    "h",      "d",       "a.u.",
        "arb.",   "u.",      "units",   "counts",  "cts",    "cps",    "rpm",    "sccm",    "dB",
        "dBm",    "dBV",     "ppm",     "ppb",     "px",     "pts",    "\u00c5", "\u00b0C", "degC",
        "\u2103", "\u00b0F", "degF",    "1",       "AU",     "arb",    "sec",    "secs",    "hrs",
        "hours",  "days",    "seconds", "minutes", "second", "Second", "volt",   "Volt",    "Volts",
        "amp",    "Amp",     "Ampere",  "hertz",   "Hertz",  "kelvin", "Kelvin", "watt",    "Watt",
        "pascal", "Pascal",  "tesla",   "Tesla",   "Counts"};
    static constexpr std::string_view prefixed[] = {
        "m",   "s",   "g",    "A",    "K",   "V",  "W",  "Hz",  "\u03a9", "\u2126", "Ohm",
        "ohm", "T",   "G",    "Pa",   "bar", "J",  "N",  "F",   "H",      "C",      "S",
        "eV",  "mol", "Torr", "torr", "l",   "L",  "lm", "lx",  "Bq",     "Gy",     "Sv",
        "cd",  "M",   "Wb",   "b",    "B",   "sr", "Oe", "cal", "Da"};
    static constexpr std::string_view prefixes[] = {"f", "p", "n", "u", "\u00b5", "\u03bc", "m",
                                                    "c", "d", "h", "k", "M",      "G",      "T"};
    const auto isOneOf = [](std::string_view wanted, const auto &list) {
        return std::find(std::begin(list), std::end(list), wanted) != std::end(list);
    };
    if (isOneOf(symbol, plain) || isOneOf(symbol, prefixed)) return true;
    return std::any_of(std::begin(prefixes), std::end(prefixes), [&](std::string_view prefix) {
        return symbol.starts_with(prefix) && isOneOf(symbol.substr(prefix.size()), prefixed);
    });
}

bool isUnit(std::string_view text) {
    if (text.size() > 2 && ((text.front() == '(' && text.back() == ')') ||
                            (text.front() == '[' && text.back() == ']')))
        return true;
    if (text.size() > 40) return false;
    bool any = false;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(" */^"), text.size());
        std::string_view symbol = text.substr(0, end);
        while (!symbol.empty() &&
               (plw::isDigit(symbol.back()) || symbol.back() == '-' || symbol.back() == '+') &&
               symbol != "1")
            symbol.remove_suffix(1);
        if (!symbol.empty() && !isUnitSymbol(symbol)) return false;
        any = any || !symbol.empty();
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return any;
}

} // namespace plotwerk
