// tableRows.h - the rows of one table of data text, as they are read.
#ifndef PLOTWERK_DATA_TABLEROWS_H
#define PLOTWERK_DATA_TABLEROWS_H

#include "plotwerk/data/fields.h"
#include "plotwerk/data/readingTime.h"
#include "plotwerk/data/remarks.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

// What the finished tables of a text hold.
struct TableSizes {
    std::size_t columns = 0;
    std::size_t values = 0;
};

// Refused: no room beside them for a table with these numbers of columns and rows.
void requireRoom(const TableSizes &finished, std::size_t columns, std::size_t rows);

// What a column holds beside numbers.
struct ColumnFacts {
    std::size_t words = 0;
    std::size_t wordsBesideNumbers = 0; // of them, in rows that have a number
    std::size_t times = 0;
    std::size_t firstLine = 0; // with a word
    std::string_view firstWord;
};

struct TableRows {
    std::vector<std::vector<double>> columns; // up to the last row that has a value there
    std::vector<ColumnFacts> facts;           // up to the last column that may have any
    std::size_t count = 0;
    LineCount linesOfWords; // that are no rows
};

// Reads lines as rows of a table whose separator is `separator`.
class RowReader {
  public:
    RowReader() = default;
    RowReader(char lineSeparator, Commas ofText, const TableSizes &finishedTables,
              ReadingTime &readingTime)
        : separator(lineSeparator), commas(ofText), finished(finishedTables), time(&readingTime) {}

    // The usual row: as many numbers as there are columns, and nothing else but separators. False
    // for any other line, and after many of those in turn, where trying costs more than it gains.
    // textEnd: how far the rows may go on.
    bool appendPlain(const char *line, const char *textEnd);

    // Any row; what isn't a number in it is noted. A line of nothing but words is no row. False for
    // a line of words behind rows without any number: with it the table begins anew, without rows.
    // The line must stay where it is.
    bool append(const char *line, std::size_t lineNumber);

    const TableRows &rows() const { return table; }

    // The rows so far; the reader has none then.
    TableRows take();

  private:
    char separator = ' ';
    Commas commas = Commas::separate;
    TableSizes finished;
    ReadingTime *time = nullptr; // of fields in unusual rows
    TableRows table;
    std::size_t emptyRows = 0; // of them without any number
    int unusualRows = 0;       // one after the other that weren't plain
    std::vector<double> row;
    std::vector<Field> fields;
    std::string scratch;

    bool readPlain(const char *line);
    bool readPlainCells(const char *line);
    const char *withDecimalPoints(const char *line);
    void note(std::size_t lineNumber, bool hasNumber);
    void appendRow();
    void reserveRows(const char *line, const char *textEnd);
};

} // namespace plotwerk

#endif
