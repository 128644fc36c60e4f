#include "util/arrays/intArray.h"

#include "util/arrays/storage.h"
#include "util/files/fatal.h"
#include "util/files/output.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace plw {

static void resize(IntArray *a, int size) {
    a->size = size;
    a->values = reallocate(a->values, size);
}

static void makeRoom(IntArray *a, int k, int spare) {
    if (k > INT_MAX - a->n) myexit("ERROR: more elements than an int counts", a->n);
    if (a->n + k <= a->size) return;
    resize(a, static_cast<int>(std::min((a->size + double(spare)) * 1.5, double(INT_MAX))));
}

IntArray *newIntArray(int capacity) {
    auto *a = allocate<IntArray>(1);
    *a = {nullptr, 0, 0};
    resize(a, std::max(capacity, 1));
    return a;
}

void appendIntArray(IntArray *a, int v) {
    makeRoom(a, 1, 16);
    a->values[a->n++] = v;
}

void appendManyIntArray(IntArray *a, const int *v, int k) {
    if (k <= 0) return;
    makeRoom(a, k, k);
    std::memcpy(a->values + a->n, v, k * sizeof(int));
    a->n += k;
}

void printIntArray(const IntArray *a, const char *path) {
    std::FILE *out = openOutput(path);
    for (int i = 0; i < a->n; ++i) std::fprintf(out, "%d\n", a->values[i]);
    closeOutput(out, path);
}

void clearIntArray(IntArray *a) {
    a->n = 0;
}

void freeIntArray(IntArray *a) {
    if (a->size != 0) std::free(a->values);
    std::free(a);
}

int val(const IntArray *a, int i) {
    if (i < 0 || i >= a->n) myexit("ERROR in val: index out of range", i);
    return a->values[i];
}

} // namespace plw
