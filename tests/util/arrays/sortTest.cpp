#include "util/arrays/sort.h"

#include "tests/util/files/expectFatal.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <pthread.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace plw;

// Keys of several kinds: few distinct ones, many, all magnitudes and both signs, close together;
// with zeros of both signs, infinities and NaNs of different payloads among them.
static std::vector<double> randomKeys(std::mt19937_64 &random, int n) {
    const double nan = std::bit_cast<double>(0x7ff8000000000123UL);
    const double special[] = {0.0, -0.0, INFINITY, -INFINITY, NAN, -NAN, nan, 5e-324, DBL_MAX};
    const auto kind = random() % 4;
    const auto specialsInTen = random() % 10;
    std::vector<double> keys(n);
    for (double &key : keys) {
        switch (kind) {
        case 0: key = static_cast<double>(random() % 7) - 3; break;
        case 1: key = static_cast<double>(random()); break;
        case 2: key = std::bit_cast<double>(random()); break;
        default: key = 1 + static_cast<double>(random() % 1000) * 0x1p-52; break;
        }
        if (random() % 10 < specialsInTen) key = special[random() % std::size(special)];
    }
    return keys;
}

// Lengths on both sides of every threshold in the sorts.
static int randomLength(std::mt19937_64 &random) {
    const int longest[] = {4, 70, 300, 2000};
    return static_cast<int>(random() % longest[random() % std::size(longest)]);
}

static std::vector<double> numbered(int n) {
    std::vector<double> numbers(n);
    std::iota(numbers.begin(), numbers.end(), 0.0);
    return numbers;
}

static bool sameBits(const std::vector<double> &a, const std::vector<double> &b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](double x, double y) {
        return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y);
    });
}

TEST(SortN, PutsGapsFirstAndKeepsTheOrderOfEqualKeys) {
    std::mt19937_64 random(1);
    for (int run = 0; run < 1000; ++run) {
        const int n = randomLength(random);
        const std::vector<double> keys = randomKeys(random, n);
        std::vector<double> wantPositions = numbered(n), wantKeys;
        std::stable_sort(wantPositions.begin(), wantPositions.end(), [&](double i, double j) {
            const double a = keys[static_cast<int>(i)], b = keys[static_cast<int>(j)];
            return std::isnan(a) ? !std::isnan(b) : a < b;
        });
        for (double i : wantPositions) wantKeys.push_back(keys[static_cast<int>(i)]);

        std::vector<double> key = keys, first = numbered(n), second = keys;
        double *others[] = {first.data(), second.data(), nullptr};
        sortN(n, key.data(), others, 2);

        ASSERT_TRUE(sameBits(key, wantKeys)) << "run " << run << ", n " << n;
        ASSERT_EQ(first, wantPositions) << "run " << run << ", n " << n;
        ASSERT_TRUE(sameBits(second, wantKeys)) << "run " << run << ", n " << n;
    }
}

TEST(SortN, LeavesThePointerListOneElementBelowUnlessThereIsNothingToSort) {
    double key[] = {3, 1}, a[] = {30, 10};
    double *others[] = {a, nullptr};
    sortN(1, key, others, 1);
    EXPECT_EQ(others[0], a);
    EXPECT_EQ(others[1], nullptr);

    sortN(2, key, others, 1);
    EXPECT_EQ(others[0] + 1, a);
    EXPECT_NE(others[1], nullptr);
    EXPECT_EQ(a[0], 10);

    double *none[] = {nullptr};
    double alone[] = {2, 1};
    sortN(2, alone, none, 0);
    EXPECT_EQ(alone[0], 1);
}

TEST(SortNDeathTest, CarriesUpTo499Arrays) {
    double key[] = {2, 1};
    std::vector<std::vector<double>> arrays(500, {20, 10});
    std::vector<double *> others(501);
    std::transform(arrays.begin(), arrays.end(), others.begin(), [](auto &a) { return a.data(); });
    expectFatal([&] { sortN(2, key, others.data(), 500); },
                "ERROR in sortN: too many arrays (500)");
    sortN(2, key, others.data(), 499);
    EXPECT_EQ(arrays[498][0], 10);
}

