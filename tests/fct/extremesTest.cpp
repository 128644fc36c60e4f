#include <gtest/gtest.h>

#include "fct/fct.h"
#include "samples.h"

using namespace plw;

TEST(FindValueBeyondFct, PassesOverTheSegmentThatHoldsX) {
    const FctPtr wave = function({0, 1, 2, 3}, {0, 2, 0, 2});
    const FctPtr gap = function({0, 1, 2, 3, 4}, {0, NaN, 2, 0, 1});
    const FctPtr touching = function({0, 1, 2, 3}, {3, 2, 1, 2});
    const FctPtr last = function({0, 1}, {0, 1});
    const FctPtr line = function({0, 4}, {0, 4});
    const struct {
        Fct *f;
        double x, value;
        int found;
        double want;
    } cases[] = {
        {wave.get(), -1, 1, 1, 0.5},    {wave.get(), 0, 1, 1, 1.5}, {wave.get(), 1.2, 1, 1, 2.5},
        {wave.get(), 2, 1, 0, -7},      {wave.get(), -1, 3, 0, -7}, {wave.get(), NaN, 1, 1, 1.5},
        {gap.get(), -1, 1, 1, 2.5},     {gap.get(), -1, 0, 1, 3},   {touching.get(), -1, 1, 1, 2},
        {last.get(), 0, 0.5, 0, -7},    {last.get(), -1, 1, 1, 1},  {line.get(), -1, 0, 1, 0},
        {line.get(), -0.1, NaN, 0, -7},
    };
    for (const auto &c : cases) {
        double t = -7;
        EXPECT_EQ(findValueBeyondFct(c.x, c.f, c.value, &t), c.found) << c.x << " " << text(c.f);
        EXPECT_EQ(t, c.want) << "value " << c.value << " beyond " << c.x << " in " << text(c.f);
    }
    double t = -7;
    EXPECT_EQ(findValueBeyondFct(0, own(newFctFixedLen(3)).get(), 0, &t), 0);
}

TEST(ExtremeFct, SearchesForwardFromTheNextSampleButBackFromThisOne) {
    const FctPtr f = function({0, 1, 2, 3, 4}, {0, 2, 0, 3, 1});
    const struct {
        double (*search)(double, Fct *, double *);
        double x, want, wantT;
    } cases[] = {
        {extremeBeyondFct, -5, 2, 1},   {extremeBeyondFct, 0, 2, 1},
        {extremeBeyondFct, 1, 0, 2},    {extremeBeyondFct, 2.5, 3, 3},
        {extremeBeyondFct, 3, NaN, -7}, {extremeBeyondFct, 9, NaN, -7},
        {extremeBeforeFct, 1.5, 2, 1},  {extremeBeforeFct, 3, 3, 3},
        {extremeBeforeFct, 2.5, 0, 2},  {extremeBeforeFct, 0.5, NaN, -7},
        {extremeBeforeFct, 4, NaN, -7}, {extremeBeforeFct, -5, NaN, -7},
    };
    for (const auto &c : cases) {
        double t = -7;
        EXPECT_TRUE(same(c.search(c.x, f.get(), &t), c.want)) << c.x;
        EXPECT_EQ(t, c.wantT) << c.x;
    }
    double t = -7;
    EXPECT_TRUE(std::isnan(extremeBeyondFct(0, own(newFct(1)).get(), &t)));
    EXPECT_TRUE(std::isnan(extremeBeforeFct(0, own(newFct(1)).get(), &t)));
}

TEST(ExtremesDeathTest, RefuseAnIncompleteFunction) {
    const FctPtr partial = incompleteFunction();
    double t;
    const auto failed = testing::ExitedWithCode(1);
    EXPECT_EXIT(findValueBeyondFct(0, partial.get(), 0, &t), failed,
                "^ERROR in findRootBeyondFct: function incomplete \\(2\\)\n$");
    EXPECT_EXIT(extremeBeyondFct(0, partial.get(), &t), failed,
                "^ERROR in extremeBeyondFct: function incomplete \\(2\\)\n$");
    EXPECT_EXIT(extremeBeforeFct(0, partial.get(), &t), failed,
                "^ERROR in extremeBeforeFct: function incomplete \\(2\\)\n$");
}

TEST(Extremes, CountAtTheLastSampleOfAFlatStretch) {
    const struct {
        Values y;
        int start, next, prev;
    } cases[] = {
        {{1, 3, 3, 1}, 1, 2, -1},      {{1, 3, 3, 1}, 2, 2, 2},      {{1, 1, 2}, 1, 1, 1},
        {{0, 2, 0, 2, 0}, 3, 3, 3},    {{0, 2, 0, 2, 0}, 0, -1, -1}, {{0, 2, 0, 2, 0}, 4, -1, -1},
        {{0, 1, 2, 3, 2}, 1, 3, -1},   {{2, 3, 2, 1, 0}, 3, -1, 1},  {{1, NaN, 1, 0, 1}, 1, 3, -1},
        {{2, 2, 2}, 1, -1, -1},        {{1, 2}, 1, -1, -1},          {{}, 0, -1, -1},
        {{0, 2, 0, 2, 0}, -3, -1, -1},
    };
    for (const auto &c : cases) {
        const int n = static_cast<int>(c.y.size());
        EXPECT_EQ(nextExtreme(c.y.data(), n, c.start), c.next) << c.start << " " << text(c.y);
        EXPECT_EQ(prevExtreme(c.y.data(), n, c.start), c.prev) << c.start << " " << text(c.y);
    }
}

TEST(NextZero, IsLinearBetweenSamplesAndWithinThem) {
    const struct {
        Values y;
        int start;
        double want;
    } cases[] = {
        {{1, -1}, 0, 0.5},
        {{1, -1}, -5, 0.5},
        {{0, 0, 1}, 0, 1},
        {{2, 0}, 0, 1},
        {{1, -1}, 1, -1},
        {{1, -1}, 2, -1},
        {{}, 0, -1},
        {{}, -1, -1},
        {{1, NaN, 0, 1}, 0, 2},
        {{1, 2, 3}, 0, -1},
        {{-1, 3, -3}, 1, 1.5},
        {{infinity, -infinity}, 0, NaN},
        {{-infinity, 1}, 0, NaN},
        {{-0.0, 5}, 0, 0},
    };
    for (const auto &c : cases)
        EXPECT_TRUE(same(nextZero(c.y.data(), static_cast<int>(c.y.size()), c.start), c.want))
            << c.start << " in " << text(c.y) << " gives "
            << nextZero(c.y.data(), static_cast<int>(c.y.size()), c.start);
}
