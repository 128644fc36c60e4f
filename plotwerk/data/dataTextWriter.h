// dataTextWriter.h - tables as data text.
#ifndef PLOTWERK_DATA_DATATEXTWRITER_H
#define PLOTWERK_DATA_DATATEXTWRITER_H

#include "plotwerk/model/document.h"

#include <limits>
#include <string>
#include <vector>

namespace plotwerk {

// One table as data text, to be read back as it is: a line of names and a line for each row, fields
// separated by tabs. Appended to text, after an empty line when there is text already. All columns
// have the same number of rows. Numbers have the decimal separator, and as many digits as
// stringOfDouble gives them, or, where these don't read back as the same number, as many as it
// takes; NaN is NAN. In names, line ends become blanks, and a quoted name that would end in a
// backslash gets a blank there. Refused when the text would become longer than `longest` bytes: at
// once where that is certain, else as soon as it is. So it is where it takes too much time.
void writeDataText(const std::vector<const Column *> &columns, char decimalSeparator,
                   std::string &text, double longest = std::numeric_limits<double>::infinity());

// In nanoseconds, at most: of numbers near the smallest ones, which have most digits to be found.
double timeOfWriting(double numbers, double length);

} // namespace plotwerk

#endif
