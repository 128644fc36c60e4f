// cellText.h - what the text of one cell means.
#ifndef PLOTWERK_DATA_CELLTEXT_H
#define PLOTWERK_DATA_CELLTEXT_H

#include <string_view>

namespace plotwerk {

// What commas are in a text, outside of quotes.
enum class Commas { separate, decimal, group };

// Whether the text is a number with a comma before its decimals, as "-1,5e3"; with points before
// groups of three digits, as "1.234,5".
bool hasDecimalComma(std::string_view text);

// Whether the text is a number with commas before groups of three digits, as "1,234.5".
bool hasGroupCommas(std::string_view text);

// Reads a whole text as a number: what strtod reads, Fortran's exponents ("1.5D-3", "1.5-103"), and
// commas that group or are decimal. Where both are possible they are decimal if `commas` says so.
bool readNumber(std::string_view text, Commas commas, double *value);

// Whether readNumber looks at more of it than how it begins.
bool mayBeNumber(std::string_view text);

// Whether the text stands for a value that is missing: "", "NA", "n/a", "--", "null", "#N/A", "***"
// and the like.
bool meansMissing(std::string_view text);

// Whether a '#' begins an error value of a spreadsheet, as "#DIV/0!", and no comment.
bool isSpreadsheetError(const char *p);

// Whether the text is a unit: anything in brackets, or products of known symbols with or without
// prefixes and powers, as "mV", "m/s", "cm^-1", "kg m-3".
bool isUnit(std::string_view text);

} // namespace plotwerk

#endif
