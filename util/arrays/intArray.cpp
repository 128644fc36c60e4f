#include "util/arrays/intArray.h"

#include "util/files/fatal.h"
#include "util/files/output.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace plw {

static void resize(IntArray *a, int size) {
    a->size = size;
    a->values = static_cast<int *>(std::realloc(a->values, size * sizeof(int)));
}

IntArray *newIntArray(int capacity) {
    auto *a = static_cast<IntArray *>(std::malloc(sizeof(IntArray)));
    *a = {nullptr, 0, 0};
    resize(a, std::max(capacity, 1));
    return a;
}

void appendIntArray(IntArray *a, int v) {
    if (a->n + 1 > a->size) resize(a, static_cast<int>((a->size + 16) * 1.5));
    a->values[a->n++] = v;
}

void appendManyIntArray(IntArray *a, const int *v, int k) {
    if (k <= 0) return;
    if (a->n + k > a->size) resize(a, static_cast<int>((a->size + k) * 1.5));
    std::memcpy(a->values + a->n, v, k * sizeof(int));
    a->n += k;
}

void printIntArray(const IntArray *a, const char *path) {
    FILE *out = openOutput(path);
    for (int i = 0; i < a->n; ++i) std::fprintf(out, "%d\n", a->values[i]);
    closeOutput(out);
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
