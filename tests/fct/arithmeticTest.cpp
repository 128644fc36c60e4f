#include "fct/fct.h"

#include "tests/fct/samples.h"
#include "util/arrays/search.h"

#include <functional>

using namespace plw;

namespace {

using Operator = std::function<double(double, double)>;

// The merged walk, the convolution and the smoothing step by step, every function new.
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

TEST(CombineFct, WalksFromTheLaterStartToTheEarlierEnd) {
    const FctPtr f = function({0, 1, 2}, {1, 1, 1}), g = function({0.5, 1.5, 2.5}, {2, 4, 6}),
                 far = function({7, 8}, {1, 1}), empty = newFct(1);
    const struct {
        Fct *(*combine)(Fct *, Fct *);
        Fct *f, *g;
        Values t, y;
    } cases[] = {{addFct, f, g, {0, 0.5, 1, 1.5, 2}, {1, 3, 4, 5, 6}},
                 {subFct, g, f, {0, 0.5, 1, 1.5, 2}, {-1, 1, 2, 3, 4}},
                 {mulFct, f, g, {0, 0.5, 1, 1.5, 2}, {0, 2, 3, 4, 5}},
                 {subFct, f, f, {0, 1, 2}, {0, 0, 0}},
                 {addFct, f, far, {2}, {1}},
                 {mulFct, far, f, {2}, {0}},
                 {addFct, f, empty, {}, {}},
                 {addFct, empty, f, {}, {}}};
    for (const auto &c : cases) {
        const FctPtr result = c.combine(c.f, c.g);
        EXPECT_TRUE(same(result, function(c.t, c.y))) << text(c.f) << "with " << text(c.g);
        EXPECT_EQ(result->fixedLen, 0);
    }
}

TEST(CombineFct, AgreesWithTheStepsAndLeavesTheSameHints) {
    const struct {
        Fct *(*combine)(Fct *, Fct *);
        Operator op;
    } operators[] = {
        {addFct, std::plus<>()}, {subFct, std::minus<>()}, {mulFct, std::multiplies<>()}};
    RandomFunctions functions;
    for (int round = 0; round < 3000; ++round) {
        const FctPtr f = functions.next(10);
        const FctPtr g = functions.next(10);
        f->lastIndex = functions.upTo(12) - 1;
        for (const auto &[combine, op] : operators) {
            const int hints[] = {f->lastIndex, g->lastIndex};
            const FctPtr want = slowCombine(f, g, op);
            const int wantHints[] = {f->lastIndex, g->lastIndex};
            f->lastIndex = hints[0];
            g->lastIndex = hints[1];
            const FctPtr got = combine(f, g);
            EXPECT_TRUE(same(got, want)) << text(f) << "with " << text(g);
            EXPECT_EQ(f->lastIndex, wantHints[0]);
            EXPECT_EQ(g->lastIndex, wantHints[1]);
        }
    }
}

TEST(ConvoluteFct, IsTheIntegralUnderTheMirroredKernel) {
    const Values twos(11, 2.0);
    const FctPtr f = newFctWith(twos.data(), 11, 0, 1);
    const FctPtr box = function({-1, 1}, {0.5, 0.5}), late = function({1, 3}, {1, 1}),
                 single = function({0}, {1}), empty = newFct(1);
    const struct {
        Fct *f, *kernel;
        double x, want;
    } cases[] = {{f, box, 5, 2},        {f, late, 2, 3},  {f, late, 0, 0},    {f, single, 5, 0},
                 {f, single, 5.5, 0.5}, {f, empty, 5, 0}, {empty, box, 5, 0}, {f, box, 50, 0}};
    for (const auto &c : cases)
        EXPECT_EQ(convoluteFct(c.f, c.kernel, c.x), c.want)
            << c.x << ", " << text(c.f) << "kernel " << text(c.kernel);
}

TEST(SmoothFct, AgreesWithOneConvolutionForEachSample) {
    RandomFunctions functions;
    for (int round = 0; round < 1500; ++round) {
        functions.gaps = round % 2 ? 0.05 : 0;
        const FctPtr f = functions.next(30);
        const FctPtr kernel = functions.next(6);
        for (int j = 0; j < kernel->n; ++j) kernel->t[j] = kernel->t[j] * 0.5 - 2;
        if (round % 10 == 0) std::reverse(f->t, f->t + f->n); // what is not ascending, too
        f->lastIndex = functions.upTo(32) - 1;
        const int hint = f->lastIndex;
        const std::string input = text(f) + "kernel " + text(kernel);

        const Values want = slowSmooth(f, kernel);
        const int wantHint = f->lastIndex;
        f->lastIndex = hint;
        smoothFct(f, kernel);
        EXPECT_TRUE(same(ordinates(f), want)) << input;
        EXPECT_EQ(f->lastIndex, wantHint) << input;
        EXPECT_EQ(kernel->lastIndex, 0);
    }
}

TEST(SmoothFct, SmoothsAFunctionByItself) {
    const FctPtr f = function({-1, 0, 1}, {0, 1, 0});
    const Values want = slowSmooth(f, FctPtr(copyFct(f)));
    smoothFct(f, f);
    EXPECT_EQ(ordinates(f), want);
}
