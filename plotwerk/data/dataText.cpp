#include "plotwerk/data/dataText.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/model/names.h"
#include "util/number/format.h"
#include "util/text/charclass.h"
#include "util/text/scanline.h"
#include "util/text/word.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <optional>
#include <utility>

namespace plotwerk {

static constexpr std::size_t mostValues = 100'000'000;
static constexpr std::size_t mostColumns = 1'000'000;

static constexpr char byteOrderMark[] = "\xEF\xBB\xBF";

static bool endsLine(char c) {
    return c == '\0' || c == '#';
}

static bool isQuote(char c) {
    return c == '"' || c == '\'';
}

// True when two tabs of a line have nothing but blanks between them.
static bool hasEmptyField(const char *line) {
    for (const char *tab = std::strchr(line, '\t'); tab != nullptr;
         tab = std::strchr(tab + 1, '\t'))
        if (tab[1 + std::strspn(tab + 1, " ")] == '\t') return true;
    return false;
}

namespace {

// What the fields of a line are, and the gaps between them.
class FieldScanner {
  public:
    explicit FieldScanner(char decimalSeparator) : commaSeparates(decimalSeparator != ',') {}

    // Moves p over the gap behind a field, up to the next field or the line's end, and returns how
    // many fields are missing in it.
    int missingInGap(char *&p) const {
        int separators = 0;
        int tabs = 0;
        for (;; ++p) {
            if (isSeparator(*p))
                ++separators;
            else if (*p == '\t')
                ++tabs;
            else if (*p != ' ')
                break;
        }
        return std::max((separators > 0 ? separators : tabs) - 1, 0);
    }

    // Moves p to the first field, and returns how many separators are before it.
    int missingBeforeFirst(char *&p) const {
        int missing = 0;
        for (p = plw::skipSpaces(p); isSeparator(*p); p = plw::skipSpaces(p + 1)) ++missing;
        return missing;
    }

    // Cuts the word at p out of its line, and moves p behind it.
    std::string word(char *&p) const {
        const char quote = *p;
        if (!isQuote(quote)) {
            char *begin = p;
            while (!endsField(*p)) ++p;
            return {begin, p};
        }
        char unused;
        std::string name = plw::nextWord(&p, &unused, &unused);
        for (std::size_t at = 0; (at = name.find('\\', at)) != std::string::npos; ++at)
            if (at + 1 < name.size() && name[at + 1] == quote) name.erase(at, 1);
        return name;
    }

    // Reads a number, NaN included, at p and moves p behind it. False for a word: p stays.
    bool readValue(char *&p, double &value) const {
        int count;
        char *end = plw::scanline(p, &value, 1, &count);
        if (end == p) {
            if (*p != '-' || !endsField(p[1])) return false;
            value = unset;
            ++p;
            return true;
        }
        // of a number out of range scanline stores what comes nearest, but doesn't count it
        char *behind = end;
        while (plw::isBlank(behind[-1])) --behind;
        if (!endsField(*behind)) return false;
        p = behind;
        return true;
    }

  private:
    bool isSeparator(char c) const { return c == ';' || (c == ',' && commaSeparates); }
    bool endsField(char c) const { return plw::isBlank(c) || endsLine(c) || isSeparator(c); }

    bool commaSeparates;
};

// Reads the lines of a text, one by one, into tables.
class TableReader {
  public:
    explicit TableReader(char separator) : decimalSeparator(separator), fields(separator) {}

    void readLine(char *line) {
        const char first = *plw::skipSpaces(line);
        if (first == '\0') {
            finishTable();
        } else if (first != '#') {
            if (rows > 0)
                readRow(line);
            else
                readFirstLine(line);
        }
    }

    std::vector<DataTable> takeTables() {
        finishTable();
        return std::move(tables);
    }

  private:
    char decimalSeparator;
    FieldScanner fields;
    std::vector<DataTable> tables;
    std::size_t values = 0; // of the tables that are finished
    std::size_t columnsInUse = 0;

    // the table that is being read
    std::vector<std::optional<std::string>> names;
    std::vector<std::vector<double>> columns; // up to the last row that has a value there
    std::size_t rows = 0;
    bool plain = true; // every row after the first one was read by readPlainRow

    std::vector<double> row;

    // Reads the fields of a line into row; true when one of them was a word. In the place of a
    // comma that is a decimal point the line gets a '.'.
    bool readFields(char *p) {
        if (decimalSeparator == ',') std::replace(p, p + std::strlen(p), ',', '.');
        bool hasWord = false;
        row.assign(fields.missingBeforeFirst(p), unset);
        std::size_t width = row.size();
        while (!endsLine(*p)) {
            double value;
            const bool isNumber = !isQuote(*p) && fields.readValue(p, value);
            if (!isNumber) {
                value = unset;
                fields.word(p);
                hasWord = true;
            }
            row.push_back(value);
            if (isNumber) width = row.size();
            const int missing = fields.missingInGap(p);
            if (missing > 0) {
                row.insert(row.end(), missing, unset);
                width = row.size();
            }
        }
        row.resize(width); // without words at the end
        return hasWord;
    }

    void readNames(char *p) {
        names.assign(fields.missingBeforeFirst(p), std::nullopt);
        while (!endsLine(*p)) {
            names.emplace_back(fields.word(p));
            names.insert(names.end(), fields.missingInGap(p), std::nullopt);
        }
    }

    void readFirstLine(char *line) {
        std::string copy = line;
        if (readFields(copy.data()))
            readNames(line);
        else
            appendRow();
    }

    void readRow(char *line) {
        plain = plain && readPlainRow(line);
        if (!plain) readFields(line);
        appendRow();
    }

