#include <gtest/gtest.h>

#include "fct/fct.h"
#include "samples.h"
#include "util/arrays/search.h"

using namespace plw;

namespace {

double plus(double u, double v) {
    return u + v;
}
double minus(double u, double v) {
    return u - v;
}
double times(double u, double v) {
    return u * v;
}

// The merged walk, the convolution and the smoothing step by step, every function new.
FctPtr slowCombine(Fct *f, Fct *g, double (*op)(double, double)) {
    FctPtr result = own(newFct(f->n + g->n));
    if (f->n < 1 || g->n < 1) return result;
    int i = 0, j = 0;
    if (f->t[0] < g->t[0])
        i = search_le(g->t[0], f->t, f->n, 0);
    else
        j = search_le(f->t[0], g->t, g->n, 0);
    while (i < f->n && j < g->n) {
        const double a = f->t[i], b = g->t[j];
        double x = b;
        if (a == b) {
            x = a;
            i++, j++;
        } else if (a < b) {
            x = a;
            i++;
        } else {
            j++;
        }
        const double u = evalFct(f, x);
        const double v = evalFct(g, x);
        appendFct(result.get(), x, op(u, v));
    }
    return result;
}

double slowConvolute(Fct *f, const Fct *k, double x) {
    const FctPtr r = own(newFct(k->n));
    for (int j = k->n - 1; j >= 0; j--) appendFct(r.get(), x - k->t[j], k->y[j]);
    const FctPtr p = slowCombine(f, r.get(), times);
    return p->n < 1 ? 0.0 : integralFct(p->t[0], p->t[p->n - 1], p.get());
}

Values slowSmooth(Fct *f, const Fct *k) {
    Values smooth;
    for (int i = 0; i < f->n; i++) smooth.push_back(slowConvolute(f, k, f->t[i]));
    return smooth;
}

} // namespace

TEST(CombineFct, WalksFromTheLaterStartToTheEarlierEnd) {
    const FctPtr f = function({0, 1, 2}, {1, 1, 1});
    const FctPtr g = function({0.5, 1.5, 2.5}, {2, 4, 6});
    const FctPtr far = function({7, 8}, {1, 1});
    const FctPtr empty = own(newFct(1));
    const struct {
        Fct *(*combine)(Fct *, Fct *);
        Fct *f, *g;
        Values t, y;
    } cases[] = {
        {addFct, f.get(), g.get(), {0, 0.5, 1, 1.5, 2}, {1, 3, 4, 5, 6}},
        {subFct, g.get(), f.get(), {0, 0.5, 1, 1.5, 2}, {-1, 1, 2, 3, 4}},
        {mulFct, f.get(), g.get(), {0, 0.5, 1, 1.5, 2}, {0, 2, 3, 4, 5}},
        {subFct, f.get(), f.get(), {0, 1, 2}, {0, 0, 0}},
        {addFct, f.get(), far.get(), {2}, {1}},
        {mulFct, far.get(), f.get(), {2}, {0}},
        {addFct, f.get(), empty.get(), {}, {}},
        {addFct, empty.get(), f.get(), {}, {}},
    };
    for (const auto &c : cases) {
        const FctPtr result = own(c.combine(c.f, c.g));
        EXPECT_EQ(positions(result.get()), c.t) << text(result.get());
        EXPECT_EQ(ordinates(result.get()), c.y) << text(result.get());
        EXPECT_EQ(result->fixedLen, 0);
    }
}

TEST(CombineFct, AgreesWithTheStepsAndLeavesTheSameHints) {
    const struct {
        Fct *(*combine)(Fct *, Fct *);
        double (*op)(double, double);
    } operators[] = {{addFct, plus}, {subFct, minus}, {mulFct, times}};
    RandomFunctions functions;
    for (int round = 0; round < 3000; round++) {
        const FctPtr f = functions.next(10);
        const FctPtr g = functions.next(10);
        f->lastIndex = functions.upTo(12) - 1;
        for (const auto &[combine, op] : operators) {
            const int hints[] = {f->lastIndex, g->lastIndex};
            const FctPtr want = slowCombine(f.get(), g.get(), op);
            const int wantHints[] = {f->lastIndex, g->lastIndex};
            f->lastIndex = hints[0];
            g->lastIndex = hints[1];
            const FctPtr got = own(combine(f.get(), g.get()));
            EXPECT_TRUE(same(positions(got.get()), positions(want.get())) &&
                        same(ordinates(got.get()), ordinates(want.get())))
                << text(f.get()) << "with " << text(g.get());
            EXPECT_EQ(f->lastIndex, wantHints[0]);
            EXPECT_EQ(g->lastIndex, wantHints[1]);
        }
    }
}

