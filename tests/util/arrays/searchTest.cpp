#include "util/arrays/search.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

using namespace plw;

// Ascending small integers: duplicates are frequent, and a part of the entries are gaps.
static std::vector<double> ascendingWithGaps(std::mt19937 &random, int n, bool duplicates) {
    std::vector<double> a(n);
    double v = 0;
    const auto gapsInTen = random() % 10;
    for (double &entry : a) {
        v += static_cast<double>(random() % 3) + (duplicates ? 0 : 1);
        entry = random() % 10 < gapsInTen ? NAN : v;
    }
    return a;
}

// The bisection as it is laid down, on a plain list of what is left between the ends.
static int bisectSlowly(double x, const std::vector<double> &a, int low, int high, bool upper) {
    while (high - low > 1) {
        std::vector<int> left, right;
        const int mid = (low + high) / 2;
        for (int i = mid; i > low; --i)
            if (!std::isnan(a[i])) left.push_back(i);
        for (int i = mid; i < high; ++i)
            if (!std::isnan(a[i])) right.push_back(i);
        if (left.empty() && right.empty()) break;
        const int at = !left.empty() ? left.front() : right.front();
        if (a[at] == x) return at;
        if (a[at] > x)
            high = at;
        else
            low = at;
    }
    return upper ? high : low;
}

static int slowSearchLe(double x, const std::vector<double> &a, long hint) {
    const int n = static_cast<int>(a.size());
    int low = 0, high = n - 1;
    if (hint >= 0 && n > hint + 1) {
        if (a[hint] <= x && x < a[hint + 1]) return static_cast<int>(hint);
        if (n > hint + 2 && a[hint + 1] <= x && x < a[hint + 2]) return static_cast<int>(hint + 1);
        low = a[hint] <= x ? static_cast<int>(hint) : 0;
        high = a[hint] > x ? static_cast<int>(hint) : n - 1;
    }
    if (std::isnan(x)) return 0;
    while (low < high && std::isnan(a[low])) ++low;
    if (low >= high || x < a[low]) return 0;
    if (x == a[low]) return low;
    while (std::isnan(a[high])) --high;
    if (x >= a[high]) return high;
    return bisectSlowly(x, a, low, high, false);
}

static int slowSearchGe(double x, const std::vector<double> &a) {
    const int n = static_cast<int>(a.size());
    if (n < 1) return -1;
    int low = 0, high = n - 1;
    while (low < high && std::isnan(a[low])) ++low;
    if (low == high) return 0;
    if (a[low] >= x) return low;
    while (std::isnan(a[high])) --high;
    if (x >= a[high]) return high;
    return bisectSlowly(x, a, low, high, true);
}

TEST(SearchLe, FindsTheLastEntryNotAbove) {
    const double a[] = {1, 2, 3, 4}, gaps[] = {NAN, 1, NAN, 3}, onlyLast[] = {NAN, NAN, 5};
    const struct {
        double x;
        const double *a;
        int n, hint, want;
    } cases[] = {{0.5, a, 4, -1, 0},  {2.5, a, 4, -1, 1},      {3, a, 4, -1, 2},
                 {9, a, 4, -1, 3},    {INFINITY, a, 4, -1, 3}, {NAN, a, 4, 2, 0},
                 {3.5, a, 4, 1, 2},   {1.5, a, 4, 2, 0},       {2.5, a, 4, 3, 1},
                 {2, gaps, 4, -1, 1}, {2, gaps, 4, 2, 1},      {7, onlyLast, 3, -1, 0},
                 {7, a, 1, 0, 0},     {7, nullptr, 0, 0, 0}};
    for (const auto &c : cases)
        EXPECT_EQ(search_le(c.x, c.a, c.n, c.hint), c.want)
            << c.x << " of " << c.n << " from " << c.hint;
}

TEST(SearchGe, FindsTheFirstEntryNotBelow) {
    const double a[] = {1, 2, 3, 4}, gaps[] = {NAN, 1, NAN, NAN, 3, NAN};
    const struct {
        double x;
        const double *a;
        int n, want;
    } cases[] = {{0.5, a, 4, 0},    {2.5, a, 4, 2},  {3, a, 4, 2},       {9, a, 4, 3},
                 {NAN, a, 4, 3},    {2, gaps, 6, 4}, {9, gaps, 6, 4},    {0, gaps, 6, 1},
                 {NAN, gaps, 6, 4}, {7, a, 1, 0},    {7, nullptr, 0, -1}};
    for (const auto &c : cases) EXPECT_EQ(search_ge(c.x, c.a, c.n), c.want) << c.x << " of " << c.n;
}

TEST(Search, FollowsTheLaidDownBisectionWhateverTheHint) {
    const int oddHints[] = {-1, INT_MIN, INT_MAX, INT_MAX - 1};
    std::mt19937 random(2);
    for (int run = 0; run < 2000; ++run) {
        const int n = static_cast<int>(random() % 60);
        const std::vector<double> a = ascendingWithGaps(random, n, run % 4 > 0);
        for (int k = 0; k < 60; ++k) {
            const double x = k == 0 ? NAN : static_cast<double>(random() % (4 * n + 4)) / 2 - 1;
            const int hint = k < 4 ? oddHints[k] : static_cast<int>(random() % (n + 3));
            ASSERT_EQ(search_le(x, a.data(), n, hint), slowSearchLe(x, a, hint))
                << x << " from " << hint << " in " << testing::PrintToString(a);
            ASSERT_EQ(search_ge(x, a.data(), n), slowSearchGe(x, a))
                << x << " in " << testing::PrintToString(a);
        }
    }
}

TEST(SearchForValid, GoesToTheNearestPositionWhereBothAreValid) {
    const double x[] = {0, NAN, 2, 3, NAN};
    const double y[] = {NAN, 1, 2, NAN, 4};
    EXPECT_EQ(searchLeftForValid(x, y, 4), 2);
    EXPECT_EQ(searchLeftForValid(x, y, 2), 2);
    EXPECT_EQ(searchLeftForValid(x, y, 1), -1) << "none";
    EXPECT_EQ(searchLeftForValid(x, y, -1), -1) << "starts before the array";

    EXPECT_EQ(searchRightForValid(x, y, 5, 0), 2);
    EXPECT_EQ(searchRightForValid(x, y, 5, 2), 2);
    EXPECT_EQ(searchRightForValid(x, y, 5, 3), 4) << "none";
    EXPECT_EQ(searchRightForValid(x, y, 3, 9), 2) << "starts behind the array";
    EXPECT_EQ(searchRightForValid(x, y, 5, -3), 2) << "starts before the array";
    EXPECT_EQ(searchRightForValid(nullptr, nullptr, 0, 0), -1) << "empty";
}

TEST(IsArrIncreasing, AllowsEqualNeighboursAndIgnoresGaps) {
    const double equal[] = {1, 1, 2}, falling[] = {2, 1}, gap[] = {2, NAN, 1};
    EXPECT_EQ(isArrIncreasing(equal, 3), 1);
    EXPECT_EQ(isArrIncreasing(falling, 2), 0);
    EXPECT_EQ(isArrIncreasing(gap, 3), 1);
    EXPECT_EQ(isArrIncreasing(falling, 1), 1);
    EXPECT_EQ(isArrIncreasing(nullptr, 0), 1);
}