    // The usual row: as many numbers as there are columns, and nothing else but blanks. False for
    // any other row.
    bool readPlainRow(const char *line) {
        const int width = static_cast<int>(columns.size());
        row.resize(width);
        int count;
        const char *end = plw::scanline(line, row.data(), width, &count);
        return count == width && *end == '\0' && !hasEmptyField(line);
    }

    void appendRow() {
        if (row.empty()) return;
        if (row.size() > columns.size()) columns.resize(row.size());
        requireRoom(columns.size(), rows + 1);
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (columns[i].size() < rows) columns[i].resize(rows, unset);
            columns[i].push_back(stored(row[i]));
        }
        ++rows;
    }

    void requireRoom(std::size_t width, std::size_t height) const {
        if (columnsInUse + width > mostColumns) throw Refusal("data text has too many columns");
        if (values + width * height > mostValues) throw Refusal("data text has too many values");
        requireMemory(16.0 * static_cast<double>(values + width * height)); // as they grow
    }

    void finishTable() {
        if (rows == 0) return;
        DataTable result;
        result.countedX = columns.size() == 1;
        if (result.countedX) {
            columns.emplace(columns.begin(), rows);
            std::iota(columns.front().begin(), columns.front().end(), 0.0);
            if (names.size() == 1) names.insert(names.begin(), std::nullopt);
            names.resize(2);
        }
        const std::size_t width = std::max(columns.size(), names.size());
        requireRoom(width, rows);
        columns.resize(width);
        names.resize(width);

        result.table.y.resize(width - 1);
        for (std::size_t i = 0; i < width; ++i) {
            Column &column = i == 0 ? result.table.x : result.table.y[i - 1];
            column.name = nameOf(
                names[i].value_or(i == 0 ? "X" : std::string("Y").append(std::to_string(i))));
            requireName(column.name);
            columns[i].resize(rows, unset);
            column.values = std::move(columns[i]);
        }
        tables.push_back(std::move(result));
        values += width * rows;
        columnsInUse += width;
        names.clear();
        columns.clear();
        rows = 0;
        plain = true;
    }
};

} // namespace

// So that every line ends in LF, and blanks may stand before it.
static void unifyLineEnds(std::string &text) {
    for (std::size_t at = 0; (at = text.find('\r', at)) != std::string::npos; ++at)
        text[at] = text[at + 1] == '\n' ? ' ' : '\n';
}

// A name that is a word where it stands needs no quotes.
static bool needsQuotes(const std::string &name) {
    if (name.empty() || name == "-" || name.starts_with(byteOrderMark) ||
        name.find_first_of(" \t;,#\"'") != std::string::npos)
        return true;
    double number;
    int count;
    return plw::scanline(name.c_str(), &number, 1, &count) != name.c_str();
}

static void writeName(std::string name, std::string &text) {
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    if (!needsQuotes(name)) {
        text += name;
        return;
    }
    const char quote = name.find('"') == std::string::npos ? '"' : '\'';
    text += quote;
    for (const char c : name) {
        if (c == quote) text += '\\';
        text += c;
    }
    if (name.ends_with('\\')) text += ' '; // the quote would belong to the name
    text += quote;
}

static void writeNumber(double value, char decimalSeparator, std::string &text) {
    const std::size_t begin = text.size();
    const char *digits = plw::stringOfDouble(value);
    if (std::isnan(value) || std::strtod(digits, nullptr) == value) {
        text += digits;
    } else {
        char exact[32];
        text.append(exact, std::to_chars(exact, exact + sizeof exact, value).ptr);
    }
    if (decimalSeparator == '.') return;
    const std::size_t point = text.find('.', begin);
    if (point != std::string::npos) text[point] = decimalSeparator;
}

std::vector<DataTable> readDataText(std::string text, char decimalSeparator) {
    if (text.find('\0') != std::string::npos) throw Refusal("data text has a NUL byte");
    unifyLineEnds(text);
    char *line = text.data();
    char *const end = line + text.size();
    if (text.starts_with(byteOrderMark)) line += std::strlen(byteOrderMark);

    TableReader reader(decimalSeparator);
    while (line < end) {
        auto *lineEnd = static_cast<char *>(std::memchr(line, '\n', end - line));
        if (lineEnd == nullptr) lineEnd = end;
        *lineEnd = '\0';
        reader.readLine(line);
        line = lineEnd + 1;
    }
    std::vector<DataTable> tables = reader.takeTables();
    if (tables.empty()) throw Refusal("data text has no numbers");
    return tables;
}

void writeDataText(const std::vector<const Column *> &columns, char decimalSeparator,
                   std::string &text, double longest) {
    if (columns.empty()) return;
    const auto requireLength = [longest](double bytes) {
        if (bytes > longest) throw Refusal("the data are too long as text");
    };
    const auto width = static_cast<double>(columns.size());
    const auto rows = static_cast<double>(columns.front()->values.size());
    requireLength(static_cast<double>(text.size()) + 2 * width * rows);
    if (!text.empty()) text += '\n';
    const auto writeLine = [&](auto writeField) {
        for (const Column *column : columns) {
            if (column != columns.front()) text += '\t';
            writeField(*column);
            requireLength(static_cast<double>(text.size()));
        }
        text += '\n';
    };
    writeLine([&](const Column &column) { writeName(column.name, text); });
    for (std::size_t row = 0; row < columns.front()->values.size(); ++row) {
        writeLine(
            [&](const Column &column) { writeNumber(column.values[row], decimalSeparator, text); });
        requireMemory(4.0 * static_cast<double>(text.size())); // while it grows there are two
    }
}

} // namespace plotwerk