TEST(CombineFctDeathTest, RefusesAnIncompleteFunction) {
    const FctPtr partial = incompleteFunction();
    const FctPtr f = function({0, 1}, {1, 1});
    EXPECT_EXIT(addFct(f.get(), partial.get()), testing::ExitedWithCode(1),
                "^ERROR in evalFct: function incomplete \\(2\\)\n$");
    EXPECT_EXIT(smoothFct(partial.get(), f.get()), testing::ExitedWithCode(1),
                "^ERROR in evalFct: function incomplete \\(2\\)\n$");
}

TEST(ConvoluteFct, IsTheIntegralUnderTheMirroredKernel) {
    const Values twos(11, 2.0);
    const FctPtr f = own(newFctWith(twos.data(), 11, 0, 1));
    const FctPtr box = function({-1, 1}, {0.5, 0.5});
    const FctPtr late = function({1, 3}, {1, 1});
    const FctPtr single = function({0}, {1});
    const FctPtr empty = own(newFct(1));
    const struct {
        Fct *f, *kernel;
        double x, want;
    } cases[] = {
        {f.get(), box.get(), 5, 2},        {f.get(), late.get(), 2, 3},
        {f.get(), late.get(), 0, 0},       {f.get(), single.get(), 5, 0},
        {f.get(), single.get(), 5.5, 0.5}, {f.get(), empty.get(), 5, 0},
        {empty.get(), box.get(), 5, 0},    {f.get(), box.get(), 50, 0},
    };
    for (const auto &c : cases)
        EXPECT_EQ(convoluteFct(c.f, c.kernel, c.x), c.want)
            << c.x << ", " << text(c.f) << "kernel " << text(c.kernel);
}

TEST(SmoothFct, KeepsTheLevelAwayFromTheEnds) {
    const Values ones(40, 3.0);
    const FctPtr f = own(newFctWith(ones.data(), 40, 0, 1));
    const FctPtr triangle = function({-2, 0, 2}, {0, 0.5, 0});
    smoothFct(f.get(), triangle.get());
    for (int i = 2; i < 38; i++) EXPECT_EQ(f->y[i], 3) << i;
    EXPECT_LT(f->y[0], 3);
    EXPECT_LT(f->y[39], 3);
    EXPECT_EQ(f->n, 40);
    EXPECT_EQ(f->t[39], 39);
}

TEST(SmoothFct, AgreesWithOneConvolutionForEachSample) {
    RandomFunctions functions;
    for (int round = 0; round < 1500; round++) {
        functions.gaps = round % 2 ? 0.05 : 0;
        const FctPtr f = functions.next(30);
        const FctPtr kernel = functions.next(6);
        for (int j = 0; j < kernel->n; j++) kernel->t[j] = kernel->t[j] * 0.5 - 2;
        if (round % 10 == 0) std::reverse(f->t, f->t + f->n); // what is not ascending, too
        f->lastIndex = functions.upTo(32) - 1;
        const int hint = f->lastIndex;
        const std::string input = text(f.get()) + "kernel " + text(kernel.get());

        const Values want = slowSmooth(f.get(), kernel.get());
        const int wantHint = f->lastIndex;
        f->lastIndex = hint;
        smoothFct(f.get(), kernel.get());
        EXPECT_TRUE(same(ordinates(f.get()), want)) << input;
        EXPECT_EQ(f->lastIndex, wantHint) << input;
        EXPECT_EQ(kernel->lastIndex, 0);
    }
}

TEST(SmoothFct, SmoothsAFunctionByItself) {
    const FctPtr f = function({-1, 0, 1}, {0, 1, 0});
    const Values want = slowSmooth(f.get(), own(copyFct(f.get())).get());
    smoothFct(f.get(), f.get());
    EXPECT_EQ(ordinates(f.get()), want);
}
