// remarks.h - what is told on the log about a data text that has been read.
#ifndef PLOTWERK_DATA_REMARKS_H
#define PLOTWERK_DATA_REMARKS_H

#include <cstddef>
#include <string>
#include <string_view>

namespace plotwerk {

// "TEXT", as remarks name what stands in the text.
std::string inQuotes(std::string_view text);

class Remarks {
  public:
    // Columns, as they are to be called.
    void addLeftOut(const std::string &column) { addTo(leftOut, column); }
    void addMixed(const std::string &column) { addTo(mixed, column); }

    // The number of words that were read as missing values, and the first as it is to be called.
    void addWords(std::size_t count, const std::string &first);

    // At most a line for each of the three kinds, whatever the number of columns.
    void write() const;

  private:
    struct List {
        std::string text;
        std::size_t count = 0;
    };
    List leftOut, mixed;
    std::size_t words = 0;
    std::string firstWord;

    static void addTo(List &list, const std::string &column);
    static std::string textOf(const List &list);
};

} // namespace plotwerk

#endif
