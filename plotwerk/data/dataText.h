// dataText.h - data text: lines of numbers, as measurements write them and spreadsheets paste them.
//
// A line is a row. Lines end in LF, CR LF or CR. Fields are separated by blanks, tabs, semicolons
// and commas; where commas are decimal or group digits (commas.h) they never separate.
//   - A semicolon or comma, with any blanks and tabs around it, ends one field; elsewhere each tab
//     does, and any number of blanks. Nothing between two of them is NaN: "1,,3" "1;;3" "1\t\t3".
//     So is nothing before a first semicolon or comma; nothing after the last one is no field.
//     Blanks and tabs before the first field are indentation.
//   - A field may be quoted, "..." or '...', with the quote itself doubled or as \". In double
//     quotes that begin a cell a line may end.
//   - A number is what strtod reads, with inf and nan in any case, or what cellText.h tells of
//     others. NAN, - and words for what is missing are NaN. A date, with its time, is a number of
//     seconds (timeText.h); a time of day in the next field belongs to it.
//   - Rows may be of any length: the table is as wide as its longest row, short ones end in NaN. A
//     line of nothing but words is no row.
//   - # begins a comment, except within quotes; at the beginning of a line so do % ! and //. A line
//     that is just a comment doesn't count.
//   - An empty line after rows begins a new table.
// Before the first row of a table, lines with a word in them name the columns, the last one wins.
//   - They are split only where the rows use tabs, semicolons or commas, else at blanks, too.
//     Columns without a name are "X" and "Y1", "Y2", ... Names without a column aren't used, and
//     where blanks split a line into more words than columns, none of them is.
//   - A line of units below the names adds these to them: "Time (s)".
//   - A comment with as many names as there are columns names them.
//   - Names stay in force across empty lines.
// A word in a row is NaN, and words after a row's last number don't count. A column of words, which
// hardly ever has a number, is left out. A text in which every row has words is read all the same
// if most of its lines agree on where numbers are. The log tells what was left out or passed over.
//
// The first column is x. A table whose rows all hold one number is y over 0, 1, 2, ...; of two or
// more names the first is x's then, otherwise the name is y's.
#ifndef PLOTWERK_DATA_DATATEXT_H
#define PLOTWERK_DATA_DATATEXT_H

#include "plotwerk/model/document.h"

#include <string>
#include <vector>

namespace plotwerk {

struct DataTable {
    Table table;
    bool countedX = false; // the text had no x: it counts the rows
};

// The tables of a data text; each has at least one y column and one row. Refused: a text without
// rows, with the line and the cell at which reading stopped; one with a NUL byte; one whose tables
// would have more than 1e8 values, filled up with NaN.
// decimalSeparator: '.' or ','; a point is a decimal point in either case.
std::vector<DataTable> readDataText(std::string text, char decimalSeparator);

// As readDataText, of the bytes of a file (encoding.h), whose own numbers may say what commas are
// (commas.h). The log tells when that isn't as set, or couldn't be told.
std::vector<DataTable> readDataFile(std::string bytes, char decimalSeparator);

} // namespace plotwerk

#endif
