// fct2D.h - a real function sampled on a rectangular grid.
//
// The grid lines x and y ascend. Capacities never change; which of the columns and rows are valid
// is told by nx and ny, which the caller sets (newFct2DWith does it, too). The two flags say how a
// grid was made and change nothing. Whoever gets a new grid frees it with freeFct2D.
#ifndef PLW_FCT_FCT2D_H
#define PLW_FCT_FCT2D_H

#include "fct/fct.h"

namespace plw {

struct Fct2D {
    double *z;      // values; column i, row j is z[i + j * sizeX]
    double *x;      // grid x values
    double *y;      // grid y values
    int nx;         // columns in use
    int ny;         // rows in use
    int sizeX;      // columns allocated: the row stride of z
    int sizeY;      // rows allocated
    int lastIndexX; // where the last search in x ended: the next one's hint
    int lastIndexY; // the same in y
    char fixedLen;  // 1: made by newFct2DFixedLen
    char fixedLenY; // the same
};

// Grid without valid elements, with room for sizeX columns and sizeY rows, at least 1 of each.
Fct2D *newFct2D(int sizeX, int sizeY);
Fct2D *newFct2DFixedLen(int sizeX, int sizeY);

// Grid of nx columns and ny rows (>= 0) at x0, x0 + dx, ... and y0, y0 + dy, ..., each rounded
// once. values holds ny rows of nx values and is copied; with NULL the values are undefined.
//   nx = 3, ny = 2, x0 = 0, dx = 1, y0 = 10, dy = 5 -> x = 0, 1, 2 and y = 10, 15,
//   value at column 2, row 1: values[5]
Fct2D *newFct2DWith(const double *values, int nx, int ny, double x0, double dx, double y0,
                    double dy);

// Sets or returns the value at column i, row j.
// Ends the process if i is not within 0..nx-1 or j not within 0..ny-1: "ERROR in setFct2DByIndex:
// index out of range", "ERROR in fct2DAt: index out of range", and that index.
void setFct2DByIndex(Fct2D *F, int i, int j, double value);
double fct2DAt(const Fct2D *F, int i, int j);

// Makes nx and ny 0; the arrays stay.
void clearFct2D(Fct2D *F);

// Releases the grid and its arrays.
void freeFct2D(Fct2D *F);

// Writes a line "X  Y  VALUE" for each grid point, row by row (x runs first) or column by column (y
// runs first). For the path and what ends the process see printFct.
void printFct2Dx(const Fct2D *F, const char *path);
void printFct2Dy(const Fct2D *F, const char *path);

// Value at (x, y): along each axis linear between the two grid lines around it, first along x, as
// evalFct does between samples. Beyond the last line of an axis the last cell is extrapolated;
// below the first the process ends, and for a grid of a single point: "ERROR in fct2DAt: index out
// of range" and -1; for an empty grid with 0. A grid of one column or row can be evaluated on that
// alone, elsewhere and at NaN the process ends: "ERROR in evalFct2D: x outside", "ERROR in
// evalFct2D: y outside" and 1. Moves both indexes.
//   z = 0, 1 / 2, 5 on x = 0, 1 and y = 0, 1:   (1, 1) -> 5   (0.5, 0.5) -> 2   (2, 0) -> 2
double evalFct2D(Fct2D *F, double x, double y);

// The whole column at grid line x0 as a new complete function of fixed length: y0 and y1 must be
// the first and last grid y, x1 equal to x0, and all four exactly on the grid; other slices are not
// provided.
// Ends the process: "ERROR in sliceFct2D: implementation incomplete".
Fct *sliceFct2D(const Fct2D *F, double x0, double y0, double x1, double y1);

// Finds the strongest peak: peaksFct along y in every column, then along x over the columns'
// strongest. 1 with its position and strength (not the value of F), or 0.
//
// More than 10 columns, spanning widthX / 2 or more, are searched by peaksFct along x, which finds
// none while they span less than widthX; *x, *y and *strength are then left alone, as they are
// where no column has a peak. Of other grids the strongest column is taken, and from 3 columns on
// refined by the parabola through its neighbours; if one of these is missing or it has no vertex,
// the result is 0 with *x = 0.0, *y there, and the strongest column's *strength. Of columns at
// equal x the same one is searched every time. Ends the process: "ERROR in peakFct2D: zero size
// function"; "ERROR in peakFct2D: incompete implemented case 2" unless there are fewer columns than
// rows; and as sliceFct2D, for an x, the first y or the last y that is NaN.
int peakFct2D(const Fct2D *F, double *x, double *y, double *strength, double threshold,
              double widthX, double widthY);

} // namespace plw

#endif
