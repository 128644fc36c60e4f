// sampledFunction.h - the library's numerics on sampled functions, with its demands checked.
//
// The library ends the process when it is asked for what makes no sense, such as a value of an
// empty function. Nothing else of Plotwerk calls these routines of it: here a Refusal is thrown, or
// std::bad_alloc where there is no memory for what they take.
//
// x and y are the samples' positions and ordinates. Refused: two lengths, and more samples than an
// int counts. Positions ascend unless something else is said.
#ifndef PLOTWERK_MODEL_SAMPLEDFUNCTION_H
#define PLOTWERK_MODEL_SAMPLEDFUNCTION_H

#include <span>
#include <vector>

namespace plotwerk {

// Value at `at`, linear between samples; 0 outside of them. hint is where the last search ended,
// and becomes where this one does. Refused: no samples.
double interpolated(std::span<const double> x, std::span<const double> y, double at, int &hint);

// Index of the last sample at or below `at`, of several at one position any; 0 when there is none.
// NaN among the positions is skipped. hint as above. Refused: no samples.
int searched(std::span<const double> x, std::span<const double> y, double at, int &hint);

// Integral from the first sample to the last; 0 for fewer than two. The samples may come in any
// order and are in the order of x afterwards.
double integral(std::span<double> x, std::span<double> y);

// Sorts the keys ascending, NaN first, and moves `other` along; what is equal keeps its order.
void sortTogether(std::span<double> key, std::span<double> other);

// Where y, sampled at 0, 1, 2, ..., has peaks about `width` wide; ascending. A peak's strength is
// measured as by peaksFct.
std::vector<double> peakPositions(std::span<const double> y, double minStrength, double width);

// Replaces each `block` points by their mean, at the beginning of x and y; points that aren't
// finite don't count. Returns how many means there are.
int averageBlocks(std::span<double> x, std::span<double> y, int block);

} // namespace plotwerk

#endif
