#include "fct/fct.h"

#include "tests/fct/samples.h"
#include "util/arrays/search.h"

#include <functional>

using namespace plw;

namespace {

using Operator = std::function<double(double, double)>;

// Step by step, every function new.
FctPtr slowCombine(Fct *f, Fct *g, const Operator &op) {
    FctPtr result = newFct(f->n + g->n);
    if (f->n < 1 || g->n < 1) return result;
    int i = 0, j = 0;
    if (f->t[0] < g->t[0])
        i = search_le(g->t[0], f->t, f->n, 0);
    else
        j = search_le(f->t[0], g->t, g->n, 0);
    while (i < f->n && j < g->n) {
        const double a = f->t[i], b = g->t[j];
        const double x = a <= b ? a : b;
        i += a <= b;
        j += !(a < b);
        const double u = evalFct(f, x);
        const double v = evalFct(g, x);
        appendFct(result, x, op(u, v));
    }
    return result;
}

double slowConvolute(Fct *f, const Fct *k, double x) {
    const FctPtr r = newFct(k->n);
    for (int j = k->n - 1; j >= 0; --j) appendFct(r, x - k->t[j], k->y[j]);
    const FctPtr p = slowCombine(f, r, std::multiplies<>());
    return p->n < 1 ? 0.0 : integralFct(p->t[0], p->t[p->n - 1], p);
}

Values slowSmooth(Fct *f, const Fct *k) {
    Values smooth;
    for (int i = 0; i < f->n; ++i) smooth.push_back(slowConvolute(f, k, f->t[i]));
    return smooth;
}

} // namespace

TEST(CombineFct, WalksFromTheLaterStartToTheEarlierEndAndLeavesTheHintsThere) {
    const struct {
        Fct *(*combine)(Fct *, Fct *);
        Operator op;
    } operators[] = {
        {addFct, std::plus<>()}, {subFct, std::minus<>()}, {mulFct, std::multiplies<>()}};
    RandomFunctions functions;
    for (int round = 0; round < 3000; ++round) {
        const FctPtr f = functions.next(10);
        const FctPtr g = functions.next(10);
        for (const auto &[combine, op] : operators) {
            const FctPtr f2 = copyFct(f), g2 = copyFct(g);
            f->lastIndex = f2->lastIndex = functions.upTo(12) - 1;
            g->lastIndex = g2->lastIndex = functions.upTo(12) - 1;
            const FctPtr want = slowCombine(f2, g2, op), got = combine(f, g);
            EXPECT_TRUE(same(got, want)) << text(f) << "with " << text(g);
            EXPECT_EQ(f->lastIndex, f2->lastIndex);
            EXPECT_EQ(g->lastIndex, g2->lastIndex);
        }
    }
}

TEST(SmoothFct, IsTheIntegralUnderTheMirroredKernelAtEachSample) {
    RandomFunctions functions;
    for (int round = 0; round < 1500; ++round) {
        functions.gaps = round % 2 ? 0.05 : 0;
        const FctPtr f = functions.next(30);
        const FctPtr kernel = functions.next(6);
        for (int j = 0; j < kernel->n; ++j) kernel->t[j] = kernel->t[j] * 0.5 - 2;
        if (round % 10 == 0) std::reverse(f->t, f->t + f->n); // what is not ascending, too
        const std::string input = text(f) + "kernel " + text(kernel);
        const FctPtr copy = copyFct(f);
        f->lastIndex = copy->lastIndex = functions.upTo(32) - 1;
        const double x = functions.position();
        EXPECT_TRUE(same(convoluteFct(f, kernel, x), slowConvolute(copy, kernel, x))) << input;

        const Values want = slowSmooth(copy, kernel);
        smoothFct(f, kernel);
        EXPECT_TRUE(same(ordinates(f), want)) << input;
        EXPECT_EQ(f->lastIndex, copy->lastIndex) << input;
        EXPECT_EQ(kernel->lastIndex, 0);
    }
}

TEST(SmoothFct, SmoothsAFunctionByItself) {
    const FctPtr f = function({-1, 0, 1}, {0, 1, 0});
    const Values want = slowSmooth(f, FctPtr(copyFct(f)));
    smoothFct(f, f);
    EXPECT_EQ(ordinates(f), want);
}
