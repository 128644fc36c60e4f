// cFct.h - functions with complex values, sampled along a line (CFct) and on a grid (CFct2D).
//
// They follow Fct and Fct2D in everything but the type of the values.
#ifndef PLW_FCT_CFCT_H
#define PLW_FCT_CFCT_H

#include <complex>

namespace plw {

struct CFct {
    std::complex<double> *y; // values; y[i] belongs to t[i]
    double *t;               // sample positions
    int n;                   // samples in use
    int size;                // samples allocated
    int lastIndex;           // where the last search ended
    char fixedLen;           // 1: never grows
    char linked;             // 1: shares another record's arrays
};

// Empty function with room for `capacity` samples, at least 1; freeCFct releases it, and its arrays
// unless it is linked.
CFct *newCFct(int capacity);
void freeCFct(CFct *f);

// Adds a sample at the end. A full record grows to (size + 16) * 1.5 samples: 1, 25, 61, 115, ...
// Ends the process: "ERROR in appendCFct: function with fixed length full".
void appendCFct(CFct *f, double t, double real, double imaginary);

// Sorts the samples by t, or by the real part alone, with quicksortCluster: samples with equal keys
// may change places, and NaN keys end up anywhere.
void sortByTCFct(CFct *f);
void sortByRealCFct(CFct *f);

struct CFct2D {
    std::complex<double> *z; // values; column i, row j is z[i + j * sizeX]
    double *x;               // grid x values
    double *y;               // grid y values
    int nx;                  // columns in use
    int ny;                  // rows in use
    int sizeX;               // columns allocated: the row stride of z
    int sizeY;               // rows allocated
    int lastIndexX;          // where the last search in x ended
    int lastIndexY;          // the same in y
    char fixedLen;           // unused
    char fixedLenY;          // unused
};

// Grid without valid elements, with room for sizeX columns and sizeY rows, at least 1 of each.
// freeCFct2D releases it.
CFct2D *newCFct2D(int sizeX, int sizeY);

// Grid of nx columns and ny rows (>= 0) at x0, x0 + dx, ... and y0, y0 + dy, ..., each rounded
// once. values holds ny rows of nx values and is copied; with NULL the values are undefined.
CFct2D *newCFct2DWith(const std::complex<double> *values, int nx, int ny, double x0, double dx,
                      double y0, double dy);

// Sets or returns the value at column i, row j.
// Ends the process if i is not within 0..nx-1 or j not within 0..ny-1: "ERROR in setCFct2DByIndex:
// index out of range", "ERROR in cFct2DAt: index out of range", and that index.
void setCFct2DByIndex(CFct2D *F, int i, int j, double real, double imaginary);
std::complex<double> cFct2DAt(const CFct2D *F, int i, int j);

// Makes all nx * ny values 0.
void zeroCFct2D(CFct2D *F);

// Makes nx and ny 0; the arrays stay.
void clearCFct2D(CFct2D *F);

// Releases the grid and its arrays.
void freeCFct2D(CFct2D *F);

} // namespace plw

#endif
