// lines.h - a text cut into the lines of data text.
#ifndef PLOTWERK_DATA_LINES_H
#define PLOTWERK_DATA_LINES_H

#include "plotwerk/data/readingTime.h"

#include <cstddef>
#include <string>

namespace plotwerk {

// Makes every line end in LF. CR LF becomes a blank and LF, so that the text needn't move.
void unifyLineEnds(std::string &text);

// The lines of a text, one after the other. Each stays where it is in the text, ended by a NUL in
// place of its LF. One that ends within a cell in double quotes goes on, with a blank for its end,
// unless nothing closes the cell soon.
//   Lines lines(text);
//   while (const char *line = lines.next()) ... lines.number() ...
class Lines {
  public:
    // A text of lines that end in LF, and that outlives them, as the time does.
    Lines(std::string &text, ReadingTime &readingTime);

    // Null behind the last line.
    const char *next();

    // Of the line that next gave: its first one, from 1 on.
    std::size_t number() const { return lineNumber; }

    const char *textEnd() const { return end; }

  private:
    char *following;
    char *end;
    bool hasQuotes;
    ReadingTime &time;
    std::size_t lineNumber = 0;
    std::size_t joined = 1; // how many lines of the text next has given as one
};

} // namespace plotwerk

#endif
