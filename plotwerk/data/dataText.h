// dataText.h - data text: lines of numbers, as measurements write them and spreadsheets paste them.
//
// A line is a row. Lines end in LF, CR LF or CR. Fields are separated by blanks, tabs, semicolons
// and commas; where the decimal separator is a comma, a comma is a decimal point and never
// separates.
//   - A semicolon or comma, with any blanks and tabs around it, ends one field; elsewhere each tab
//     does, and any number of blanks. Nothing between two of them is NaN: "1,,3" "1;;3" "1\t\t3".
//     So is nothing before a first semicolon or comma; nothing after the last one is no field.
//     Blanks and tabs before the first field are indentation.
//   - A number is what strtod reads, with inf and nan in any case. NAN and - are NaN.
//   - Rows may be of any length: the table is as wide as its longest row, or as its line of names,
//     and short rows end in NaN.
//   - Before the first row of a table, a line with a word in it names the columns, a later one
//   anew.
//     A name with blanks or other separators is quoted ("..." or '...', the quote itself as \").
//     Anything quoted is a word. Columns without a name are "X" and "Y1", "Y2", ...
//   - A word in a row is NaN; words after a row's last number are left out.
//   - # begins a comment, except within quotes. A line that is just a comment doesn't count.
//   - An empty line after rows begins a new table; names followed by an empty line still hold.
// The first column is x. A table whose rows all hold one number is y over 0, 1, 2, ...; of two or
// more names the first is x's then, otherwise the name is y's.
#ifndef PLOTWERK_DATA_DATATEXT_H
#define PLOTWERK_DATA_DATATEXT_H

#include "plotwerk/model/document.h"

#include <limits>
#include <string>
#include <vector>

namespace plotwerk {

struct DataTable {
    Table table;
    bool countedX = false; // the text had no x: it counts the rows
};

// The tables of a data text; each has at least one y column and one row. Refused: a text without
// rows, with a NUL byte, or whose tables would have more than 1e8 values, filled up with NaN.
// decimalSeparator: '.' or ','; a point is a decimal point in either case.
std::vector<DataTable> readDataText(std::string text, char decimalSeparator);

// One table as data text, to be read back as it is: a line of names and a line for each row, fields
// separated by tabs. Appended to text, after an empty line when there is text already. All columns
// have the same number of rows. Numbers have the decimal separator, and as many digits as
// stringOfDouble gives them, or, where these don't read back as the same number, as many as it
// takes; NaN is NAN. In names, line ends become blanks, and a quoted name that would end in a
// backslash gets a blank there. Refused when the text would become longer than `longest` bytes: at
// once where that is certain, else as soon as it is.
void writeDataText(const std::vector<const Column *> &columns, char decimalSeparator,
                   std::string &text, double longest = std::numeric_limits<double>::infinity());

} // namespace plotwerk

#endif
