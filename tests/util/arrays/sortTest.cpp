#include "util/arrays/sort.h"

#include "tests/support/expect.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cstdint>
#include <numeric>
#include <pthread.h>
#include <random>
#include <utility>

using namespace plw;

// Keys of several kinds: few distinct ones, many, all magnitudes and both signs, close together,
// ascending or descending or both at once, with or without steps; with zeros of both signs,
// infinities and NaNs of different payloads among them, or none.
static Values randomKeys(std::mt19937_64 &random, int n) {
    const double nan = std::bit_cast<double>(0x7ff8000000000123UL);
    const double special[] = {0.0, -0.0, infinity, -infinity, NaN, -NaN, nan, 5e-324, DBL_MAX};
    const auto kind = random() % 8;
    const auto specialsInTen = random() % 2 * (random() % 10);
    const auto summit = static_cast<double>(random() % (n + 1)) + 0.1;
    Values keys(n);
    for (int i = 0; i < n; ++i) {
        double &key = keys[i];
        switch (kind) {
        case 0: key = static_cast<double>(random() % 7) - 3; break;
        case 1: key = static_cast<double>(random()); break;
        case 2: key = std::bit_cast<double>(random()); break;
        case 3: key = 1 + static_cast<double>(random() % 1000) * 0x1p-52; break;
        case 4: key = i; break;
        case 5: key = i / 2; break;
        case 6: key = -std::fabs(i - summit); break;
        default: key = std::fabs(i - std::floor(summit)); break;
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

static Values numbered(int n) {
    Values numbers(n);
    std::iota(numbers.begin(), numbers.end(), 0.0);
    return numbers;
}

static bool sameBits(const Values &a, const Values &b) {
    const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
    return std::ranges::equal(a, b, {}, bits, bits);
}

TEST(SortN, PutsGapsFirstKeepsEqualKeysInOrderAndLeavesThePointersOneBelow) {
    std::mt19937_64 random(1);
    for (int run = 0; run < 1000; ++run) {
        const int n = randomLength(random);
        const Values keys = randomKeys(random, n);
        Values wantPositions = numbered(n), wantKeys;
        std::stable_sort(wantPositions.begin(), wantPositions.end(), [&](double i, double j) {
            const double a = keys[static_cast<int>(i)], b = keys[static_cast<int>(j)];
            return std::isnan(a) ? !std::isnan(b) : a < b;
        });
        for (double i : wantPositions) wantKeys.push_back(keys[static_cast<int>(i)]);

        Values key = keys, first = numbered(n), second = keys;
        double *others[] = {first.data(), second.data(), nullptr};
        sortN(n, key.data(), others, 2);
        ASSERT_TRUE(sameBits(key, wantKeys)) << "run " << run << ", n " << n;
        ASSERT_EQ(first, wantPositions) << "run " << run << ", n " << n;
        ASSERT_TRUE(sameBits(second, wantKeys)) << "run " << run << ", n " << n;

        const bool isSorted = n > 1;
        ASSERT_EQ(others[0] + isSorted, first.data()) << n;
        ASSERT_EQ(others[2] != nullptr, isSorted) << n;
    }
}

TEST(SortNDeathTest, CarriesUpTo499Arrays) {
    double key[] = {2, 1};
    std::vector<Values> arrays(500, {20, 10});
    std::vector<double *> others(501);
    std::transform(arrays.begin(), arrays.end(), others.begin(), [](auto &a) { return a.data(); });
    expectFatal([&] { sortN(2, key, others.data(), 500); },
                "ERROR in sortN: too many arrays (500)");
    sortN(2, key, others.data(), 499);
    EXPECT_EQ(arrays[498][0], 10);
}

TEST(SortN, SortsAnArrayOnceHoweverOftenItIsListed) {
    double key[] = {3, 1, 2, 0}, other[] = {30, 10, 20, 0};
    double *others[] = {other, key, other, nullptr};
    sortN(4, key, others, 3);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(key[i], i);
        EXPECT_EQ(other[i], 10 * i);
    }
    EXPECT_EQ(others[2] + 1, other);
}

// The quicksort that decides the order of equal keys, step by step.
static void quicksortSlowly(Values &x, Values &y, int left, int right) {
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
    for (int run = 0; run < 600; ++run) {
        const int n = run % 50 ? randomLength(random) : 5000;
        const Values keys = randomKeys(random, n);
        const int left = static_cast<int>(random() % 4);
        const int right = n - 1 - static_cast<int>(random() % 4);
        Values wantX = keys, wantY = numbered(n);
        quicksortSlowly(wantX, wantY, left, right);

        Values x = keys, y = numbered(n);
        quicksort(x.data(), y.data(), left, right);
        ASSERT_TRUE(sameBits(x, wantX)) << "run " << run << ", n " << n;
        ASSERT_EQ(y, wantY) << "run " << run << ", n " << n;

        // the same keys in records of three doubles, beside records of five bytes
        const auto recordsOf = [&](const Values &order) {
            Values records;
            for (double i : order) records.insert(records.end(), {i, keys[static_cast<int>(i)], i});
            return records;
        };
        const auto extraOf = [](const Values &order) {
            std::string extra;
            for (double i : order) extra += std::to_string(10000 + static_cast<int>(i));
            return extra;
        };
        Values records = recordsOf(numbered(n));
        std::string extra = extraOf(numbered(n));
        quicksortCluster(records.data(), 3, 1, extra.data(), 5, left, right);
        ASSERT_TRUE(sameBits(records, recordsOf(wantY))) << "run " << run << ", n " << n;
        ASSERT_EQ(extra, extraOf(wantY)) << "run " << run << ", n " << n;
    }
}

TEST(QuicksortClusterDeathTest, MovesRecordsUpToTheGreatestSizesWithOrWithoutExtra) {
    Values records(2L * 32);
    std::vector<char> extra(2L * 256);
    records[31] = 2;
    records[63] = 1;
    extra[511] = 'a';
    quicksortCluster(records.data(), 32, 31, extra.data(), 256, 0, 1);
    EXPECT_EQ(records[31], 1);
    EXPECT_EQ(extra[255], 'a');

    double plain[] = {2, 1};
    quicksortCluster(plain, 1, 0, nullptr, 256, 0, 1);
    EXPECT_EQ(plain[0], 1);

    // even with nothing to sort
    for (const auto &[recordLen, extraSize] : {std::pair{1, 257}, {33, 8}, {1 << 29, 0}})
        expectFatal(
            [&, length = recordLen, size = extraSize] {
                quicksortCluster(nullptr, length, 0, nullptr, size, 0, -1);
            },
            "ERROR in quicksortCluster: cluster size too big (" + std::to_string(extraSize) + ")");
}

// What the callbacks see: the keys, and the first calls in their order.
struct Recorder {
    std::vector<int> keys;
    std::string calls = "";
};

static void record(Recorder *r, char call, int i, int j) {
    if (r->calls.size() > 100) return;
    r->calls += call + std::to_string(i) + std::to_string(j) + ' ';
}

static int compareKeys(int i, int j, void *context) {
    auto *r = static_cast<Recorder *>(context);
    record(r, 'c', i, j);
    return r->keys.at(i) - r->keys.at(j);
}

static void swapKeys(int i, int j, void *context) {
    auto *r = static_cast<Recorder *>(context);
    record(r, 's', i, j);
    std::swap(r->keys.at(i), r->keys.at(j));
}

TEST(QsortFlex, MakesTheLaidDownCallsInTheirOrder) {
    Recorder crossing{{2, 3, 1, 2}}, equal{{3, 2, 2}};
    qsortFlex(0, 3, &crossing, compareKeys, swapKeys);
    EXPECT_EQ(crossing.calls, "c03 c23 s02 "   // 1 3 2 2: the scans cross behind the first
                              "c13 s13 "       // 1 2 2 3: the pivot is at 1
                              "c23 c33 s33 "); // the shorter side has one element
    qsortFlex(0, 2, &equal, compareKeys, swapKeys);
    EXPECT_EQ(equal.calls, "c02 c12 s01 " // 2 3 2: a key equal to the pivot is swapped, too
                           "c12 s12 ");   // 2 2 3
}

TEST(QsortFlex, SortsAnyInputWithinItsRange) {
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
}

// An array of which the middle element is the greatest (sign 1) or the least (-1) in every round.
static Values extremeMiddles(int n, int sign) {
    std::vector<int> at(n); // where the element stands that was at i
    std::iota(at.begin(), at.end(), 0);
    Values keys(n);
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

static void *sortWhatRecursesDeepest(void *) {
    constexpr int n = 4000;
    Values greatest = extremeMiddles(n, 1), least = extremeMiddles(n, -1);
    greatest[0] = greatest[1]; // distinct keys would not recurse at all
    least[0] = least[1];
    for (const Values &keys : {greatest, least, Values(n, NaN)}) {
        Values x = keys, y = numbered(n), records = keys;
        quicksort(x.data(), y.data(), 0, n - 1);
        quicksortCluster(records.data(), 1, 0, nullptr, 0, 0, n - 1);
        EXPECT_TRUE(std::isnan(keys[0]) || std::is_sorted(x.begin(), x.end()));
        EXPECT_TRUE(sameBits(records, x));
    }
    Recorder ascending{std::vector<int>(n)};
    std::iota(ascending.keys.begin(), ascending.keys.end(), 0);
    qsortFlex(0, n - 1, &ascending, compareKeys, swapKeys);
    return nullptr;
}

TEST(Sorts, NeedLittleStackWhateverTheInput) {
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 1 << 17), 0);
    ASSERT_EQ(pthread_create(&thread, &attributes, sortWhatRecursesDeepest, nullptr), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST(Quicksort, SortsManyTiesAndWhatHasItsExtremesInTheMiddle) {
    constexpr int n = 1'000'000; // this test would not end if it took the square of that
    for (int kind = 0; kind < 3; ++kind) {
        Values x(n), y(n);
        for (int i = 0; i < n; ++i)
            x[i] = kind == 0 ? i % 3 : (kind - 1.5) * std::fabs(i - n / 2.1);
        Values records = x;
        quicksort(x.data(), y.data(), 0, n - 1);
        quicksortCluster(records.data(), 1, 0, y.data(), sizeof(double), 0, n - 1);
        EXPECT_TRUE(std::is_sorted(x.begin(), x.end())) << kind;
        EXPECT_EQ(records, x) << kind;
    }
}
