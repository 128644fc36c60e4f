#include "fct/fct.h"

#include "fct/statistics.h"
#include "tests/fct/samples.h"

#include <climits>
#include <string>
#include <unistd.h>

using namespace plw;

TEST(NewFct, RaisesTheCapacityToOneAndGrowsByTheRule) {
    const FctPtr f = newFct(-5);
    for (int i = 0; i < 62; ++i) {
        EXPECT_EQ(f->size, i < 2 ? 1 : i < 26 ? 25 : 61) << i;
        appendFct(f, i, -i);
    }
    EXPECT_EQ(f->size, 115);
    for (int i = 0; i < 62; ++i) EXPECT_EQ(Values({f->t[i], f->y[i]}), Values({1.0 * i, -1.0 * i}));
}

TEST(NewFct, ComesFromAnArrayWithPositionsRoundedOnce) {
    const FctPtr f = newFctWith(Values(1000, 4).data(), 1000, -7.7, 1.0 / 3);
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(f->t[i], std::fma(i, 1.0 / 3, -7.7)) << i;
    EXPECT_EQ(ordinates(f), Values(1000, 4));
}

TEST(CopyFct, IsItsOwnAndALinkSharesTheArrays) {
    const FctPtr f = newFctFixedLen(1);
    appendFct(f, 1, 10);
    f->lastIndex = 1;
    const FctPtr copy = copyFct(f);
    appendFct(copy, 3, 30);
    negFct(copy);
    EXPECT_TRUE(same(copy, function({1, 3}, {-10, -30})));

    copy->lastIndex = 1;
    Fct *link = linkFct(copy);
    EXPECT_EQ(FctPtr(copyFct(copy))->lastIndex + link->size + link->lastIndex, 0);
    EXPECT_EQ(link->linked, 1);
    link->y[1] = 7;
    removeAtEndFct(link, 1);
    freeFct(link);
    EXPECT_TRUE(same(copy, function({1, 3}, {-10, 7})));
    EXPECT_EQ(ordinates(f), Values({10}));
}

TEST(RemoveFct, LimitsTheCountAndForgetsTheSearch) {
    const auto atEnd = removeAtEndFct, atBegin = removeAtBeginFct;
    const std::tuple<void (*)(Fct *, int), int, Values> cases[] = {
        {atEnd, 1, {1, 2, 3}},
        {atEnd, INT_MAX, {}},
        {atBegin, 2, {3, 4}},
        {atBegin, INT_MAX, {}},
        {atBegin, INT_MIN, {1, 2, 3, 4}}};
    for (const auto &[remove, k, want] : cases) {
        const FctPtr f = function({1, 2, 3, 4}, {1, 2, 3, 4});
        f->lastIndex = 3;
        remove(f, k);
        EXPECT_TRUE(same(f, function(want, want))) << k;
        EXPECT_EQ(f->lastIndex, 0) << k;
    }

    // a negative count takes back what was dropped
    const FctPtr f = function({1, 2, 3, 4}, {1, 2, 3, 4});
    removeAtEndFct(f, 3);
    removeAtEndFct(f, -2);
    EXPECT_EQ(f->n, 3);
    removeAtEndFct(f, INT_MIN);
    EXPECT_EQ(f->n, 4);
}

TEST(FctDeathTest, OfFixedLengthNeitherGrowsNorShrinksAndIsNotSearchedBeforeItIsFull) {
    const FctPtr half = newFctFixedLen(3), full = newFctFixedLen(1),
                 whole = function({0, 1}, {1, 1}), empty = newFct(1);
    appendFct(half, 0, 1);
    appendFct(half, 1, 2);
    appendFct(full, 0, 1);
    const FctPtr link = linkFct(full);
    const std::string isFull = ": function with fixed length full (1)",
                      isHalf = ": function incomplete (2)";
    double a, b, c, d;
    int i;
    const std::pair<std::string, std::function<void()>> cases[] = {
        {"appendFct" + isFull, [&] { appendFct(full, 1, 1); }},
        {"appendFct" + isFull, [&] { removeAtEndFct(full, 0); }},
        {"removeAtBeginFct" + isFull, [&] { removeAtBeginFct(full, 0); }},
        {"indexFct" + isHalf, [&] { indexFct(half, 0); }},
        {"closestTFct" + isHalf, [&] { closestTFct(half, 0); }},
        {"maximumFct" + isHalf, [&] { maximumFct(half, &a, &b, &i); }},
        {"evalFct" + isHalf, [&] { evalFct(half, 0); }},
        {"integral" + isHalf, [&] { integralFct(0, 0, half); }},
        {"findRootBeyondFct" + isHalf, [&] { findValueBeyondFct(0, half, 0, &a); }},
        {"extremeBeyondFct" + isHalf, [&] { extremeBeyondFct(0, half, &a); }},
        {"extremeBeforeFct" + isHalf, [&] { extremeBeforeFct(0, half, &a); }},
        {"evalFct" + isHalf, [&] { addFct(whole, half); }},
        {"evalFct" + isHalf, [&] { smoothFct(half, whole); }},
        {"peaksFct" + isHalf, [&] { peaksFct(half, 0, 1); }},
        {"linRegFct" + isHalf, [&] { linRegFct(half, &a, &b, &c, &d); }},
        {"evalFct: function incomplete (1)", [&] { evalFct(link, 0); }},
        {"evalFct: function incomplete (0)", [&] { evalFct(empty, 0); }}};
    for (const auto &[message, call] : cases) expectFatal(call, "ERROR in " + message);
    appendFct(half, 2, 3);
    EXPECT_EQ(indexFct(half, 5), 2);
}

