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
    const double nan = std::bit_cast<double>(std::uint64_t{0x7ff8000000000123});
    const double special[] = {0.0, -0.0, infinity, -infinity, NaN, -NaN, nan, 5e-324, DBL_MAX};
    const auto kind = random() % 8;
    const auto specialsInTen = random() % 2 * (random() % 10);
    const auto summit = static_cast<double>(random() % (n + 1)) + 0.1;
    Values keys(n);
    for (int i = 0; i < n; ++i) {
        const auto any = random();
        const double ofKinds[] = {static_cast<double>(any % 7) - 3,
                                  static_cast<double>(any),
                                  std::bit_cast<double>(any),
                                  1 + static_cast<double>(any % 1000) * 0x1p-52,
                                  1.0 * i,
                                  std::floor(0.5 * i),
                                  -std::fabs(i - summit),
                                  std::fabs(i - std::floor(summit))};
        keys[i] = random() % 10 < specialsInTen ? special[any % std::size(special)] : ofKinds[kind];
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
        double *others[] = {first.data(), second.data(), first.data(), key.data(), nullptr};
        sortN(n, key.data(), others, 4); // each array once, however often it is listed
        ASSERT_TRUE(sameBits(key, wantKeys)) << "run " << run << ", n " << n;
        ASSERT_EQ(first, wantPositions) << "run " << run << ", n " << n;
        ASSERT_TRUE(sameBits(second, wantKeys)) << "run " << run << ", n " << n;

        const bool isSorted = n > 1;
        ASSERT_EQ(others[2] + isSorted, first.data()) << n;
        ASSERT_EQ(others[4] != nullptr, isSorted) << n;
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
        Values records, wantRecords;
        std::string extra, wantExtra;
        for (int i = 0; i < n; ++i) {
            records.insert(records.end(), {1.0 * i, keys[i], 1.0 * i});
            wantRecords.insert(wantRecords.end(), {wantY[i], wantX[i], wantY[i]});
            extra += std::to_string(10000 + i);
            wantExtra += std::to_string(10000 + static_cast<int>(wantY[i]));
        }
        quicksortCluster(records.data(), 3, 1, extra.data(), 5, left, right);
        ASSERT_TRUE(sameBits(records, wantRecords)) << "run " << run << ", n " << n;
        ASSERT_EQ(extra, wantExtra) << "run " << run << ", n " << n;
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

static std::vector<int> &recordedKeys(void *context, char call, int i, int j) {
    auto *r = static_cast<Recorder *>(context);
    if (r->calls.size() < 100) r->calls += call + std::to_string(i) + std::to_string(j) + ' ';
    return r->keys;
}

static int compareKeys(int i, int j, void *context) {
    const std::vector<int> &keys = recordedKeys(context, 'c', i, j);
    return keys.at(i) - keys.at(j);
}

static void swapKeys(int i, int j, void *context) {
    std::vector<int> &keys = recordedKeys(context, 's', i, j);
    std::swap(keys.at(i), keys.at(j));
}

TEST(QsortFlex, MakesTheLaidDownCallsInTheirOrder) {
    Recorder crossing{{9, 2, 3, 1, 2}}, equal{{3, 2, 2}};
    qsortFlex(1, 4, &crossing, compareKeys, swapKeys);
    EXPECT_EQ(crossing.calls, "c14 c34 s13 "   // 1 3 2 2: the scans cross behind the first
                              "c24 s24 "       // 1 2 2 3: the pivot is at 2
                              "c34 c44 s44 "); // the shorter side has one element
    qsortFlex(0, 2, &equal, compareKeys, swapKeys);
    EXPECT_EQ(equal.calls, "c02 c12 s01 " // 2 3 2: a key equal to the pivot is swapped, too
                           "c12 s12 ");   // 2 2 3
}

static void *sortWhatIsHard(void *) {
    constexpr int many = 1'000'000; // this would not end if it took the square of that
    constexpr int n = 4000;         // and here ties make the quicksort recurse
    std::vector<Values> inputs = {Values(many), Values(many), Values(many),
                                  Values(n),    Values(n),    Values(n, NaN)};
    for (int i = 0; i < many; ++i) {
        inputs[0][i] = i % 3;
        inputs[1][i] = std::fabs(i - many / 2.1);
        inputs[2][i] = -inputs[1][i];
    }
    for (int i = 0; i < n; ++i) inputs[3][i] = -std::fabs(i - n / 2);
    inputs[4][0] = 1;
    for (const Values &keys : inputs) {
        const int right = static_cast<int>(keys.size()) - 1;
        Values x = keys, y = keys, records = keys;
        quicksort(x.data(), y.data(), 0, right);
        quicksortCluster(records.data(), 1, 0, nullptr, 0, 0, right);
        EXPECT_TRUE(std::isnan(keys[0]) || std::is_sorted(x.begin(), x.end()));
        EXPECT_TRUE(sameBits(records, x));
    }
    Recorder ascending{std::vector<int>(n)};
    std::iota(ascending.keys.begin(), ascending.keys.end(), 0);
    qsortFlex(0, n - 1, &ascending, compareKeys, swapKeys);
    return nullptr;
}

TEST(Sorts, NeedLittleStackAndTimeWhateverTheInput) {
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 1 << 17), 0);
    ASSERT_EQ(pthread_create(&thread, &attributes, sortWhatIsHard, nullptr), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}
