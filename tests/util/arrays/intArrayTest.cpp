#include "util/arrays/intArray.h"

#include "util/files/storage.h"

#include "tests/support/expect.h"

using namespace plw;

TEST(IntArray, GrowsByHalfOfWhatItNeeds) {
    const int values[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (const auto &[capacity, first, sizeThen] : {std::tuple{0, 1, 1}, {-5, 10, 16}}) {
        IntArray *a = newIntArray(capacity);
        EXPECT_EQ(a->size, 1);
        appendManyIntArray(a, values, first);
        EXPECT_EQ(a->size, sizeThen);
        appendManyIntArray(a, values, 0);
        appendManyIntArray(a, values, -3);
        appendManyIntArray(a, values, sizeThen - first);
        EXPECT_EQ(a->size, sizeThen) << "a full array grows when the next one comes";
        appendIntArray(a, 8);
        EXPECT_EQ(a->size, sizeThen == 1 ? 25 : 48);
        EXPECT_EQ(val(a, sizeThen), 8);
        for (int i = 0; i < sizeThen; ++i) EXPECT_EQ(val(a, i), i % 10);
        clearIntArray(a);
        EXPECT_EQ(a->n, 0);
        freeIntArray(a);
    }
}

TEST(IntArrayDeathTest, PrintsOneElementALineAndRefusesAnIndexOutside) {
    const std::string path = testing::TempDir() + "intArrayTest.txt";
    const int values[] = {-1, 0, 2147483647};
    IntArray *a = newIntArray(4);
    appendManyIntArray(a, values, 3);
    printIntArray(a, path.c_str());
    EXPECT_EQ(textOf(path), "-1\n0\n2147483647\n");
    std::remove(path.c_str());
    expectFatal([&] { val(a, 3); }, "ERROR in val: index out of range (3)");
    expectFatal([&] { val(a, -1); }, "ERROR in val: index out of range (-1)");
    expectFatal([&] { appendManyIntArray(a, nullptr, INT_MAX); },
                "ERROR: more elements than an int counts (3)");
    freeIntArray(a);
}

TEST(StorageDeathTest, TellsThatMemoryIsLacking) {
    for (const std::size_t count : {PTRDIFF_MAX / sizeof(double) + 1, SIZE_MAX})
        expectFatal([=] { allocate<double>(count); },
                    "ERROR: out of memory, kilobytes needed (2147483647)");
}
