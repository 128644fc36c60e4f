#include "util/arrays/search.h"

#include "tests/support/expect.h"

#include <climits>
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

TEST(Search, FindsTheLastEntryNotAboveAndTheFirstNotBelow) {
    const Values a = {1, 2, 3, 4}, gaps = {NaN, 1, NaN, NaN, 3, NaN}, onlyLast = {NaN, NaN, 5};
    const struct {
        double x;
        Values a;
        int hint, le, ge;
    } cases[] = {{0.5, a, -1, 0, 0},  {2.5, a, -1, 1, 2},      {3, a, -1, 2, 2},
                 {9, a, -1, 3, 3},    {infinity, a, -1, 3, 3}, {NaN, a, 2, 0, 3},
                 {3.5, a, 1, 2, 3},   {1.5, a, 2, 0, 1},       {2.5, a, 3, 1, 2},
                 {2, gaps, -1, 1, 4}, {2, gaps, 2, 1, 4},      {9, gaps, -1, 4, 4},
                 {0, gaps, -1, 0, 1}, {NaN, gaps, -1, 0, 4},   {7, onlyLast, -1, 0, 0},
                 {7, {1}, 0, 0, 0},   {7, {}, 0, 0, -1}};
    for (const auto &c : cases) {
        const int n = static_cast<int>(c.a.size());
        const std::string input =
            testing::PrintToString(c.x) + " in " + testing::PrintToString(c.a);
        EXPECT_EQ(search_le(c.x, c.a.data(), n, c.hint), c.le) << input << " from " << c.hint;
        EXPECT_EQ(search_ge(c.x, c.a.data(), n), c.ge) << input;
    }
}

TEST(Search, FollowsTheLaidDownBisectionWhateverTheHint) {
    const int oddHints[] = {-1, INT_MIN, INT_MAX, INT_MAX - 1};
    std::mt19937 random(2);
    for (int run = 0; run < 2000; ++run) {
        const int n = static_cast<int>(random() % 60);
        const Values a = ascendingWithGaps(random, n, run % 4 > 0);
        for (int k = 0; k < 60; ++k) {
            const double x = k == 0 ? NaN : static_cast<double>(random() % (4 * n + 4)) / 2 - 1;
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
    const double equal[] = {1, 1, 2}, falling[] = {2, 1}, gap[] = {2, NaN, 1};
    EXPECT_EQ(isArrIncreasing(equal, 3), 1);
    EXPECT_EQ(isArrIncreasing(falling, 2), 0);
    EXPECT_EQ(isArrIncreasing(gap, 3), 1);
    EXPECT_EQ(isArrIncreasing(falling, 1), 1);
    EXPECT_EQ(isArrIncreasing(nullptr, 0), 1);
}
