#include <gtest/gtest.h>

#include "fct/fct.h"
#include "samples.h"
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
    for (int i = start; i < n && !ended; i++) {
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

std::string range(double a, double b, const Fct *f) {
    return text({a, b}) + "of " + text(f);
}

} // namespace

TEST(EvalFct, IsThePolygonWithinAndZeroOutside) {
    const FctPtr f = function({0, 2}, {1, 5});
    const FctPtr gap = function({0, 1}, {1, NaN});
    const FctPtr step = function({1, 2, 2, 3}, {1, 1, 3, 3});
    const FctPtr twin = function({2, 2}, {1, 3});
    const FctPtr leftGap = function({2, 2}, {NaN, 3});
    const FctPtr rightGap = function({2, 2}, {1, NaN});
    const FctPtr single = function({2}, {7});
    const FctPtr nothing = function({0, 1}, {NaN, NaN});
    const FctPtr unplaced = function({0, NaN, 2, 3}, {1, 1, 1, 1});
    const struct {
        Fct *f;
        double x, want;
    } cases[] = {
        {f.get(), -1, 0},       {f.get(), 0, 1},           {f.get(), 1, 3},
        {f.get(), 2, 5},        {f.get(), 3, 0},           {f.get(), NaN, NaN},
        {gap.get(), 0.5, 1},    {twin.get(), 2, 2},        {step.get(), 2.5, 3},
        {step.get(), 1.5, 1},   {single.get(), 2, 7},      {single.get(), 2.1, 0},
        {single.get(), NaN, 7}, {nothing.get(), 0.5, NaN}, {f.get(), -0.0, 1},
        {twin.get(), NaN, 2},   {unplaced.get(), 1, NaN},  {unplaced.get(), 2, 1},
    };
    for (const auto &c : cases)
        EXPECT_TRUE(same(evalFct(c.f, c.x), c.want)) << c.x << " in " << text(c.f);
}

TEST(EvalFct, GoesByTheHintWhereSamplesSharePositions) {
    const FctPtr f = function({1, 2, 2, 3}, {1, 1, 3, 3});
    for (const auto &[lastIndex, want] : {std::pair{0, 2.0}, {1, 3.0}, {2, 3.0}}) {
        f->lastIndex = lastIndex;
        EXPECT_EQ(evalFct(f.get(), 2), want) << lastIndex;
    }
}

TEST(EvalFct, AgreesWithTheStepsForAnyHint) {
    RandomFunctions functions;
    for (int round = 0; round < 3000; round++) {
        const FctPtr f = functions.next(12);
        if (f->n < 1) continue;
        if (round % 20 == 0) std::shuffle(f->t, f->t + f->n, functions.random); // not ascending
        f->lastIndex = functions.upTo(20) - 3;
        double x = functions.position();
        for (int k = 0; k < 8; k++) {
            x = functions.rarely(0.3)   ? functions.position()
                : functions.rarely(0.1) ? NaN
                                        : x + functions.real(0, 1);
            int lastIndex = f->lastIndex;
            const double want = slowEval(f.get(), x, &lastIndex);
            EXPECT_TRUE(same(evalFct(f.get(), x), want)) << x << " in " << text(f.get());
            EXPECT_EQ(f->lastIndex, lastIndex) << x << " in " << text(f.get());
        }
    }
}

TEST(EvalFct, RoundsAsLaidDown) {
    // unfused products would round some of these differently
    const FctPtr f = function({0.1, 0.4}, {0.3, 1.1});
    const double s = (1.1 - 0.3) / (0.4 - 0.1);
    int unfused = 0;
    for (int i = 0; i < 30; i++) {
        const double x = 0.1 + 0.01 * i;
        EXPECT_EQ(evalFct(f.get(), x), std::fma(s, x, std::fma(-0.1, s, 0.3))) << x;
        unfused += evalFct(f.get(), x) == s * x + (0.3 - 0.1 * s);
    }
    EXPECT_LT(unfused, 30) << "no case that tells";
}

