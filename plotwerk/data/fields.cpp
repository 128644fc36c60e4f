#include "plotwerk/data/fields.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/data/timeText.h"
#include "plotwerk/model/document.h"
#include "util/text/charclass.h"
#include "util/text/scanline.h"
#include "util/text/word.h"

#include <algorithm>
#include <cstring>

namespace plotwerk {

static bool isQuote(char c) {
    return c == '"' || c == '\'';
}

bool endsLine(const char *p) {
    return *p == '\0' || (*p == '#' && !isSpreadsheetError(p));
}

const char *commentOf(const char *line) {
    const char *first = plw::skipSpaces(line);
    if (*first == '#') return endsLine(first) ? first + 1 : nullptr;
    if (*first == '!') return first + 1;
    if (*first == '%') return first + 1 + std::strspn(first + 1, "%");
    return first[0] == '/' && first[1] == '/' ? first + 2 : nullptr;
}

// The quote that closes the one at p, or the line's end. A quote after a backslash closes nothing,
// and neither do two, which stand for one.
static const char *closingQuote(const char *p) {
    const char quote = *p;
    for (++p; *p != '\0'; ++p) {
        if ((*p == '\\' || *p == quote) && p[1] == quote)
            ++p;
        else if (*p == quote)
            break;
    }
    return p;
}

// What stands between quotes.
static std::string unquoted(std::string_view text, char quote) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escapes = text[i] == '\\' || text[i] == quote;
        if (escapes && i + 1 < text.size() && text[i + 1] == quote) ++i;
        plain += text[i];
    }
    return plain;
}

static std::string_view trimmed(std::string_view text) {
    while (!text.empty() && plw::isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && plw::isBlank(text.back())) text.remove_suffix(1);
    return text;
}

// Where the cell at p ends: at its separator, or at the line's end or a comment that blanks set
// off.
static const char *cellEnd(const char *p, char separator) {
    const char *const begin = p;
    for (; *p != '\0' && *p != separator; ++p)
        if (*p == '#' && p > begin && plw::isBlank(p[-1]) && (plw::isBlank(p[1]) || p[1] == '\0'))
            break;
    return p;
}

char separatorOf(std::string_view line, Commas commas) {
    bool quoted = false, comma = false, tab = false;
    for (const char c : line.substr(line.find_first_not_of(" \t") % (line.size() + 1))) {
        if (c == '"')
            quoted = !quoted;
        else if (quoted)
            continue;
        else if (c == ';')
            return ';';
        else if (c == '#')
            break;
        comma = comma || c == ',';
        tab = tab || c == '\t';
    }
    return comma && commas == Commas::separate ? ',' : tab ? '\t' : ' ';
}

namespace {

class FieldReader {
  public:
    FieldReader(char lineSeparator, Commas ofText) : separator(lineSeparator), commas(ofText) {}

    void read(const char *p, std::vector<Field> &fields) const {
        fields.clear();
        for (p = plw::skipSpaces(p); isSeparator(*p); p = plw::skipSpaces(p + 1)) add(fields, {});
        while (!endsLine(p)) {
            add(fields, readField(p));
            for (int missing = missingInGap(p, fields.back().quoted); missing > 0; --missing)
                add(fields, {});
        }
    }

    // As read, of fields that all are words.
    Names readNames(const char *p) const {
        Names names;
        for (p = plw::skipSpaces(p); isSeparator(*p); p = plw::skipSpaces(p + 1))
            addName(names, std::nullopt);
        while (!endsLine(p)) {
            const bool quoted = isQuote(*p);
            addName(names, nextName(p));
            for (int missing = missingInGap(p, quoted); missing > 0; --missing)
                addName(names, std::nullopt);
        }
        return names;
    }

  private:
    char separator;
    Commas commas;

    static void add(std::vector<Field> &fields, const Field &field) {
        if (fields.size() >= mostColumns) throw Refusal("data text has too many columns");
        fields.push_back(field);
    }

    static void addName(Names &names, std::optional<std::string> name) {
        if (names.size() >= mostColumns) throw Refusal("data text has too many columns");
        names.push_back(std::move(name));
    }

    bool isSeparator(char c) const { return c == ';' || (c == ',' && commas == Commas::separate); }
    bool endsField(const char *p) const {
        return plw::isBlank(*p) || endsLine(p) || isSeparator(*p);
    }

    // Moves p over the gap behind a field, up to the next field or the line's end, and returns how
    // many fields are missing in it. Behind quotes a comma always separates.
    int missingInGap(const char *&p, bool behindQuotes) const {
        int separators = 0;
        int tabs = 0;
        for (;; ++p) {
            if (isSeparator(*p) || (behindQuotes && *p == ',' && separators == 0))
                ++separators;
            else if (*p == '\t')
                ++tabs;
            else if (*p != ' ')
                break;
        }
        return std::max((separators > 0 ? separators : tabs) - 1, 0);
    }

    std::string nextName(const char *&p) const {
        const char *const begin = p;
        if (!isQuote(*p)) {
            while (!endsField(p)) ++p;
            return {begin, p};
        }
        const char *const end = closingQuote(p);
        p = *end == '\0' ? end : end + 1;
        return unquoted({begin + 1, end}, *begin);
    }

