// commas.h - whether the commas of a text separate, are decimal or group digits.
#ifndef PLOTWERK_DATA_COMMAS_H
#define PLOTWERK_DATA_COMMAS_H

#include "plotwerk/data/cellText.h"
#include "plotwerk/data/readingTime.h"

#include <string_view>

namespace plotwerk {

struct CommaUse {
    Commas commas;
    std::string_view remark{}; // on what a file's commas are taken for, where that isn't plain
};

// Of a text whose lines end in LF. Commas are decimal, where that is the decimal separator.
// Otherwise they separate, except where tabs, semicolons or blanks separate as well and each comma
// stands as in "1,234.5": then they group.
CommaUse commaUseOf(std::string_view text, char decimalSeparator, ReadingTime &time);

// As that of a file, where the decimal separator counts only when both are possible. Commas are
// decimal where they stand within numbers as in "1,5", while tabs, semicolons or blanks separate.
CommaUse commaUseOfFile(std::string_view text, char decimalSeparator, ReadingTime &time);

} // namespace plotwerk

#endif
