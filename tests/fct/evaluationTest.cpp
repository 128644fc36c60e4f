#include "fct/fct.h"

#include "tests/fct/samples.h"
#include "util/arrays/search.h"

using namespace plw;

namespace {

// The rules of evaluation and integration step by step, without any short cut.
double segment(double t0, double y0, double t1, double y1, double x) {
    if (std::isnan(y0) && !std::isnan(y1)) y0 = y1;
    if (std::isnan(y1) && !std::isnan(y0)) y1 = y0;
    if (t0 == t1) return (y0 + y1) * 0.5;
    const double s = (y1 - y0) / (t1 - t0);
    return std::fma(s, x, std::fma(-t0, s, y0));
}

double slowEval(const Fct *f, double x, int *lastIndex) {
    if (x < f->t[0] || x > f->t[f->n - 1]) return 0.0;
    if (f->n == 1) return f->y[0];
    const int i = std::min(search_le(x, f->t, f->n, *lastIndex), f->n - 2);
    *lastIndex = i;
    return segment(f->t[i], f->y[i], f->t[i + 1], f->y[i + 1], x);
}

double slowIntegral(double a, double b, const Values &t, const Values &y, int *lastIndex) {
    const int n = static_cast<int>(t.size());
    if (n <= 1 || t[0] > b || t[n - 1] < a) return 0.0;
    const int start = *lastIndex >= 0 && *lastIndex < n && t[*lastIndex] < a ? *lastIndex : 0;
    double P = 0, V = 0, S = 0;
    bool started = false, ended = false;
    for (int i = start; i < n && !ended; ++i) {
        double p = t[i], v = y[i];
        if (!started && a <= t[i]) {
            *lastIndex = std::max(i - 1, 0);
            P = a;
            V = i > 0 ? segment(t[i - 1], y[i - 1], t[i], y[i], a) : -y[0];
            started = true;
        }
        if (b <= t[i]) {
            if (i == 0) return 0.0;
            p = b;
            v = segment(t[i - 1], y[i - 1], t[i], y[i], b);
            ended = true;
        }
        if (started) S = S + (V + v) * (p - P);
        P = p;
        V = v;
    }
    return S * 0.5;
}

double slowPower(double v, double p) {
    return p == 0 ? 1.0 : p == 1 ? v : p == 2 ? v * v : std::pow(v, p);
}

} // namespace

TEST(EvalFct, IsThePolygonWithinAndZeroOutsideWhateverTheHint) {
    RandomFunctions functions;
    for (int round = 0; round < 3000; ++round) {
        const FctPtr f = functions.next(12);
        if (f->n < 1) continue;
        if (round % 20 == 0) std::shuffle(f->t, f->t + f->n, functions.random); // not ascending
        f->lastIndex = functions.upTo(20) - 3;
        for (int k = 0; k < 8; ++k) {
            const double x = functions.rarely(0.1) ? NaN : functions.position();
            int lastIndex = f->lastIndex;
            const double want = slowEval(f, x, &lastIndex);
            EXPECT_TRUE(same(evalFct(f, x), want)) << x << " in " << text(f);
            EXPECT_EQ(f->lastIndex, lastIndex) << x << " in " << text(f);
        }
    }
}

TEST(Integrals, BeginAtTheFirstSampleHoweverFarAwayTheEndsAre) {
    const double x[] = {0, 1, 2}, y[] = {1, 2, 3}, inf = infinity;
    const FctPtr f = function({0, 1, 2}, {1, 2, 3});
    const Values pairs = {0, 1, 1, 2, 2, 3};
    const std::tuple<double, double, double> cases[] = {
        {-inf, 1, 1.5}, {-inf, inf, 4}, {-1e308, 1, 1.5}, {NaN, 1, 0}, {1, NaN, 2.5}};
    for (const auto &[a, b, want] : cases) {
        EXPECT_EQ(integralFct(a, b, f), want) << a << " to " << b;
        EXPECT_EQ(integralXY(a, b, pairs.data(), 3), want) << a << " to " << b;
        EXPECT_EQ(integralYarr(a, b, x, y, 3, 0, 1), want) << a << " to " << b;
    }
    EXPECT_EQ(integralXY(0, 4, nullptr, 0), 0);
}

TEST(Integrals, AgreeWithTheStepsWhateverTheyRemember) {
    RandomFunctions functions;
    int startXY = 0, startY = 0;
    for (int round = 0; round < 6000; ++round) {
        functions.gaps = round % 2 ? 0.1 : 0;
        const FctPtr f = functions.next(12);
        const Values t = positions(f), y = ordinates(f);
        f->lastIndex = functions.upTo(16) - 2;
        for (int k = 0; k < 4; ++k) {
            const double a = functions.position();
            const double b =
                functions.rarely(0.8) ? a + functions.real(0, 4) : functions.position();
            const double p = functions.upTo(8) * 0.5 - 1, q = functions.upTo(8) * 0.5 - 1;
            Values pairs, powers;
            for (std::size_t i = 0; i < t.size(); ++i) {
                pairs.insert(pairs.end(), {t[i], y[i]});
                powers.push_back(slowPower(t[i], p) * slowPower(y[i], q));
            }
            const std::string input =
                testing::PrintToString(Values{a, b, p, q}) + ": ends and exponents for " + text(f);

            int lastIndex = f->lastIndex;
            const double want = b <= a ? 0.0 : slowIntegral(a, b, t, y, &lastIndex);
            EXPECT_TRUE(same(integralFct(a, b, f), want)) << input;
            EXPECT_EQ(f->lastIndex, lastIndex) << input;

            const double wantXY = slowIntegral(a, b, t, y, &startXY);
            EXPECT_TRUE(same(integralXY(a, b, pairs.data(), f->n), wantXY)) << input;

            const double wantY = slowIntegral(a, b, t, powers, &startY);
            EXPECT_TRUE(same(integralYarr(a, b, f->t, f->y, f->n, p, q), wantY)) << input;
        }
    }
}
