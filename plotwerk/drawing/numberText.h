// numberText.h - the numbers of an axis as texts.
#ifndef PLOTWERK_DRAWING_NUMBERTEXT_H
#define PLOTWERK_DRAWING_NUMBERTEXT_H

#include "plotwerk/drawing/richText.h"

namespace plotwerk {

// How all numbers of an axis are written.
struct NumberFormat {
    int decimals = 0;    // of the number, or of what stands before the power of ten
    bool powers = false; // as 1.5×10^exponent
    int exponent = 0;    // the same for all
};

// The format in which numbers that are multiples of the increment, up to largest in magnitude, are
// told apart: as many decimals as FormatOfReal finds in the increment, and powers of ten where it
// takes the exponential notation for the largest, unless that were longer. Precision is the least
// number of decimals; with exponents there are always powers of ten.
//   0.25, 1 -> 0.00 0.25 ...    2e5, 1e6 -> 2×10^5 ... (exponent 6: 0.2×10^6)
NumberFormat formatOfNumbers(double increment, double largest, int precision, bool exponents);

// Zero is written without a power of ten.
RichText numberText(double value, const NumberFormat &format);

// Whether FormatOfReal takes the exponential notation: below 0.001 and from 1e6 on.
bool needsPowers(double value);

// A number of a logarithmic axis: as 10^5 or 2×10^5 with powers, or with its own decimals, at least
// `precision` of them.
RichText logNumberText(double value, bool powers, int precision);

} // namespace plotwerk

#endif
