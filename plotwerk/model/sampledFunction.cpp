#include "plotwerk/model/sampledFunction.h"

#include "fct/fct.h"
#include "fct/statistics.h"
#include "plotwerk/base/memoryReserve.h"
#include "plotwerk/base/refusal.h"
#include "util/arrays/search.h"
#include "util/arrays/sort.h"

#include <limits>
#include <memory>

namespace plotwerk {

// The number of samples as the library counts them.
static int countOf(std::span<const double> x, std::span<const double> y, std::size_t atLeast) {
    if (x.size() != y.size()) throw Refusal("a curve's columns differ in length");
    if (x.size() < atLeast) throw Refusal("a curve without points has no values");
    if (x.size() > std::numeric_limits<int>::max()) throw Refusal("a curve has too many points");
    return static_cast<int>(x.size());
}

// A function that shares the arrays, which nothing here writes to.
static plw::Fct linked(std::span<const double> x, std::span<const double> y, std::size_t atLeast,
                       int hint = 0) {
    plw::Fct f{};
    f.n = countOf(x, y, atLeast);
    f.y = const_cast<double *>(y.data());
    f.t = const_cast<double *>(x.data());
    f.lastIndex = hint;
    f.linked = 1;
    return f;
}

double interpolated(std::span<const double> x, std::span<const double> y, double at, int &hint) {
    plw::Fct f = linked(x, y, 1, hint);
    const double value = plw::evalFct(&f, at);
    hint = f.lastIndex;
    return value;
}

int searched(std::span<const double> x, std::span<const double> y, double at, int &hint) {
    plw::Fct f = linked(x, y, 1, hint);
    const int index = plw::indexFct(&f, at);
    hint = f.lastIndex;
    return index;
}

double integral(std::span<double> x, std::span<double> y) {
    plw::Fct f = linked(x, y, 0);
    if (f.n < 2) return 0;
    if (!plw::isArrIncreasing(x.data(), f.n)) sortTogether(x, y);
    return plw::integralFct(x.front(), x.back(), &f);
}

void sortTogether(std::span<double> key, std::span<double> other) {
    const int n = countOf(key, other, 0);
    requireFree(6 * key.size_bytes());
    double *others[] = {other.data(), nullptr}; // sortN spends both
    plw::sortN(n, key.data(), others, 1);
}

std::vector<double> peakPositions(std::span<const double> y, double minStrength, double width) {
    // In arrays of y's size: the samples take 2. The differences, twice as many, take 4, and half
    // as much again while they grow. Where to look next takes 3. The peaks take at most 2, and grow
    // likewise.
    requireFree(16 * y.size_bytes());
    using Function = std::unique_ptr<plw::Fct, decltype(&plw::freeFct)>;
    const Function f(plw::newFctWith(y.data(), countOf(y, y, 0), 0, 1), plw::freeFct);
    const Function peaks(plw::peaksFct(f.get(), minStrength, width), plw::freeFct);
    return {peaks->t, peaks->t + peaks->n};
}

int averageBlocks(std::span<double> x, std::span<double> y, int block) {
    int means = 0;
    plw::average(x.data(), y.data(), countOf(x, y, 0), block, &means);
    return means;
}

} // namespace plotwerk
