#include "fct/fct.h"

#include "tests/fct/samples.h"

using namespace plw;

TEST(FindValueBeyondFct, PassesOverTheSegmentThatHoldsX) {
    const FctPtr wave = function({0, 1, 2, 3}, {0, 2, 0, 2}),
                 gap = function({0, 1, 2, 3, 4}, {0, NaN, 2, 0, 1}),
                 touching = function({0, 1, 2, 3}, {3, 2, 1, 2}), last = function({0, 1}, {0, 1}),
                 line = function({0, 4}, {0, 4}), flat = function({3, 4}, {5, 5}),
                 empty = newFct(1), rounded0 = function({3.6, 9}, {0, 1.3}),
                 rounded1 = function({0, 3.6}, {1.3, 0}); // which would round the crossing
    const std::tuple<Fct *, double, double, int, double> cases[] = {
        {wave, -1, 1, 1, 0.5},     {wave, 0, 1, 1, 1.5},     {wave, 1.2, 1, 1, 2.5},
        {wave, 2, 1, 0, -7},       {wave, -1, 3, 0, -7},     {wave, NaN, 1, 1, 1.5},
        {gap, -1, 1, 1, 2.5},      {gap, -1, 0, 1, 3},       {touching, -1, 1, 1, 2},
        {last, 0, 0.5, 0, -7},     {last, -1, 1, 1, 1},      {line, -1, 0, 1, 0},
        {line, -0.1, NaN, 0, -7},  {flat, 0, 5, 1, 3},       {empty, 0, 0, 0, -7},
        {rounded0, -1, 0, 1, 3.6}, {rounded1, -1, 0, 1, 3.6}};
    for (const auto &[f, x, value, found, want] : cases) {
        double t = -7;
        EXPECT_EQ(findValueBeyondFct(x, f, value, &t), found) << x << " " << text(f);
        EXPECT_EQ(t, want) << "value " << value << " beyond " << x << " in " << text(f);
    }
}

TEST(ExtremeFct, SearchesForwardFromTheNextSampleButBackFromThisOne) {
    const FctPtr f = function({0, 1, 2, 3, 4}, {0, 2, 0, 3, 1}), empty = newFct(1);
    const auto beyond = extremeBeyondFct, before = extremeBeforeFct;
    const std::tuple<double (*)(double, Fct *, double *), Fct *, double, double, double> cases[] = {
        {beyond, f, -5, 2, 1},       {beyond, f, 0, 2, 1},       {beyond, f, 1, 0, 2},
        {beyond, f, 2.5, 3, 3},      {beyond, f, 3, NaN, -7},    {beyond, f, 9, NaN, -7},
        {before, f, 1.5, 2, 1},      {before, f, 3, 3, 3},       {before, f, 2.5, 0, 2},
        {before, f, 0.5, NaN, -7},   {before, f, 4, NaN, -7},    {before, f, -5, NaN, -7},
        {beyond, empty, 0, NaN, -7}, {before, empty, 0, NaN, -7}};
    for (const auto &[search, g, x, want, wantT] : cases) {
        double t = -7;
        const double y = search(x, g, &t);
        EXPECT_TRUE(same({y, t}, {want, wantT})) << x;
    }
}

TEST(Extremes, CountAtTheLastSampleOfAFlatStretch) {
    const std::tuple<Values, int, int, int> cases[] = {
        {{1, 3, 3, 1}, 1, 2, -1},     {{1, 3, 3, 1}, 2, 2, 2},      {{1, 1, 2}, 1, 1, 1},
        {{0, 2, 0, 2, 0}, 3, 3, 3},   {{0, 2, 0, 2, 0}, 0, -1, -1}, {{0, 2, 0, 2, 0}, 4, -1, -1},
        {{0, 1, 2, 3, 2}, 1, 3, -1},  {{2, 3, 2, 1, 0}, 3, -1, 1},  {{1, NaN, 1, 0, 1}, 1, 3, -1},
        {{2, 2, 2}, 1, -1, -1},       {{1, 2}, 1, -1, -1},          {{}, 0, -1, -1},
        {{0, 2, 0, 2, 0}, -3, -1, -1}};
    for (const auto &[y, start, next, prev] : cases) {
        const int n = static_cast<int>(y.size());
        const std::string input = std::to_string(start) + " in " + testing::PrintToString(y);
        EXPECT_EQ(nextExtreme(y.data(), n, start), next) << input;
        EXPECT_EQ(prevExtreme(y.data(), n, start), prev) << input;
    }
}

TEST(NextZero, IsLinearBetweenSamplesAndWithinThem) {
    const double inf = infinity;
    const std::tuple<Values, int, double> cases[] = {
        {{1, -1}, 0, 0.5},      {{1, -1}, -5, 0.5}, {{0, 0, 1}, 0, 1},     {{2, 0}, 0, 1},
        {{1, -1}, 1, -1},       {{1, -1}, 2, -1},   {{}, 0, -1},           {{}, -1, -1},
        {{1, NaN, 0, 1}, 0, 2}, {{1, 2, 3}, 0, -1}, {{-1, 3, -3}, 1, 1.5}, {{inf, -inf}, 0, NaN},
        {{-inf, 1}, 0, NaN},    {{-0.0, 5}, 0, 0}};
    for (const auto &[y, start, want] : cases)
        EXPECT_TRUE(same(nextZero(y.data(), static_cast<int>(y.size()), start), want))
            << start << " in " << testing::PrintToString(y);
}
