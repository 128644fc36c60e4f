// editing.h - changing the selected curves, and making new ones from them.
//
// Without a selection everything here but deleteAllCurves and createCurve is refused. New curves
// aren't selected; what is made from a curve is drawn against the same axes. Deleting and adding
// curves starts the walk of marks over.
#ifndef PLOTWERK_MODEL_EDITING_H
#define PLOTWERK_MODEL_EDITING_H

#include "plotwerk/model/document.h"

#include <string>

namespace plotwerk {

// An empty name is allowed; such a curve is found by position and index only. The column with a
// curve's errors goes by the new name, too, unless it is selected itself.
void renameSelection(Document &document, const std::string &name);

// Makes the selected curves visible and brings them forward: they are drawn after all others, the
// first selected one first. Their order in the document stays.
void showSelection(Document &document);

// Deletes the selected curves. A table without y columns goes too, and a source without tables.
void deleteSelection(Document &document);

// Deletes all sources; texts, axes and formula stay.
void deleteAllCurves(Document &document);

// Sorts the rows of each selected curve's table by x, ascending. Equal x keep their order; rows
// without x come last.
void sortByX(Document &document);

// Sorts the rows of the first selected curve's table by that curve. Equal values keep their order;
// rows without a value come last in both directions.
void sortBySelection(Document &document, bool ascending);

// In each selected curve's table exchanges x and the curve that is selected first there: names and
// values. Look, mark and selection stay with the column's position.
void swapSelectionWithX(Document &document);

// Adds to the table of each selected curve, as its last column, the derivative "NAME'". At a point
// between two others it is that of the parabola through the three (Lagrange's three-point formula
// for unequal steps), at either end that of the nearest parabola there; exact for parabolas. With
// two points it is their slope. Points without x or y have NaN and are left out: their neighbours
// use the next valid point. Equal x among the three give NaN, and so does a single point.
//   (0, 0), (1, 1), (3, 9) -> 0, 2, 6
void differentiateSelection(Document &document);

// Adds a table after the one of the first selected curve, or else to the last source, or else to a
// new source "Data": x is minX, minX + incX, ... up to and including maxX (within a millionth of a
// step), y is minY, minY + incY, ... Refused unless all are finite, incX > 0, minX <= maxX and
// there are at most 1e8 points.
void createCurve(Document &document, double minX, double maxX, double incX, double minY,
                 double incY);

// After the table of each selected curve adds one with the curve "NAME maxima", "NAME minima", or
// both, as flags say: the points that are extremes at least minWidth wide and minHeight high. The
// order is that of the points; those without x or y are left out. For a maximum
//   height is how far the curve falls, on the side where it falls less, before it rises above the
//   maximum or ends (its prominence),
//   width is the number of points around it above half of that height.
// A minimum is a maximum of -y. The candidates come from peaksFct over minWidth points (at
// least 2), so that of two extremes closer than that the curve smoothed over minWidth has one. An
// extreme within half of minWidth of the first or last point isn't found. NaN and negative limits
// mean any. A curve without such extremes adds nothing; refused when flags are set and no curve has
// any.
void searchExtremes(Document &document, bool maxima, bool minima, int minWidth, double minHeight);

} // namespace plotwerk

#endif
