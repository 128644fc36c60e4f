// readingTime.h - how long it takes to read a data text, counted as it is read.
#ifndef PLOTWERK_DATA_READINGTIME_H
#define PLOTWERK_DATA_READINGTIME_H

#include "plotwerk/base/bounds.h"
#include "plotwerk/data/fields.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace plotwerk {

// The figures, in nanoseconds, are about one and a half times what was measured. Each function
// refuses what goes beyond the time of one message. Rows that are plain are paid for with the whole
// text, before any is read.
class ReadingTime {
  public:
    explicit ReadingTime(std::size_t textBytes) { add(8 * bytes(textBytes)); }

    // Another encoding made UTF-8.
    void addConversion(std::size_t textBytes) { add(14 * bytes(textBytes)); }

    // A line looked at for what its commas are.
    void addCommas(std::size_t lineBytes) { add(80 + 15 * bytes(lineBytes)); }

    // Text looked through for the end of a cell in quotes.
    void addQuotes(std::size_t textBytes) { add(1.5 * bytes(textBytes)); }

    // A line that isn't a plain row, before its fields are read, and these then.
    void addLine(std::size_t lineBytes) { add(200 + 10 * bytes(lineBytes)); }
    void addFields(const std::vector<Field> &fields) {
        add(220 * static_cast<double>(std::count_if(fields.begin(), fields.end(), [](auto &field) {
                return !field.text.empty();
            })));
    }

    // A line above the rows, looked through for names.
    void addNames(std::size_t lineBytes) { add(100 * bytes(lineBytes)); }

  private:
    double sum = 0;

    static double bytes(std::size_t count) { return static_cast<double>(count); }
    void add(double nanoseconds) { requireTime(sum += nanoseconds); }
};

} // namespace plotwerk

#endif
