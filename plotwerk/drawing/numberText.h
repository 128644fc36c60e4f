// numberText.h - the numbers of an axis as texts.
#ifndef PLOTWERK_DRAWING_NUMBERTEXT_H
#define PLOTWERK_DRAWING_NUMBERTEXT_H

#include "plotwerk/drawing/richText.h"

#include <vector>

namespace plotwerk {

// How all numbers of an axis are written: what is left of the value without the offset and the
// common power of ten.
struct NumberFormat {
    int decimals = 0;       // of the number, or of what stands before the power of ten
    int exponent = 0;       // of the power of ten, the same for all; 0 for none
    bool eachPower = false; // as 1.5×10^exponent; else the power stands once, beside the axis
    double offset = 0;      // stands once, beside the axis
};

// The format in which these ticks, multiples of the increment in ascending order, are told apart:
//   with as many decimals as FormatOfReal finds in the increment;
//   without the roundest of the ticks where more than seven digits would be needed and the first
//   ones are the same for all;
//   without a common power of ten where FormatOfReal takes the exponential notation for the
//   largest, or all have zeros behind the point and seven decimals, and get shorter by that.
// Precision is the least number of decimals; with exponents each number has its power of ten.
// Narrow takes the common power wherever numbers below 0.01 or from 10,000 on get shorter by that.
//   0, 0.25, 0.5 -> 0.00 0.25 0.50                 0, 2e-12, 4e-12 -> 0 2 4, ×10^-12
//   1234567000, 1234567020 -> 0 20, + 1234567000
//   0.001234, 0.0012345 -> 1.2340 1.2345, ×10^-3
NumberFormat formatOfNumbers(double increment, const std::vector<double> &ticks, int precision,
                             bool exponents, bool narrow = false);

// Zero is written without a power of ten.
RichText numberText(double value, const NumberFormat &format);

// What the numbers have in common, as "×10^-6 + 1234567"; empty for nothing.
RichText commonText(const NumberFormat &format);

// Whether FormatOfReal takes the exponential notation: below 0.001 and from 1e6 on.
bool needsPowers(double value);

// A number of a logarithmic axis: as 10^5 or 2×10^5 with powers, or with its own decimals, at least
// `precision` of them.
RichText logNumberText(double value, bool powers, int precision);

} // namespace plotwerk

#endif
