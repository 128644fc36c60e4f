// samples.h - functions to test with, and how they are compared.
#ifndef PLW_TESTS_FCT_SAMPLES_H
#define PLW_TESTS_FCT_SAMPLES_H

#include "fct/fct.h"
#include "tests/support/expect.h"

#include <algorithm>
#include <memory>
#include <random>

// Owns a record and passes for the plain pointer.
template<auto release> struct Release {
    void operator()(auto *record) const { release(record); }
};
template<class T, auto release> struct Owner : std::unique_ptr<T, Release<release>> {
    Owner(T *record) : std::unique_ptr<T, Release<release>>(record) {}
    operator T *() const { return this->get(); }
};
using FctPtr = Owner<plw::Fct, plw::freeFct>;

inline FctPtr function(const Values &t, const Values &y) {
    FctPtr f = plw::newFct(static_cast<int>(t.size()));
    for (std::size_t i = 0; i < t.size(); ++i) plw::appendFct(f, t[i], y[i]);
    return f;
}

inline Values positions(const plw::Fct *f) {
    return {f->t, f->t + f->n};
}

inline Values ordinates(const plw::Fct *f) {
    return {f->y, f->y + f->n};
}

inline testing::AssertionResult same(const plw::Fct *got, const plw::Fct *want) {
    const auto positionsAgree = same(positions(got), positions(want));
    return positionsAgree ? same(ordinates(got), ordinates(want)) : positionsAgree;
}

// For messages.
inline std::string text(const plw::Fct *f) {
    std::ostringstream s;
    s.precision(17);
    for (int i = 0; i < f->n; ++i) s << '(' << f->t[i] << ", " << f->y[i] << ") ";
    return s.str();
}

// Random functions: ascending, most positions on a grid so that ties and hits are common, NaN gaps
// in t and in y, infinite ordinates now and then.
struct RandomFunctions {
    std::mt19937 random{20};
    double gaps = 0.1; // how often an ordinate or a position is NaN

    int upTo(int n) { return std::uniform_int_distribution<int>(0, n)(random); }
    double real(double a, double b) { return std::uniform_real_distribution<double>(a, b)(random); }
    bool rarely(double probability) { return real(0, 1) < probability; }
    double position() { return rarely(0.5) ? upTo(24) * 0.5 - 1 : real(-1, 11); }

    FctPtr next(int maxLength) {
        Values t(upTo(maxLength));
        for (double &v : t) v = position();
        std::sort(t.begin(), t.end());
        Values y(t.size());
        for (double &v : y) {
            v = rarely(0.3) ? upTo(4) - 2 : real(-2, 2);
            if (rarely(gaps)) v = NaN;
            if (rarely(gaps / 10)) v = infinity;
        }
        for (double &v : t)
            if (rarely(gaps / 3)) v = NaN;
        return function(t, y);
    }
};

#endif
