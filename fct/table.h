// table.h - rows of numbers written to an output file.
#ifndef PLW_FCT_TABLE_H
#define PLW_FCT_TABLE_H

#include <cstddef>
#include <cstdio>

namespace plw {

// A table being written: rows gather in `text` and go to the file when it is full. It lives on the
// caller's stack and is the same fixed size for a table of any length.
struct Table {
    std::FILE *file;
    const char *path;
    std::size_t used;
    char text[32768];
};

// Opens the output file as printFct describes.
void openTable(Table *table, const char *path);

// Adds a line of the numbers as "%g" gives them, with a decimal point whatever the locale, and two
// blanks between them. At most 16 numbers a row.
void addRow(Table *table, const double *numbers, int count);

// Writes the rest and closes the file; standard output stays open.
void closeTable(Table *table);

} // namespace plw

#endif
