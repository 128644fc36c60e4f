// shownPoints.h - the points that are shown of a curve, with the bars of their errors.
#ifndef PLOTWERK_MODEL_SHOWNPOINTS_H
#define PLOTWERK_MODEL_SHOWNPOINTS_H

#include "plotwerk/model/curves.h"

#include <span>
#include <vector>

namespace plotwerk {

// How far the bars of the points reach in both directions; empty without errors. What isn't
// positive is no bar.
struct BarLengths {
    std::span<const double> above;
    std::span<const double> below;
};

// Refers to the columns where it can, and holds the rest.
struct ShownPoints {
    std::span<const double> x;
    std::span<const double> y;
    BarLengths xBars;
    BarLengths yBars;
    std::vector<std::vector<double>> held;
};

// The rows of a curve. Of a pair of errors those downwards count without their sign.
ShownPoints rowPoints(const Table &table, const Column &curve, const Errors &xErrors,
                      const Errors &yErrors);

// What is drawn: the rows or, with look.sum above 1, the means of look.sum rows with x and y each.
// The error of a mean is that of independent values, the root of the sum of squares through their
// number.
ShownPoints shownPoints(const Table &table, const Column &curve, const Errors &xErrors,
                        const Errors &yErrors);

} // namespace plotwerk

#endif
