#include "util/arrays/missing.h"

#include "util/arrays/storage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace plw {

int *removeNAN(const double *x, const double *y, int n, double **xOut, double **yOut, int *nOut,
               int **indexOut) {
    const std::size_t room = std::max(n, 1);
    *xOut = allocate<double>(room);
    *yOut = allocate<double>(room);
    *indexOut = allocate<int>(room);

    int kept = 0;
    for (int i = 0; i < n; ++i) {
        if (std::isnan(x[i]) || std::isnan(y[i])) continue;
        (*xOut)[kept] = x[i];
        (*yOut)[kept] = y[i];
        (*indexOut)[kept] = i;
        ++kept;
    }
    *nOut = kept;
    return *indexOut;
}

} // namespace plw
