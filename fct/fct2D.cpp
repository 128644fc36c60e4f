#include "fct/fct2D.h"

#include "fct/fmaClones.h"
#include "fct/interpolation.h"
#include "fct/storage.h"
#include "fct/table.h"
#include "util/arrays/search.h"
#include "util/files/fatal.h"

#include <algorithm>
#include <cmath>

namespace plw {

static std::size_t element(const Fct2D *F, int i, int j) {
    return static_cast<std::size_t>(i) +
           static_cast<std::size_t>(j) * static_cast<std::size_t>(F->sizeX);
}

static void requireElement(const Fct2D *F, int i, int j, const char *message) {
    if (i < 0 || i >= F->nx) myexit(message, i);
    if (j < 0 || j >= F->ny) myexit(message, j);
}

// Index of the grid line at or below x, -1 below the first; the one before it for the last line.
static int cell(double x, const double *lines, int n, int *lastIndex) {
    const int i = search_le(x, lines, n, *lastIndex);
    *lastIndex = i;
    if (n > 0 && x < lines[0]) return -1;
    return i == n - 1 ? i - 1 : i;
}

PLW_ALWAYS_INLINE double alongX(const Fct2D *F, int i, int j, double x) {
    const double z0 = fct2DAt(F, i, j);
    const double z1 = fct2DAt(F, i + 1, j);
    return interpolate(F->x[i], z0, F->x[i + 1], z1, x);
}

PLW_ALWAYS_INLINE double alongY(const Fct2D *F, int j, double z0, double z1, double y) {
    return interpolate(F->y[j], z0, F->y[j + 1], z1, y);
}

static void addPoint(Table *table, const Fct2D *F, int i, int j) {
    const double row[] = {F->x[i], F->y[j], fct2DAt(F, i, j)};
    addRow(table, row, 3);
}

Fct2D *newFct2D(int sizeX, int sizeY) {
    Fct2D *F = allocate<Fct2D>(1);
    *F = {};
    F->sizeX = std::max(sizeX, 1);
    F->sizeY = std::max(sizeY, 1);
    F->x = allocate<double>(F->sizeX);
    F->y = allocate<double>(F->sizeY);
    F->z = allocateGrid<double>(F->sizeX, F->sizeY);
    return F;
}

Fct2D *newFct2DFixedLen(int sizeX, int sizeY) {
    Fct2D *F = newFct2D(sizeX, sizeY);
    F->fixedLen = 1;
    F->fixedLenY = 1;
    return F;
}

PLW_FMA_CLONES
Fct2D *newFct2DWith(const double *values, int nx, int ny, double x0, double dx, double y0,
                    double dy) {
    Fct2D *F = newFct2D(nx, ny);
    F->nx = nx;
    F->ny = ny;
    for (int i = 0; i < nx; ++i) F->x[i] = std::fma(i, dx, x0);
    for (int j = 0; j < ny; ++j) F->y[j] = std::fma(j, dy, y0);
    if (values == nullptr) return F;
    for (int j = 0; j < ny; ++j)
        for (int i = 0; i < nx; ++i) F->z[element(F, i, j)] = *values++;
    return F;
}

void setFct2DByIndex(Fct2D *F, int i, int j, double value) {
    requireElement(F, i, j, "ERROR in setFct2DByIndex: index out of range");
    F->z[element(F, i, j)] = value;
}

double fct2DAt(const Fct2D *F, int i, int j) {
    requireElement(F, i, j, "ERROR in fct2DAt: index out of range");
    return F->z[element(F, i, j)];
}

void clearFct2D(Fct2D *F) {
    F->nx = 0;
    F->ny = 0;
}

void freeFct2D(Fct2D *F) {
    std::free(F->x);
    std::free(F->y);
    std::free(F->z);
    std::free(F);
}

void printFct2Dx(const Fct2D *F, const char *path) {
    Table table;
    openTable(&table, path);
    for (int j = 0; j < F->ny; ++j)
        for (int i = 0; i < F->nx; ++i) addPoint(&table, F, i, j);
    closeTable(&table);
}

void printFct2Dy(const Fct2D *F, const char *path) {
    Table table;
    openTable(&table, path);
    for (int i = 0; i < F->nx; ++i)
        for (int j = 0; j < F->ny; ++j) addPoint(&table, F, i, j);
    closeTable(&table);
}

PLW_FMA_CLONES
double evalFct2D(Fct2D *F, double x, double y) {
    if (F->nx == 1) {
        if (x != F->x[0]) myexit("ERROR in evalFct2D: x outside", F->nx);
        const int j = cell(y, F->y, F->ny, &F->lastIndexY);
        const double z0 = fct2DAt(F, 0, j);
        const double z1 = fct2DAt(F, 0, j + 1);
        return alongY(F, j, z0, z1, y);
    }
    if (F->ny == 1 && F->nx > 1) {
        if (y != F->y[0]) myexit("ERROR in evalFct2D: y outside", F->ny);
        const int i = cell(x, F->x, F->nx, &F->lastIndexX);
        return alongX(F, i, 0, x);
    }

    const int i = cell(x, F->x, F->nx, &F->lastIndexX);
    const int j = cell(y, F->y, F->ny, &F->lastIndexY);
    const double z0 = alongX(F, i, j, x);
    const double z1 = alongX(F, i, j + 1, x);
    return alongY(F, j, z0, z1, y);
}

Fct *sliceFct2D(const Fct2D *F, double x0, double y0, double x1, double y1) {
    const char *incomplete = "ERROR in sliceFct2D: implementation incomplete";
    if (F->nx < 1 || F->ny < 1) myexit(incomplete, 0);
    const int i = search_le(x0, F->x, F->nx, 0);
    if (!(x0 == x1 && y0 == F->y[0] && y1 == F->y[F->ny - 1] && x0 == F->x[i]))
        myexit(incomplete, i);

    Fct *slice = newFctFixedLen(F->ny);
    for (int j = 0; j < F->ny; ++j) appendFct(slice, F->y[j], fct2DAt(F, i, j));
    return slice;
}

// For every column that has a peak along y: its grid x with the strength of the strongest, and with
// where that lies.
static void columnPeaks(const Fct2D *F, double threshold, double width, Fct *strength, Fct *where) {
    for (int i = 0; i < F->nx; ++i) {
        Fct *slice = sliceFct2D(F, F->x[i], F->y[0], F->x[i], F->y[F->ny - 1]);
        Fct *peaks = peaksFct(slice, threshold, width);
        if (peaks->n > 0) {
            double y = 0, strongest;
            int ignored;
            maximumFct(peaks, &y, &strongest, &ignored);
            appendFct(where, F->x[i], y);
            appendFct(strength, F->x[i], strongest);
        }
        freeFct(peaks);
        freeFct(slice);
    }
}

// Chooses the peak along x; where it lies along y is evaluated last, at whatever *x has become.
static int peakAlongX(const Fct2D *F, Fct *strength, Fct *where, double *x, double *y,
                      double *value, double threshold, double width) {
    int found = 1;
    int k = 0;
    if (F->nx > 10 && 2 * (F->x[F->nx - 1] - F->x[0]) >= width) {
        Fct *peaks = peaksFct(strength, threshold, width);
        if (peaks->n > 0)
            maximumFct(peaks, x, value, &k);
        else
            found = 0;
        freeFct(peaks);
        if (!found) return 0;
    } else {
        maximumFct(strength, x, value, &k);
        if (F->nx > 2) {
            double curvature;
            found = k > 0 && k < strength->n - 1 &&
                    parabola(strength->t + k - 1, strength->y + k - 1, &curvature, x, value);
            if (!found) *x = 0.0;
        }
    }
    *y = evalFct(where, *x);
    return found;
}

int peakFct2D(const Fct2D *F, double *x, double *y, double *strength, double threshold,
              double widthX, double widthY) {
    if (F->nx <= 0 || F->ny <= 0)
        myexit("ERROR in peakFct2D: zero size function", F->nx <= 0 ? F->nx : F->ny);
    if (F->nx >= F->ny) myexit("ERROR in peakFct2D: incompete implemented case 2", F->nx);

    Fct *strengths = newFct(F->nx);
    Fct *where = newFct(F->nx);
    columnPeaks(F, threshold, widthY, strengths, where);
    int found = 0;
    if (strengths->n > 0)
        found = peakAlongX(F, strengths, where, x, y, strength, threshold, widthX);
    freeFct(strengths);
    freeFct(where);
    return found;
}

} // namespace plw
