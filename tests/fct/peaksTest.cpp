#include "fct/fct.h"

#include "tests/fct/samples.h"

#include <functional>

using namespace plw;

namespace {

FctPtr sampled(double from, double to, int n, const std::function<double(double)> &y) {
    FctPtr f = newFct(n);
    for (int i = 0; i < n; ++i) {
        const double t = from + (to - from) * i / (n - 1);
        appendFct(f, t, y(t));
    }
    return f;
}

// The search step by step, through the public searches; nothing if it would go round for ever.
FctPtr slowPeaks(Fct *f, double threshold, double w) {
    FctPtr r = newFct(20);
    if (f->n < 1) return r;
    const double h = w * 0.5;
    const double step = (f->t[f->n - 1] - f->t[0]) / f->n * 0.5;
    const FctPtr d = newFct(f->n);
    Fct copy = *f;
    for (double x = f->t[0] + h; x <= f->t[f->n - 1] - h && step > 0; x += step) {
        const double R = integralFct(x, x + h, &copy);
        const double L = integralFct(x - h, x, f);
        appendFct(d, x, R - L);
    }
    double p = f->t[0] + h, t;
    for (int rounds = 0; findValueBeyondFct(p, d, 0.0, &p); ++rounds) {
        if (rounds > d->n + 1) return FctPtr(nullptr);
        const double e1 = extremeBeyondFct(p, d, &t);
        const double e0 = extremeBeforeFct(p, d, &t);
        if (std::isnan(e1) && std::isnan(e0)) break;
        const double s = std::isnan(e1) ? 2 * e0 : std::isnan(e0) ? -2.0 * e1 : e0 - e1;
        if (s / h >= threshold) appendFct(r, p, s / h);
    }
    return r;
}

} // namespace

TEST(PeaksFct, IsEmptyWithoutRoomForAWindow) {
    const FctPtr f = sampled(0, 1, 11, [](double t) { return t * (1 - t); });
    for (double width : {1.5, 0.0, -1.0, -infinity, infinity, NaN})
        EXPECT_EQ(FctPtr(peaksFct(f, 0, width))->n, 0) << width;
    for (const Values &t : {Values{}, {1}, {3, 3, 3}, {0, infinity}, {NaN, 1, 2}})
        EXPECT_EQ(FctPtr(peaksFct(function(t, t), 0, 1))->n, 0) << testing::PrintToString(t);
}

TEST(PeaksFct, EndsWhereDifferencesUnderflowOrCrossingsRound) {
    // tails so thin that products of their differences are 0
    const FctPtr thin = sampled(-30, 30, 601, [](double t) { return std::exp(-t * t); });
    const FctPtr peaks = peaksFct(thin, 0.1, 1);
    ASSERT_EQ(peaks->n, 1) << text(peaks);
    EXPECT_NEAR(peaks->t[0], 0, 0.05); // half a sample
    negFct(thin);
    EXPECT_EQ(FctPtr(peaksFct(thin, 0.1, 1))->n, 0) << "a valley";

    // symmetric ones, where the difference at the centre is 0 but for rounding
    for (int n = 21; n < 400; n += 2) {
        const auto bell = [](double t) { return std::exp(-(t - 0.5) * (t - 0.5) * 50); };
        EXPECT_EQ(FctPtr(peaksFct(sampled(0.1, 0.9, n, bell), 0.1, 0.2))->n, 1) << n;
    }

    // the search goes on from the position of a crossing that is none
    const FctPtr tiny = function({0, 1, 2}, {-5.7e-201, 8.0e-201, -2.459});
    EXPECT_EQ(FctPtr(peaksFct(tiny, 0.3, 0.25))->n, 0);
}

TEST(PeaksFct, AgreesWithTheSteps) {
    RandomFunctions functions;
    int found = 0;
    for (int round = 0; round < 1500; ++round) {
        functions.gaps = round % 3 == 0 ? 0.03 : 0;
        const FctPtr f = functions.next(40);
        if (functions.rarely(0.2)) std::fill(f->y + f->n / 3, f->y + f->n, 1.0);
        if (functions.rarely(0.3)) // products of differences underflow in one part or everywhere
            for (int i = functions.upTo(1) * f->n / 2; i < f->n; ++i) f->y[i] *= 1e-200;
        double threshold = functions.real(-1, 1);
        const double width = // half of them such that the last window may end with the function
            functions.rarely(0.5) ? 0.5 + functions.upTo(11) * 0.5 : functions.real(0.2, 6);
        const FctPtr any = slowPeaks(FctPtr(copyFct(f)), threshold, width);
        if (any && any->n > 0) threshold = any->y[0]; // which is reached
        const FctPtr copy = copyFct(f);
        const FctPtr want = slowPeaks(copy, threshold, width);
        if (want == nullptr) continue;
        const FctPtr got = peaksFct(f, threshold, width);
        EXPECT_TRUE(same(got, want))
            << "threshold " << threshold << ", width " << width << ", " << text(f);
        EXPECT_EQ(f->lastIndex, copy->lastIndex) << text(f);
        found += got->n;
    }
    EXPECT_GT(found, 1000);
}

TEST(Parabola, IsExactOrSaysWhatIsMissing) {
    const struct {
        double x[3], y[3];
        int done;
        Values want; // curvature and vertex
    } cases[] = {{{0, 1, 2}, {0, 1, 0}, 1, {-1, 1, 1}},   {{0, 1, 4}, {5, 2, 5}, 1, {1, 2, 1}},
                 {{2, 1, 0}, {9, 4, 1}, 1, {1, -1, 0}},   {{0, 1, 2}, {1, 2, 3}, 0, {0, -7, -7}},
                 {{1, 1, 2}, {1, 2, 3}, 0, {-7, -7, -7}}, {{0, 2, 2}, {1, 2, 3}, 0, {-7, -7, -7}}};
    for (const auto &c : cases) {
        Values got(3, -7);
        EXPECT_EQ(parabola(c.x, c.y, &got[0], &got[1], &got[2]), c.done);
        EXPECT_EQ(got, c.want);
    }
}