    // Reads a number as strtod does, and moves p behind it. False for anything else: p stays.
    bool readPlainNumber(const char *&p, double &value) const {
        int count;
        const char *end = plw::scanline(p, &value, 1, &count);
        if (end == p) {
            if (*p != '-' || !endsField(p + 1)) return false;
            value = unset;
            ++p;
            return true;
        }
        // of a number out of range scanline stores what comes nearest, but doesn't count it
        while (plw::isBlank(end[-1])) --end;
        if (!endsField(end)) return false;
        p = end;
        return true;
    }

    // Whether at p, behind a number, the same cell goes on with a word: "5 V".
    bool goesOnWithWord(const char *p) const {
        if (separator == ' ' || *p != ' ') return false;
        while (*p == ' ') ++p;
        if (endsField(p) || isQuote(*p) || plw::isDigit(*p)) return false;
        double unused;
        return !readPlainNumber(p, unused);
    }

    // Adds the time of day of the cell behind a date, if there is one, and moves p behind it.
    void joinTimeOfDay(const char *&p, Field &date) const {
        const char *next = plw::skipSpaces(p);
        if (isSeparator(*next) || (date.quoted && *next == ',')) next = plw::skipSpaces(next + 1);
        const bool quoted = isQuote(*next);
        double sinceMidnight;
        const bool decimalComma = quoted || commas == Commas::decimal;
        const char *end =
            readTimeOfDay(quoted ? plw::skipSpaces(next + 1) : next, decimalComma, &sinceMidnight);
        if (end == nullptr) return;
        if (quoted) end = plw::skipSpaces(end);
        if ((quoted && *end++ != *next) || !endsField(end)) return;
        date.value += sinceMidnight;
        date.joined = true;
        p = end;
    }

    // Reads a date, with a time of day if one follows, even in the next cell.
    bool readTimeField(const char *&p, Field &field) const {
        bool isDate;
        const char *end = readTime(p, commas == Commas::decimal, &field.value, &isDate);
        if (end == nullptr || !endsField(end)) return false;
        field.kind = FieldKind::time;
        field.joined = !isDate && std::find(p, end, ' ') != end;
        if (isDate) joinTimeOfDay(end, field);
        field.text = {p, end};
        p = end;
        return true;
    }

    Field readField(const char *&p) const {
        if (isQuote(*p)) return readQuoted(p);
        Field field;
        const char *const begin = p;
        if (readPlainNumber(p, field.value)) {
            if (!goesOnWithWord(p)) {
                field.kind = FieldKind::number;
                field.text = {begin, p};
                return field;
            }
            p = begin;
        }
        if (readTimeField(p, field)) return field;
        if (separator == ' ') {
            while (!endsField(p)) ++p;
        } else {
            p = cellEnd(p, separator);
        }
        field.text = trimmed({begin, p});
        interpret(field);
        return field;
    }

    Field readQuoted(const char *&p) const {
        const char *const begin = p;
        const char *const end = closingQuote(p);
        p = *end == '\0' ? end : end + 1;
        Field field{.quoted = true, .text = trimmed({begin + 1, end})};
        bool isDate;
        const std::string text(field.text);
        const char *behind = readTime(text.c_str(), true, &field.value, &isDate);
        if (behind == nullptr || *behind != '\0') {
            interpret(field);
            return field;
        }
        field.kind = FieldKind::time;
        if (isDate) joinTimeOfDay(p, field);
        return field;
    }

    void interpret(Field &field) const {
        field.kind = FieldKind::number;
        if (readNumber(field.text, commas, &field.value)) return;
        field.kind = meansMissing(field.text) ? FieldKind::missing : FieldKind::word;
        field.value = unset;
    }
};

} // namespace

void readFields(const char *line, char separator, Commas commas, std::vector<Field> &fields) {
    FieldReader(separator, commas).read(line, fields);
}

Names readNames(const char *line, char separator, Commas commas) {
    if (separator == ' ') return FieldReader(separator, commas).readNames(line);
    Names names;
    const char *p = line;
    while (true) {
        const char *const begin = plw::skipSpaces(p);
        const char *cell = separator == '\t' ? p + std::strspn(p, " ") : begin;
        std::string name;
        if (*cell == '"') {
            const char *const end = closingQuote(cell);
            name = unquoted({cell + 1, end}, '"');
            p = *end == '\0' ? end : cellEnd(end + 1, separator);
        } else if (*cell == '\'' && *closingQuote(cell) != '\0') {
            const char *const end = closingQuote(cell);
            name = unquoted({cell + 1, end}, '\'');
            p = cellEnd(end + 1, separator);
        } else {
            p = cellEnd(cell, separator);
            name = trimmed({cell, p});
        }
        if (names.size() >= mostColumns) throw Refusal("data text has too many columns");
        const bool isLast = *p != separator;
        if (name.empty() && *cell != '"') {
            if (!isLast) names.emplace_back();
        } else {
            names.emplace_back(std::move(name));
        }
        if (isLast) return names;
        ++p;
    }
}

} // namespace plotwerk
