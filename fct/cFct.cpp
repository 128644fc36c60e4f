#include "fct/cFct.h"

#include "fct/fmaClones.h"
#include "fct/storage.h"
#include "util/arrays/sort.h"
#include "util/files/fatal.h"

#include <algorithm>
#include <cmath>

namespace plw {

using Complex = std::complex<double>;

CFct *newCFct(int capacity) {
    CFct *f = allocate<CFct>(1);
    *f = {};
    f->size = std::max(capacity, 1);
    f->y = allocate<Complex>(f->size);
    f->t = allocate<double>(f->size);
    return f;
}

void freeCFct(CFct *f) {
    if (f->size != 0 && !f->linked) {
        std::free(f->y);
        std::free(f->t);
    }
    std::free(f);
}

void appendCFct(CFct *f, double t, double real, double imaginary) {
    if (f->n >= f->size) {
        if (f->fixedLen) myexit("ERROR in appendCFct: function with fixed length full", f->n);
        f->size = grownSize(f->size);
        f->y = reallocate(f->y, f->size);
        f->t = reallocate(f->t, f->size);
    }
    f->y[f->n] = {real, imaginary};
    f->t[f->n] = t;
    ++f->n;
}

void sortByTCFct(CFct *f) {
    quicksortCluster(f->t, 1, 0, f->y, sizeof(Complex), 0, f->n - 1);
}

void sortByRealCFct(CFct *f) {
    // a complex number is laid out as an array of two doubles, the real part first
    quicksortCluster(reinterpret_cast<double *>(f->y), 2, 0, f->t, sizeof(double), 0, f->n - 1);
}

static std::size_t element(const CFct2D *F, int i, int j) {
    return static_cast<std::size_t>(i) +
           static_cast<std::size_t>(j) * static_cast<std::size_t>(F->sizeX);
}

static void requireElement(const CFct2D *F, int i, int j, const char *message) {
    if (i < 0 || i >= F->nx) myexit(message, i);
    if (j < 0 || j >= F->ny) myexit(message, j);
}

CFct2D *newCFct2D(int sizeX, int sizeY) {
    CFct2D *F = allocate<CFct2D>(1);
    *F = {};
    F->sizeX = std::max(sizeX, 1);
    F->sizeY = std::max(sizeY, 1);
    F->x = allocate<double>(F->sizeX);
    F->y = allocate<double>(F->sizeY);
    F->z = allocateGrid<Complex>(F->sizeX, F->sizeY);
    return F;
}

PLW_FMA_CLONES
CFct2D *newCFct2DWith(const Complex *values, int nx, int ny, double x0, double dx, double y0,
                      double dy) {
    CFct2D *F = newCFct2D(nx, ny);
    F->nx = nx;
    F->ny = ny;
    for (int i = 0; i < nx; ++i) F->x[i] = std::fma(i, dx, x0);
    for (int j = 0; j < ny; ++j) F->y[j] = std::fma(j, dy, y0);
    if (values == nullptr) return F;
    for (int j = 0; j < ny; ++j)
        for (int i = 0; i < nx; ++i) F->z[element(F, i, j)] = *values++;
    return F;
}

void setCFct2DByIndex(CFct2D *F, int i, int j, double real, double imaginary) {
    requireElement(F, i, j, "ERROR in setCFct2DByIndex: index out of range");
    F->z[element(F, i, j)] = {real, imaginary};
}

Complex cFct2DAt(const CFct2D *F, int i, int j) {
    requireElement(F, i, j, "ERROR in cFct2DAt: index out of range");
    return F->z[element(F, i, j)];
}

void zeroCFct2D(CFct2D *F) {
    for (int j = 0; j < F->ny; ++j) std::fill_n(F->z + element(F, 0, j), F->nx, Complex());
}

void clearCFct2D(CFct2D *F) {
    F->nx = 0;
    F->ny = 0;
}

void freeCFct2D(CFct2D *F) {
    std::free(F->x);
    std::free(F->y);
    std::free(F->z);
    std::free(F);
}

} // namespace plw
