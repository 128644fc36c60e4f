#include "plotwerk/data/commas.h"

#include "util/text/charclass.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace plotwerk {

namespace {

// What the numbers with commas of a text allow.
struct Evidence {
    bool any = false;
    bool decimal = true;     // each comma may be decimal
    bool group = true;       // each may group
    bool others = false;     // beside them something else separates
    bool without = false;    // there are lines of one number, without a comma
    bool split = false;      // a line of names is split by as many commas as the rows are
    std::ptrdiff_t last = 0; // commas in the last line of words, if nothing else separates there

    bool isSettled() const { return any && !decimal && !group; }
};

} // namespace

static bool isCellSeparator(char c) {
    return c == '\t' || c == ';';
}

static bool isPartOfNumber(char c) {
    return plw::isDigit(c) || std::string_view("+-.,eEdD ").find(c) != std::string_view::npos;
}

static bool isNumeric(std::string_view token) {
    return std::all_of(token.begin(), token.end(), isPartOfNumber) &&
           std::any_of(token.begin(), token.end(), plw::isDigit);
}

// Calls `take` for each token of a line. In a line with tabs or semicolons blanks are part of them.
template<class Take> static int forEachToken(std::string_view line, Take take) {
    const bool hasCells = std::any_of(line.begin(), line.end(), isCellSeparator);
    const auto ends = [hasCells](char c) { return hasCells ? isCellSeparator(c) : c == ' '; };
    const char *p = line.data();
    const char *const end = p + line.size();
    int tokens = 0;
    while (true) {
        while (p < end && (*p == ' ' || ends(*p))) ++p;
        if (p == end) return tokens;
        const char *const begin = p;
        p = std::find_if(p, end, ends);
        std::string_view token(begin, p);
        while (token.back() == ' ') token.remove_suffix(1);
        take(token);
        ++tokens;
    }
}

// The commas by which a line of names may be split: outside quotes, and where no tab or semicolon
// splits it.
static std::ptrdiff_t commasBetweenNames(std::string_view line) {
    std::ptrdiff_t commas = 0;
    bool quoted = false;
    for (const char c : line) {
        if (c == '"') quoted = !quoted;
        if (quoted) continue;
        if (isCellSeparator(c)) return 0;
        commas += c == ',';
    }
    return commas;
}

static void weigh(std::string_view line, Evidence &evidence) {
    const std::ptrdiff_t commas = std::count(line.begin(), line.end(), ',');
    bool hasNumbers = false, hasWords = false;
    const int tokens = forEachToken(line, [&](std::string_view token) {
        const bool hasComma = token.find(',') != std::string_view::npos;
        if (!isNumeric(token)) {
            // a comma behind a quoted or plain word separates
            hasWords = hasWords || plw::isLetter(token.front()) || token.front() == '"';
        } else if (hasComma) {
            hasNumbers = true;
            evidence.decimal = evidence.decimal && hasDecimalComma(token);
            evidence.group = evidence.group && hasGroupCommas(token);
        }
    });
    if (hasNumbers) {
        evidence.any = true;
        evidence.others = evidence.others || tokens > 1;
        evidence.split = evidence.split || (tokens == 1 && commas == evidence.last);
    } else if (hasWords) {
        evidence.last = commasBetweenNames(line);
    }
}

static Evidence evidenceIn(std::string_view text, ReadingTime &time) {
    Evidence evidence;
    if (text.find(',') == std::string_view::npos) return evidence;
    while (!text.empty() && !evidence.isSettled()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        line = line.substr(0, line.find('#'));
        time.addCommas(line.size());
        if (line.find(',') != std::string_view::npos)
            weigh(line, evidence);
        else
            evidence.without =
                evidence.without || isNumeric(line.substr(0, line.find_last_not_of(' ') + 1));
    }
    return evidence;
}

static bool canOnlyGroup(const Evidence &evidence) {
    return evidence.any && evidence.group && !evidence.decimal && evidence.others;
}

CommaUse commaUseOf(std::string_view text, char decimalSeparator, ReadingTime &time) {
    if (decimalSeparator == ',') return {Commas::decimal};
    return {canOnlyGroup(evidenceIn(text, time)) ? Commas::group : Commas::separate};
}

CommaUse commaUseOfFile(std::string_view text, char decimalSeparator, ReadingTime &time) {
    const Evidence evidence = evidenceIn(text, time);
    const bool wantsDecimal = decimalSeparator == ',';
    const Commas given = wantsDecimal ? Commas::decimal : Commas::separate;
    if (!evidence.any) return {given};
    if (evidence.group && !evidence.decimal) {
        if (evidence.others || evidence.without) return {Commas::group, "commas group digits"};
        return {Commas::separate, "commas separate columns, though they could group digits"};
    }
    if (!evidence.decimal || evidence.split)
        return {Commas::separate, wantsDecimal ? "commas can only separate columns" : ""};
    if (evidence.others && !evidence.group)
        return {Commas::decimal, wantsDecimal ? "" : "commas can only be decimal"};
    if (wantsDecimal)
        return {given, "commas are decimal, as setDecimalSeparator says, though they needn't be"};
    if (!evidence.others)
        return {given, "commas separate columns, as setDecimalSeparator says, though they could be "
                       "decimal"};
    return {Commas::group,
            "commas group digits, as setDecimalSeparator says, though they could be decimal"};
}

} // namespace plotwerk
