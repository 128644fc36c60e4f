#include "util/arrays/search.h"

#include "tests/support/expect.h"
#include "util/arrays/missing.h"

#include <climits>
#include <cstdlib>
#include <random>

using namespace plw;

// Ascending small integers: duplicates are frequent, and a part of the entries are gaps.
static Values ascendingWithGaps(std::mt19937 &random, int n, bool duplicates) {
    Values a(n);
    double v = 0;
    const auto gapsInTen = random() % 10;
    for (double &entry : a) {
        v += static_cast<double>(random() % 3) + (duplicates ? 0 : 1);
        entry = random() % 10 < gapsInTen ? NaN : v;
    }
    return a;
}

// The bisection as it is laid down, on a plain list of what is left between the ends.
static long bisectSlowly(double x, const Values &a, long low, long high, bool upper) {
    while (high - low > 1) {
        std::vector<long> left, right;
        const long mid = (low + high) / 2;
        for (long i = mid; i > low; --i)
            if (!std::isnan(a[i])) left.push_back(i);
        for (long i = mid; i < high; ++i)
            if (!std::isnan(a[i])) right.push_back(i);
        if (left.empty() && right.empty()) break;
        const long at = !left.empty() ? left.front() : right.front();
        if (a[at] == x) return at;
        (a[at] > x ? high : low) = at;
    }
    return upper ? high : low;
}

static long slowSearchLe(double x, const Values &a, long hint) {
    const long n = std::ssize(a);
    long low = 0, high = n - 1;
    if (hint >= 0 && n > hint + 1) {
        if (a[hint] <= x && x < a[hint + 1]) return hint;
        if (n > hint + 2 && a[hint + 1] <= x && x < a[hint + 2]) return hint + 1;
        low = a[hint] <= x ? hint : 0;
        high = a[hint] > x ? hint : n - 1;
    }
    while (low < high && std::isnan(a[low])) ++low;
    if (std::isnan(x) || low >= high || x < a[low]) return 0;
    if (x == a[low]) return low;
    while (std::isnan(a[high])) --high;
    if (x >= a[high]) return high;
    return bisectSlowly(x, a, low, high, false);
}

static long slowSearchGe(double x, const Values &a) {
    if (a.empty()) return -1;
    long low = 0, high = std::ssize(a) - 1;
    while (low < high && std::isnan(a[low])) ++low;
    if (low == high) return 0;
    if (a[low] >= x) return low;
    while (std::isnan(a[high])) --high;
    if (x >= a[high]) return high;
    return bisectSlowly(x, a, low, high, true);
}

TEST(Search, FindsTheLastNotAboveAndTheFirstNotBelowByTheLaidDownBisection) {
    const int oddHints[] = {-1, INT_MIN, INT_MAX, INT_MAX - 1};
    std::mt19937 random(2);
    for (int run = 0; run < 2000; ++run) {
        const int n = static_cast<int>(random() % 60);
        const Values a = ascendingWithGaps(random, n, run % 4 > 0);
        for (int k = 0; k < 60; ++k) {
            const double x = k == 0   ? NaN
                             : k == 1 ? infinity
                                      : static_cast<double>(random() % (4 * n + 4)) / 2 - 1;
            const int hint = k < 4 ? oddHints[k] : static_cast<int>(random() % (n + 3));
            ASSERT_EQ(search_le(x, a.data(), n, hint), slowSearchLe(x, a, hint))
                << x << " from " << hint << " in " << testing::PrintToString(a);
            ASSERT_EQ(search_ge(x, a.data(), n), slowSearchGe(x, a))
                << x << " in " << testing::PrintToString(a);
        }
    }
}

TEST(SearchForValid, GoesToTheNearestPositionWhereBothAreValid) {
    const double x[] = {0, NaN, 2, 3, NaN}, y[] = {NaN, 1, 2, NaN, 4};
    for (const auto &[i, want] : {std::pair{4, 2}, {2, 2}, {1, -1}, {-1, -1}})
        EXPECT_EQ(searchLeftForValid(x, y, i), want) << i;
    const std::tuple<int, int, int> cases[] = {{5, 0, 2}, {5, 2, 2},  {5, 3, 4}, {2, 0, 1},
                                               {3, 9, 2}, {5, -3, 2}, {0, 0, -1}};
    for (const auto &[n, i, want] : cases)
        EXPECT_EQ(searchRightForValid(x, y, n, i), want) << n << ", " << i;
}

TEST(IsArrIncreasing, AllowsEqualNeighboursAndIgnoresGaps) {
    for (const auto &[a, want] :
         {std::pair{Values{1, 1, 2}, 1}, {{2, 1}, 0}, {{2, NaN, 1}, 1}, {{2}, 1}, {{}, 1}})
        EXPECT_EQ(isArrIncreasing(a.data(), static_cast<int>(a.size())), want)
            << testing::PrintToString(a);
}

TEST(RemoveNAN, KeepsCompletePairsInOrder) {
    const double x[] = {1, NaN, 3, infinity, NaN}, y[] = {5, 6, -NaN, 8, NaN};
    for (const int n : {5, 2, 0}) {
        double *xOut, *yOut;
        int *indexOut, kept = -1;
        EXPECT_EQ(removeNAN(x, y, n, &xOut, &yOut, &kept, &indexOut), indexOut);
        const std::vector<int> want = n == 5 ? std::vector{0, 3} : std::vector<int>(n / 2, 0);
        EXPECT_EQ(std::vector<int>(indexOut, indexOut + kept), want) << n;
        for (int i = 0; i < kept; ++i) {
            EXPECT_EQ(xOut[i], x[want[i]]) << n;
            EXPECT_EQ(yOut[i], y[want[i]]) << n;
        }
        std::free(xOut);
        std::free(yOut);
        std::free(indexOut);
    }
}
