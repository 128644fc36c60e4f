// samples.h - functions to test with, and how their values are compared.
#ifndef PLW_TESTS_FCT_SAMPLES_H
#define PLW_TESTS_FCT_SAMPLES_H

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "fct/fct.h"

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

using Values = std::vector<double>;

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
    for (size_t i = 0; i < t.size(); i++) plw::appendFct(f, t[i], y[i]);
    return f;
}

inline Values positions(const plw::Fct *f) {
    return {f->t, f->t + f->n};
}

inline Values ordinates(const plw::Fct *f) {
    return {f->y, f->y + f->n};
}

// The same number to the last bit, or both NaN.
inline bool same(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) ||
           (std::isnan(a) && std::isnan(b));
}

inline bool same(const Values &a, const Values &b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](double u, double v) { return same(u, v); });
}

inline bool same(const plw::Fct *f, const plw::Fct *g) {
    return same(positions(f), positions(g)) && same(ordinates(f), ordinates(g));
}

inline std::string text(const Values &values) {
    std::string s;
    for (double v : values) {
        char number[32];
        std::snprintf(number, sizeof number, "%.17g ", v);
        s += number;
    }
    return s;
}

inline std::string text(const plw::Fct *f) {
    return "t = " + text(positions(f)) + "y = " + text(ordinates(f));
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
