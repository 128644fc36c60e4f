#include "plotwerk/data/tableRows.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/model/document.h"
#include "util/text/charclass.h"
#include "util/text/scanline.h"

#include <cstring>
#include <utility>

namespace plotwerk {

static constexpr std::size_t mostValues = 100'000'000;

// A table that has reached this length may well go on to the end of the text.
static constexpr std::size_t rowsOfLongTable = 1024;

// After this many unusual rows in a row, later ones are no longer tried as plain ones.
static constexpr int mostUnusualRows = 8;

void requireRoom(const TableSizes &finished, std::size_t columns, std::size_t rows) {
    const std::size_t values = finished.values + columns * rows;
    if (finished.columns + columns > mostColumns) throw Refusal("data text has too many columns");
    if (values > mostValues) throw Refusal("data text has too many values");
    requireMemory(16.0 * static_cast<double>(values)); // as they grow
}

// True when two tabs of a line have nothing but blanks between them.
static bool hasEmptyField(const char *line) {
    for (const char *tab = std::strchr(line, '\t'); tab != nullptr; tab = std::strchr(tab, '\t')) {
        do ++tab;
        while (*tab == ' ');
        if (*tab == '\t') return true;
    }
    return false;
}

// Reads the wanted count of numbers and moves p behind them and the blanks that follow. Gives the
// byte there, or a line end where there were fewer.
static char readNumbers(const char *&p, double *to, std::size_t wanted) {
    int count;
    p = plw::scanline(p, to, static_cast<int>(wanted), &count);
    return static_cast<std::size_t>(count) == wanted ? *p : '\n';
}

bool RowReader::appendPlain(const char *line, const char *textEnd) {
    if (table.count == 0 || unusualRows >= mostUnusualRows) return false;
    if (!readPlain(line)) {
        ++unusualRows;
        return false;
    }
    unusualRows = 0;
    if (table.count == rowsOfLongTable) reserveRows(line, textEnd);
    appendRow();
    return true;
}

bool RowReader::readPlain(const char *line) {
    row.resize(table.columns.size());
    if (commas == Commas::decimal) line = withDecimalPoints(line);
    const bool usesCells = separator == ';' || separator == ',';
    return usesCells ? readPlainCells(line)
                     : !hasEmptyField(line) && readNumbers(line, row.data(), row.size()) == '\0';
}

bool RowReader::readPlainCells(const char *line) {
    const std::size_t last = row.size() - 1;
    for (std::size_t i = 0; i < last; ++i)
        if (readNumbers(line, &row[i], 1) != separator || *line++ != separator) return false;
    return readNumbers(line, &row[last], 1) == '\0';
}

const char *RowReader::withDecimalPoints(const char *line) {
    scratch = line;
    for (char *comma = scratch.data(); (comma = std::strchr(comma, ',')) != nullptr; ++comma)
        if (plw::isDigit(comma[1])) *comma = '.'; // without digits it isn't part of a number
    return scratch.c_str();
}

bool RowReader::append(const char *line, std::size_t lineNumber) {
    readFields(line, separator, commas, fields);
    time->addFields(fields, 1);
    std::size_t width = 0; // without words at the end
    bool number = false, word = false;
    row.clear();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const Field &field = fields[i];
        if (field.kind == FieldKind::word) {
            word = true;
        } else {
            width = i + 1;
            number = number || isNumeric(field.kind);
        }
        row.push_back(isNumeric(field.kind) ? field.value : unset);
    }
    if (word && !number && emptyRows == table.count) {
        take(); // nothing but rows without a number, behind which no words were passed over
        return false;
    }
    if (width == 0) {
        if (word) table.linesOfWords.add(lineNumber);
        return true;
    }
    note(lineNumber, number);
    row.resize(width);
    if (!number) ++emptyRows;
    appendRow();
    return true;
}

void RowReader::note(std::size_t lineNumber, bool hasNumber) {
    if (table.facts.size() < fields.size()) table.facts.resize(fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        ColumnFacts &facts = table.facts[i];
        if (fields[i].kind == FieldKind::time) ++facts.times;
        if (fields[i].kind != FieldKind::word) continue;
        if (hasNumber) ++facts.wordsBesideNumbers;
        if (facts.words++ > 0) continue;
        facts.firstLine = lineNumber;
        facts.firstWord = fields[i].text;
    }
}

void RowReader::appendRow() {
    std::vector<std::vector<double>> &columns = table.columns;
    if (row.size() > columns.size()) columns.resize(row.size());
    requireRoom(finished, columns.size(), table.count + 1);
    for (std::size_t i = 0; i < row.size(); ++i) {
        std::vector<double> &column = columns[i];
        if (column.size() < table.count) column.resize(table.count, unset);
        column.push_back(stored(row[i]));
    }
    ++table.count;
}

// Makes room for rows as long as this line up to the end of the text.
void RowReader::reserveRows(const char *line, const char *textEnd) {
    const std::size_t more = (textEnd - line) / (std::strlen(line) + 1) + 1;
    if (table.columns.size() * (table.count + more) > mostValues) return;
    for (std::vector<double> &column : table.columns) column.reserve(table.count + more);
}

TableRows RowReader::take() {
    emptyRows = 0;
    unusualRows = 0;
    return std::exchange(table, {});
}

} // namespace plotwerk
