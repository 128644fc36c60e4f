// remarks.h - what is told on the log about a data text that has been read.
#ifndef PLOTWERK_DATA_REMARKS_H
#define PLOTWERK_DATA_REMARKS_H

#include <cstddef>
#include <string>
#include <string_view>

namespace plotwerk {

// "TEXT", as remarks name what stands in the text.
std::string inQuotes(std::string_view text);

// Lines of one kind: how many, and the number of the first.
struct LineCount {
    std::size_t count = 0;
    std::size_t first = 0;

    void add(std::size_t number) { add({1, number}); }
    void add(const LineCount &later) {
        if (count == 0) first = later.first;
        count += later.count;
    }
};

class Remarks {
  public:
    // Columns, as they are to be called.
    void addLeftOut(const std::string &column) { addTo(leftOut, column); }
    void addMixed(const std::string &column) { addTo(mixed, column); }
    void addUnnamed(const std::string &column) { addTo(unnamed, column); }

    // Names that no column got.
    void addUnusedName(const std::string &name) { addTo(unusedNames, name); }

    // The number of words that were read as missing values, and the first as it is to be called.
    void addWords(std::size_t count, const std::string &first);

    LineCount linesOfWords; // below a first row
    LineCount unreadRows;   // above it, with a number in front

    // At most a line for each kind, whatever the number of columns and lines.
    void write() const;

  private:
    struct List {
        std::string text;
        std::size_t count = 0;
    };
    List leftOut, mixed, unnamed, unusedNames;
    std::size_t words = 0;
    std::string firstWord;

    static void addTo(List &list, const std::string &column);
    static void write(const List &list, const char *what);
    static void write(const LineCount &lines, const char *what);
};

} // namespace plotwerk

#endif