TEST(IndexFct, RemembersWhatItFound) {
    const FctPtr f = function({0, 1, 1, 3}, {0, 0, 0, 0});
    for (const auto &[x, want] : {std::pair{-7.0, 0}, {0.5, 0}, {2, 2}, {9, 3}, {NaN, 0}}) {
        EXPECT_EQ(indexFct(f, x), want) << x;
        EXPECT_EQ(f->lastIndex, want) << x;
    }
}

TEST(ClosestTFct, GivesTiesToTheLargerPosition) {
    const FctPtr f = function({0, 1, 3}, {0, 0, 0}), gap = function({0, NaN, 3}, {0, 0, 0}),
                 empty = newFct(1), single = function({4}, {0});
    const std::tuple<Fct *, double, double> cases[] = {
        {f, -7, 0},    {f, 0.25, 0}, {f, 0.5, 1},     {f, 2, 3},
        {f, 1.999, 1}, {f, 9, 3},    {f, NaN, 1},     {f, -infinity, 1},
        {gap, 1, NaN}, {gap, 3, 3},  {empty, 1, NaN}, {single, -1, 4}};
    for (const auto &[g, x, want] : cases)
        EXPECT_TRUE(same(closestTFct(g, x), want)) << x << " in " << text(g);
}

TEST(MaximumFct, TakesTheFirstOfEqualsAndNoNaN) {
    // t, y and index
    const std::pair<Values, Values> cases[] = {{{1, 5, 5}, {11, 5, 1}},
                                               {{NaN, -2, NaN}, {11, -2, 1}},
                                               {{}, {-7, -1e300, -7}},
                                               {{NaN, -1e300, -infinity}, {-7, -1e300, -7}}};
    for (const auto &[values, want] : cases) {
        double t = -7, y = 0;
        int index = -7;
        const FctPtr f = newFctWith(values.data(), static_cast<int>(values.size()), 10, 1);
        maximumFct(f, &t, &y, &index);
        EXPECT_EQ(Values({t, y, 1.0 * index}), want) << testing::PrintToString(values);
    }
}

TEST(SortFct, MovesWholeSamples) {
    const FctPtr f = function({3, 1, 2}, {10, 30, 20});
    sortByTFct(f);
    EXPECT_TRUE(same(f, function({1, 2, 3}, {30, 20, 10})));
    sortByYFct(f);
    EXPECT_TRUE(same(f, function({3, 2, 1}, {10, 20, 30})));
}

// The rule word by word, on a copy.
static Values unwrapped(const Values &y, int m) {
    Values v = y;
    double r = y.empty() ? 0 : y[0], c = 0;
    for (int i = 1; i < static_cast<int>(y.size()); ++i) {
        const double jump = y[i] + c - r;
        if (std::fabs(jump) > 3.141592653589793) c -= std::copysign(6.283185307179586, jump);
        v[i] = y[i] + c;
        r = std::fma(1.0 / m, v[i] - v[i - m >= 1 ? i - m : 0], r);
    }
    return v;
}

TEST(UnwrapPhaseFct, FollowsThePhaseThroughItsJumps) {
    RandomFunctions functions;
    functions.gaps = 0.01;
    for (int round = 0; round < 200; ++round) {
        const FctPtr f = functions.next(40);
        for (int i = 0; i < f->n; ++i) f->y[i] *= round % 2 ? 2 : 8;
        const int m = round % 50 == 0 ? INT_MAX : 1 + functions.upTo(6);
        const Values want = unwrapped(ordinates(f), m);
        const std::string input = text(f);
        unwrapPhaseFct(f, m);
        EXPECT_TRUE(same(ordinates(f), want)) << "m = " << m << ", " << input;
    }
}

TEST(PrintFct, WritesWhatPrintfDoesIntoAFileOrToStandardOutput) {
    const FctPtr f = newFct(1);
    for (double special : {0.0, NaN, infinity, 1e-5, 1e-4, 999999.5, 1e6, 0.1})
        appendFct(f, special, -special);
    std::mt19937_64 random(3);
    for (int i = 0; i < 20000; ++i)
        appendFct(f, std::bit_cast<double>(random()), std::ldexp(random() % 2000001, -(i % 24)));
    std::string want;
    char line[64];
    for (int i = 0; i < f->n; ++i)
        want.append(line, std::snprintf(line, sizeof line, "%g  %g\n", f->t[i], f->y[i]));
    const std::string path = testing::TempDir() + "printFctTest" + std::to_string(getpid());
    printFct(f, path.c_str());
    EXPECT_TRUE(textOf(path) == want);
    std::remove(path.c_str());

    testing::internal::CaptureStdout();
    printFct(FctPtr(newFct(1)), nullptr);
    pp(function({2}, {NaN}));
    std::puts("still open");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "2  nan\nstill open\n");
}
