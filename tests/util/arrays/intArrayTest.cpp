#include "util/arrays/intArray.h"

#include "util/arrays/storage.h"

#include "tests/support/expect.h"

using namespace plw;

TEST(IntArray, GrowsByHalfOfWhatItNeeds) {
    IntArray *single = newIntArray(0);
    EXPECT_EQ(single->size, 1);
    appendIntArray(single, 7);
    EXPECT_EQ(single->size, 1) << "a full array grows when the next one comes";
    appendIntArray(single, 8);
    EXPECT_EQ(single->size, 25);
    EXPECT_EQ(val(single, 1), 8);
    freeIntArray(single);

    const int ten[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    IntArray *many = newIntArray(-5);
    appendManyIntArray(many, ten, 10);
    EXPECT_EQ(many->size, 16);
    appendManyIntArray(many, ten, 0);
    appendManyIntArray(many, ten, -3);
    appendManyIntArray(many, ten, 6);
    EXPECT_EQ(many->size, 16) << "they just fit";
    EXPECT_EQ(many->n, 16);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(val(many, i), i % 10);

    clearIntArray(many);
    EXPECT_EQ(many->n, 0);
    EXPECT_EQ(many->size, 16);
    freeIntArray(many);
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
    for (const std::size_t count : {PTRDIFF_MAX / sizeof(double), SIZE_MAX / 2})
        expectFatal([=] { allocate<double>(count); },
                    "ERROR: out of memory, kilobytes needed (2147483647)");
}
