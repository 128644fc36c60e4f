// tableReader.h - lines of data text, one by one, made tables.
#ifndef PLOTWERK_DATA_TABLEREADER_H
#define PLOTWERK_DATA_TABLEREADER_H

#include "plotwerk/data/dataText.h"
#include "plotwerk/data/head.h"
#include "plotwerk/data/readingTime.h"
#include "plotwerk/data/remarks.h"
#include "plotwerk/data/tableRows.h"

#include <string>
#include <vector>

namespace plotwerk {

class TableReader {
  public:
    // With wordsEverywhere even lines that all have words in them, and a column of numbers, are
    // rows. The time outlives the reader.
    TableReader(Commas ofText, bool everywhere, ReadingTime &readingTime)
        : commas(ofText), wordsEverywhere(everywhere), time(readingTime) {}

    // Lines stay where they are, as they are, until the tables are taken. textEnd: how far the text
    // goes on behind the line.
    void readLine(const char *line, std::size_t number, const char *textEnd);

    std::vector<DataTable> takeTables();

    Remarks remarks;

    // Where the first field stands that is no number, in the first line that can't be names.
    std::string whereReadingStopped;

  private:
    Commas commas;
    bool wordsEverywhere;
    ReadingTime &time;
    std::vector<DataTable> tables;
    TableSizes finished; // of the tables

    // the table that is being read
    std::vector<HeadLine> head;
    bool headEnded = false; // by an empty line
    char tableSeparator = ' ';
    Names names;
    RowReader rows;

    std::vector<Field> fields;
    int stops = 0; // lines so far that reading stopped at; of two the first may be names

    void addHead(HeadLine line);
    void readHead(const char *line, std::size_t number);
    void dropFromHead(std::size_t count);
    bool beginsWithNumber(const char *line);
    void noteStop(std::size_t lineNumber);
    bool beginTableOfWords();
    void beginTable(const TableLayout &layout);
    void readRow(const char *line, std::size_t number);
    void endGroup();
};

} // namespace plotwerk

#endif
