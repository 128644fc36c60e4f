// head.h - the lines before the first row of a table: which of them are names, which rows.
#ifndef PLOTWERK_DATA_HEAD_H
#define PLOTWERK_DATA_HEAD_H

#include "plotwerk/data/fields.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace plotwerk {

struct HeadLine {
    const char *text; // of a comment behind its mark
    std::size_t number;
    bool isComment;
    bool beginsGroup = false; // behind an empty line
};

// How the rows of a table are read, and where in the head they begin.
struct TableLayout {
    std::size_t firstRow; // a line of the head; as many as there are: behind it
    char separator;
    std::size_t width;
    std::vector<bool> joined; // for each column, whether it was a date and a time in two cells
};

// Whether a line begins a table wherever it stands: it has a number, and no words, quotes aside, or
// nothing but separators.
bool isPlainRow(const std::vector<Field> &fields);

// Where the last group of head lines begins.
std::size_t beginOfGroup(const std::vector<HeadLine> &head);

// The layout of a table of which `fields` are a plain row. With it go the lines of the head, from
// line `begin` on, that fit its columns.
TableLayout layoutOfPlainRow(const std::vector<HeadLine> &head, std::size_t begin,
                             const std::vector<Field> &fields, char separator, Commas commas);

// The layout of a table of which the last group of head lines, words and all, are rows; none if
// they aren't. With wordsEverywhere one column of numbers is enough, else two.
std::optional<TableLayout> layoutOfWords(const std::vector<HeadLine> &head, Commas commas,
                                         bool wordsEverywhere);

} // namespace plotwerk

#endif