TEST(EvaluationDeathTest, RefusesAnIncompleteFunction) {
    const FctPtr partial = incompleteFunction();
    const FctPtr empty = own(newFct(1));
    const auto failed = testing::ExitedWithCode(1);
    EXPECT_EXIT(evalFct(partial.get(), 0), failed,
                "^ERROR in evalFct: function incomplete \\(2\\)\n$");
    EXPECT_EXIT(evalFct(empty.get(), 0), failed,
                "^ERROR in evalFct: function incomplete \\(0\\)\n$");
    EXPECT_EXIT(integralFct(0, 0, partial.get()), failed,
                "^ERROR in integral: function incomplete \\(2\\)\n$");
    EXPECT_EQ(integralFct(0, 1, empty.get()), 0.0);
}

TEST(Integrals, GiveTheWorkedValues) {
    const FctPtr f = function({0, 1}, {1, 1});
    EXPECT_EQ(integralFct(0.25, 0.75, f.get()), 0.5);
    EXPECT_EQ(integralFct(-5, 5, f.get()), 1);
    EXPECT_EQ(integralFct(3, 1, f.get()), 0);
    EXPECT_EQ(integralFct(-1, 0, f.get()), 0);
    EXPECT_EQ(integralFct(NaN, 1, f.get()), 0);
    EXPECT_EQ(integralFct(0, NaN, f.get()), 1);
    EXPECT_TRUE(std::isnan(integralFct(0, 2, function({0, 1, 2}, {1, NaN, 1}).get())));
    EXPECT_EQ(integralFct(0.5, 1, function({0, 1, 2}, {1, NaN, 1}).get()), 0.5);

    const double pairs[] = {0, 1, 1, 1, 4, 1};
    EXPECT_EQ(integralXY(0, 4, pairs, 3), 4);
    EXPECT_EQ(integralXY(3, 2, pairs, 3), -1);
    EXPECT_EQ(integralXY(3, 0.5, pairs, 3), 0);
    EXPECT_EQ(integralXY(0, 4, pairs, 1), 0);
    EXPECT_EQ(integralXY(0, 4, nullptr, 0), 0);

    const double x[] = {0, 1, 2}, y[] = {1, 2, 3};
    EXPECT_EQ(integralYarr(0, 2, x, y, 3, 0, 0), 2);
    EXPECT_EQ(integralYarr(0, 2, x, y, 3, 0, 1), 4);
    EXPECT_EQ(integralYarr(0, 2, x, y, 3, 1, 1), 5);
    EXPECT_EQ(integralYarr(0, 2, x, y, 3, 0, 2), 9);
}

TEST(Integrals, AgreeWithTheStepsWhateverTheyRemember) {
    RandomFunctions functions;
    int startXY = 0, startY = 0;
    for (int round = 0; round < 6000; round++) {
        functions.gaps = round % 2 ? 0.1 : 0;
        const FctPtr f = functions.next(12);
        const Values t = positions(f.get()), y = ordinates(f.get());
        f->lastIndex = functions.upTo(16) - 2;
        for (int k = 0; k < 4; k++) {
            const double a = functions.position();
            const double b =
                functions.rarely(0.8) ? a + functions.real(0, 4) : functions.position();

            int lastIndex = f->lastIndex;
            const double want = b <= a ? 0.0 : slowIntegral(a, b, t, y, &lastIndex);
            EXPECT_TRUE(same(integralFct(a, b, f.get()), want)) << range(a, b, f.get());
            EXPECT_EQ(f->lastIndex, lastIndex) << range(a, b, f.get());

            Values pairs;
            for (size_t i = 0; i < t.size(); i++) pairs.insert(pairs.end(), {t[i], y[i]});
            const double wantXY = slowIntegral(a, b, t, y, &startXY);
            EXPECT_TRUE(same(integralXY(a, b, pairs.data(), f->n), wantXY)) << range(a, b, f.get());

            const double exponents[] = {0, 1, 2, 3, 0.5, -1};
            const double p = exponents[functions.upTo(5)], q = exponents[functions.upTo(5)];
            Values g;
            for (size_t i = 0; i < t.size(); i++)
                g.push_back(slowPower(t[i], p) * slowPower(y[i], q));
            const double wantY = slowIntegral(a, b, t, g, &startY);
            EXPECT_TRUE(same(integralYarr(a, b, f->t, f->y, f->n, p, q), wantY))
                << "p = " << p << ", q = " << q << ", " << range(a, b, f.get());
        }
    }
}
