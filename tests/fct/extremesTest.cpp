#include <gtest/gtest.h>

#include "fct/fct.h"
#include "samples.h"

using namespace plw;

TEST(FindValueBeyondFct, PassesOverTheSegmentThatHoldsX) {
    const FctPtr wave = function({0, 1, 2, 3}, {0, 2, 0, 2}),
                 gap = function({0, 1, 2, 3, 4}, {0, NaN, 2, 0, 1}),
                 touching = function({0, 1, 2, 3}, {3, 2, 1, 2}), last = function({0, 1}, {0, 1}),
                 line = function({0, 4}, {0, 4});
    const struct {
        Fct *f;
        double x, value;
        int found;
        double want;
    } cases[] = {{wave, -1, 1, 1, 0.5},   {wave, 0, 1, 1, 1.5}, {wave, 1.2, 1, 1, 2.5},
                 {wave, 2, 1, 0, -7},     {wave, -1, 3, 0, -7}, {wave, NaN, 1, 1, 1.5},
                 {gap, -1, 1, 1, 2.5},    {gap, -1, 0, 1, 3},   {touching, -1, 1, 1, 2},
                 {last, 0, 0.5, 0, -7},   {last, -1, 1, 1, 1},  {line, -1, 0, 1, 0},
                 {line, -0.1, NaN, 0, -7}};
    for (const auto &c : cases) {
        double t = -7;
        EXPECT_EQ(findValueBeyondFct(c.x, c.f, c.value, &t), c.found) << c.x << " " << text(c.f);
        EXPECT_EQ(t, c.want) << "value " << c.value << " beyond " << c.x << " in " << text(c.f);
    }
    double t = -7;
    EXPECT_EQ(findValueBeyondFct(0, FctPtr(newFctFixedLen(3)), 0, &t), 0);
}

TEST(ExtremeFct, SearchesForwardFromTheNextSampleButBackFromThisOne) {
    const FctPtr f = function({0, 1, 2, 3, 4}, {0, 2, 0, 3, 1});
    const auto beyond = extremeBeyondFct, before = extremeBeforeFct;
    const struct {
        double (*search)(double, Fct *, double *);
        double x, want, wantT;
    } cases[] = {{beyond, -5, 2, 1},     {beyond, 0, 2, 1},    {beyond, 1, 0, 2},
                 {beyond, 2.5, 3, 3},    {beyond, 3, NaN, -7}, {beyond, 9, NaN, -7},
                 {before, 1.5, 2, 1},    {before, 3, 3, 3},    {before, 2.5, 0, 2},
                 {before, 0.5, NaN, -7}, {before, 4, NaN, -7}, {before, -5, NaN, -7}};
    for (const auto &c : cases) {
        double t = -7;
        EXPECT_TRUE(same(c.search(c.x, f, &t), c.want)) << c.x;
        EXPECT_EQ(t, c.wantT) << c.x;
    }
    double t = -7;
    EXPECT_TRUE(std::isnan(extremeBeyondFct(0, FctPtr(newFct(1)), &t)));
    EXPECT_TRUE(std::isnan(extremeBeforeFct(0, FctPtr(newFct(1)), &t)));
}

TEST(Extremes, CountAtTheLastSampleOfAFlatStretch) {
    const struct {
        Values y;
        int start, next, prev;
    } cases[] = {
        {{1, 3, 3, 1}, 1, 2, -1},     {{1, 3, 3, 1}, 2, 2, 2},      {{1, 1, 2}, 1, 1, 1},
        {{0, 2, 0, 2, 0}, 3, 3, 3},   {{0, 2, 0, 2, 0}, 0, -1, -1}, {{0, 2, 0, 2, 0}, 4, -1, -1},
        {{0, 1, 2, 3, 2}, 1, 3, -1},  {{2, 3, 2, 1, 0}, 3, -1, 1},  {{1, NaN, 1, 0, 1}, 1, 3, -1},
        {{2, 2, 2}, 1, -1, -1},       {{1, 2}, 1, -1, -1},          {{}, 0, -1, -1},
        {{0, 2, 0, 2, 0}, -3, -1, -1}};
    for (const auto &c : cases) {
        const int n = static_cast<int>(c.y.size());
        EXPECT_EQ(nextExtreme(c.y.data(), n, c.start), c.next) << c.start << " " << text(c.y);
        EXPECT_EQ(prevExtreme(c.y.data(), n, c.start), c.prev) << c.start << " " << text(c.y);
    }
}

TEST(NextZero, IsLinearBetweenSamplesAndWithinThem) {
    const double inf = infinity;
    const struct {
        Values y;
        int start;
        double want;
    } cases[] = {{{1, -1}, 0, 0.5},   {{1, -1}, -5, 0.5},    {{0, 0, 1}, 0, 1},
                 {{2, 0}, 0, 1},      {{1, -1}, 1, -1},      {{1, -1}, 2, -1},
                 {{}, 0, -1},         {{}, -1, -1},          {{1, NaN, 0, 1}, 0, 2},
                 {{1, 2, 3}, 0, -1},  {{-1, 3, -3}, 1, 1.5}, {{inf, -inf}, 0, NaN},
                 {{-inf, 1}, 0, NaN}, {{-0.0, 5}, 0, 0}};
    for (const auto &c : cases)
        EXPECT_TRUE(same(nextZero(c.y.data(), static_cast<int>(c.y.size()), c.start), c.want))
            << c.start << " in " << text(c.y);
}