// The quicksort that decides the order of equal keys, step by step.
static void quicksortSlowly(std::vector<double> &x, std::vector<double> &y, int left, int right) {
    if (left >= right) return;
    const auto swap = [&x, &y](int i, int j) {
        std::swap(x[i], x[j]);
        std::swap(y[i], y[j]);
    };
    swap(left, (left + right) / 2);
    int last = left;
    for (int i = left + 1; i <= right; ++i)
        if (x[left] > x[i]) swap(++last, i);
    swap(left, last);
    quicksortSlowly(x, y, left, last - 1);
    quicksortSlowly(x, y, last + 1, right);
}

TEST(Quicksort, LeavesEqualKeysAndGapsWhereTheGivenMethodDoes) {
    std::mt19937_64 random(2);
    for (int run = 0; run < 1000; ++run) {
        const int n = randomLength(random);
        const std::vector<double> keys = randomKeys(random, n);
        const int left = static_cast<int>(random() % 4);
        const int right = n - 1 - static_cast<int>(random() % 4);
        std::vector<double> wantX = keys, wantY = numbered(n);
        quicksortSlowly(wantX, wantY, left, right);

        std::vector<double> x = keys, y = numbered(n);
        quicksort(x.data(), y.data(), left, right);
        ASSERT_TRUE(sameBits(x, wantX)) << "run " << run << ", n " << n;
        ASSERT_EQ(y, wantY) << "run " << run << ", n " << n;

        // the same keys in records of three doubles, beside records of five bytes
        std::vector<double> records(3L * n);
        std::vector<char> extra(5L * n);
        for (int i = 0; i < n; ++i) {
            records[3L * i] = records[3L * i + 2] = i;
            records[3L * i + 1] = keys[i];
            std::memcpy(&extra[5L * i + 1], &i, sizeof i);
        }
        quicksortCluster(records.data(), 3, 1, extra.data(), 5, left, right);
        for (int i = 0; i < n; ++i) {
            int position = 0;
            std::memcpy(&position, &extra[5L * i + 1], sizeof position);
            const bool same = records[3L * i] == wantY[i] && records[3L * i + 2] == wantY[i];
            ASSERT_TRUE(same && position == wantY[i]) << "run " << run << ", n " << n;
        }
    }
}

TEST(QuicksortClusterDeathTest, MovesRecordsUpToTheGreatestSizesWithOrWithoutExtra) {
    std::vector<double> records(3L * 32, 0.0);
    std::vector<char> extra(3L * 256, 'x');
    for (int i = 0; i < 3; ++i) {
        records[32L * i + 31] = 3 - i;
        extra[256L * i + 255] = static_cast<char>('c' - i);
    }
    quicksortCluster(records.data(), 32, 31, extra.data(), 256, 0, 2);
    EXPECT_EQ(records[31], 1);
    EXPECT_EQ(extra[255], 'a');
    EXPECT_EQ(extra[511], 'b');

    double plain[] = {2, 1};
    quicksortCluster(plain, 1, 0, nullptr, 256, 0, 1);
    EXPECT_EQ(plain[0], 1);

    // even with nothing to sort
    const std::pair<int, int> tooBig[] = {{1, 257}, {1, 300}, {33, 8}, {1 << 29, 0}};
    for (const auto &c : tooBig)
        expectFatal([&] { quicksortCluster(nullptr, c.first, 0, nullptr, c.second, 0, -1); },
                    "ERROR in quicksortCluster: cluster size too big (" + std::to_string(c.second) +
                        ")");
}

// Runs body on a stack far too small for a recursion as deep as the arrays are long.
static void onSmallStack(void (*body)()) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 1 << 17), 0);
    const auto call = [](void *function) -> void * {
        reinterpret_cast<void (*)()>(function)();
        return nullptr;
    };
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, call, reinterpret_cast<void *>(body)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

