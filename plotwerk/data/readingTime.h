// readingTime.h - how long it takes to read a data text, counted as it is read.
#ifndef PLOTWERK_DATA_READINGTIME_H
#define PLOTWERK_DATA_READINGTIME_H

#include "plotwerk/base/bounds.h"
#include "plotwerk/data/fields.h"

#include <cstddef>
#include <vector>

namespace plotwerk {

// The figures, in nanoseconds, are one and a half times what the slowest texts were measured to
// take, or more. Each function refuses what goes beyond the time of one message. Plain rows are
// paid for with the whole text, before any is read; there can't be many of the shortest, since a
// text has a most of values.
class ReadingTime {
  public:
    explicit ReadingTime(std::size_t textBytes) { add(8 * bytes(textBytes)); }

    // Another encoding made UTF-8.
    void addConversion(std::size_t textBytes) { add(5 * bytes(textBytes)); }

    // A line looked at for what its commas mean.
    void addCommas(std::size_t lineBytes) { add(30 + 12 * bytes(lineBytes)); }

    // Text looked through for the end of a cell in quotes.
    void addQuotes(std::size_t textBytes) { add(1.5 * bytes(textBytes)); }

    // A line that isn't a plain row, before its fields are read that often, and these then. Words
    // that begin as numbers do take the longest.
    void addLine(std::size_t lineBytes, int readings) {
        add(60 + readings * (40 + 4 * bytes(lineBytes)));
    }
    void addFields(const std::vector<Field> &fields, int readings) {
        double once = 0;
        for (const Field &field : fields) {
            if (field.text.empty()) continue;
            const bool isTried = field.kind == FieldKind::word && mayBeNumber(field.text);
            once += isTried ? 200 : 50;
        }
        add(readings * once);
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