// An array of which the middle element is the greatest (sign 1) or the least (-1) in every round.
static std::vector<double> extremeMiddles(int n, int sign) {
    std::vector<int> at(n); // where the element stands that was at i
    std::iota(at.begin(), at.end(), 0);
    std::vector<double> keys(n);
    int left = 0, right = n - 1;
    for (int round = 0; round < n; ++round) {
        std::swap(at[left], at[(left + right) / 2]);
        keys[at[left]] = sign > 0 ? n - round : round;
        if (sign > 0)
            std::swap(at[left], at[right--]);
        else
            ++left;
    }
    return keys;
}

TEST(Quicksort, NeedsLittleStackWhateverTheInput) {
    onSmallStack([] {
        constexpr int n = 4000;
        const std::vector<double> equal(n, 1.0), gaps(n, NAN);
        for (const auto &keys : {extremeMiddles(n, 1), extremeMiddles(n, -1), equal, gaps}) {
            std::vector<double> x = keys, y = numbered(n), records = keys;
            quicksort(x.data(), y.data(), 0, n - 1);
            quicksortCluster(records.data(), 1, 0, nullptr, 0, 0, n - 1);
            EXPECT_TRUE(std::isnan(keys[0]) || std::is_sorted(x.begin(), x.end()));
            EXPECT_TRUE(sameBits(records, x));
        }
    });
}

TEST(Quicksort, SortsManyTiesAboutAsFastAsDistinctKeys) {
    constexpr int n = 2'000'000; // this test would not end if it took the square of that
    std::vector<double> x(n), y(n);
    for (int i = 0; i < n; ++i) x[i] = i % 3;
    quicksort(x.data(), y.data(), 0, n - 1);
    EXPECT_TRUE(std::is_sorted(x.begin(), x.end()));
}

// What the callbacks see: the keys, and the first calls in their order.
struct Recorder {
    std::vector<int> keys;
    std::vector<int> calls;

    void record(char call, int i, int j) {
        if (calls.size() < 100) calls.insert(calls.end(), {call, i, j});
    }
};

static int compareKeys(int i, int j, void *context) {
    auto *r = static_cast<Recorder *>(context);
    r->record('c', i, j);
    return r->keys.at(i) - r->keys.at(j);
}

static void swapKeys(int i, int j, void *context) {
    auto *r = static_cast<Recorder *>(context);
    r->record('s', i, j);
    std::swap(r->keys.at(i), r->keys.at(j));
}

TEST(QsortFlex, MakesTheLaidDownCallsInTheirOrder) {
    Recorder r{{2, 3, 1, 2}, {}};
    qsortFlex(0, 3, &r, compareKeys, swapKeys);
    EXPECT_EQ(r.keys, (std::vector<int>{1, 2, 2, 3}));
    // clang-format off
    const std::vector<int> want = {
        'c', 0, 3, 'c', 2, 3, 's', 0, 2,            // 1 3 2 2: the scans cross behind the first
        'c', 1, 3, 's', 1, 3,                       // 1 2 2 3: the pivot is at 1
        'c', 2, 3, 'c', 3, 3, 's', 3, 3};           // the shorter side has one element
    // clang-format on
    EXPECT_EQ(r.calls, want);
}

TEST(QsortFlex, SortsAnyInputWithinItsRangeAndLittleStack) {
    std::mt19937 random(3);
    for (int run = 0; run < 1000; ++run) {
        const int n = 1 + static_cast<int>(random() % 100);
        const auto distinct = 1 + random() % 120;
        Recorder r;
        for (int i = 0; i < n; ++i) r.keys.push_back(static_cast<int>(random() % distinct));
        std::vector<int> want = r.keys;
        std::sort(want.begin() + n / 4, want.end());
        qsortFlex(n / 4, n - 1, &r, compareKeys, swapKeys);
        ASSERT_EQ(r.keys, want) << "run " << run;
    }
    onSmallStack([] {
        Recorder r{std::vector<int>(4000), {}};
        std::iota(r.keys.begin(), r.keys.end(), 0);
        qsortFlex(0, 3999, &r, compareKeys, swapKeys);
        EXPECT_TRUE(std::is_sorted(r.keys.begin(), r.keys.end()));
    });
}
