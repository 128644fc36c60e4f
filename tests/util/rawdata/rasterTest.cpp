#include "util/rawdata/raster.h"

#include "tests/support/expect.h"
#include "util/rawdata/byteOrder.h"

#include <algorithm>
#include <array>
#include <numeric>

using namespace plw;

TEST(RollBytes, RotatesTowardsTheEnd) {
    for (int shift = 0; shift <= 6; ++shift) {
        std::string s = "abcdef", want = s;
        std::rotate(want.begin(), want.end() - shift, want.end());
        rollBytes(s.data(), 6, shift);
        EXPECT_EQ(s, want) << shift;
    }
    rollBytes(nullptr, 0, 0);
}

TEST(Roll2D_Data, MovesEveryElementToItsPlace) {
    const int width = 5, height = 4, size = width * height;
    for (int shift = 0; shift < (width + 1) * (height + 1); ++shift) {
        const int shiftX = shift % (width + 1), shiftY = shift / (width + 1);
        std::vector<short> data(size);
        std::iota(data.begin(), data.end(), static_cast<short>(0));
        roll2D_Data(data.data(), width, height, sizeof(short), shiftX, shiftY);
        for (int i = 0; i < size; ++i) {
            const int x = (i % width + shiftX) % width, y = (i / width + shiftY) % height;
            EXPECT_EQ(data[x + y * width], i) << shiftX << ", " << shiftY;
        }
    }
    roll2D_Data(nullptr, 0, 2, sizeof(int), 0, 1);
}

TEST(RollDeathTest, RefusesAShiftOutside) {
    char data[6] = {};
    for (int shift : {-1, 7}) expectFatal([&] { rollBytes(data, 6, shift); }, "ERROR in rollBytes");
    for (const auto &[x, y] : {std::pair{-1, 0}, {4, 0}, {0, -1}, {0, 3}})
        expectFatal([&, x = x, y = y] { roll2D_Data(data, 3, 2, 1, x, y); },
                    "ERROR in roll2D_Data");
}

TEST(Map2D, ReadsThePeriodicSourceAlongTheSteps) {
    const int width = 4, height = 3, columns = 7, rows = 6;
    unsigned char chars[width * height], charMap[columns * rows];
    short shorts[width * height], shortMap[columns * rows];
    std::iota(chars, std::end(chars), static_cast<unsigned char>(250));
    std::iota(shorts, std::end(shorts), static_cast<short>(-5));
    // start, steps per column and per row: one element everywhere, transposed, mirrored, slanted,
    // beyond one period
    for (const auto &[x0, y0, xc, yc, xr, yr] : {std::array{3, 2, 0, 0, 0, 0},
                                                 {0, 0, 0, 1, 1, 0},
                                                 {-1, 3, -1, 0, 0, -1},
                                                 {1, 1, 3, 2, -3, -2},
                                                 {9, -7, 6, -5, 5, 4}}) {
        map2D_Char(chars, width, height, charMap, columns, rows, x0, y0, xc, yc, xr, yr);
        map2D_Short(shorts, width, height, shortMap, columns, rows, x0, y0, xc, yc, xr, yr);
        for (int i = 0; i < columns * rows; ++i) {
            const int column = i % columns, row = i / columns, periods = 100 * width * height;
            const int x = (periods + x0 + column * xc + row * xr) % width;
            const int y = (periods + y0 + column * yc + row * yr) % height;
            EXPECT_EQ(charMap[i], chars[x + y * width]) << x0 << " at " << i;
            EXPECT_EQ(shortMap[i], shorts[x + y * width]) << x0 << " at " << i;
        }
    }
    map2D_Char(nullptr, 0, 0, nullptr, 0, 5, 0, 0, 1, 0, 0, 1);
}

TEST(ByteOrder, ReversesTheBytesOfValuesAndOfEachElement) {
    EXPECT_EQ(swapInt(0x000000ff), -0x01000000);
    EXPECT_EQ(swapShort(0x7fff0102), 0x0201) << "the high bytes do not matter";
    EXPECT_EQ(std::bit_cast<std::uint32_t>(swapFloat(1.0f)), 0x0000803fu);

    int ints[] = {0x01020304, -1, 5};
    short shorts[] = {0x0102, 0x1280, 5};
    swapBytesOfInt(ints, 2);
    swapBytesOfShort(shorts, 2);
    EXPECT_EQ(ints[0], 0x04030201);
    EXPECT_EQ(ints[2], 5) << "beyond n";
    EXPECT_EQ(shorts[1], static_cast<short>(0x8012));
    EXPECT_EQ(shorts[2], 5) << "beyond n";
    swapBytesOfInt(nullptr, 0);
    swapBytesOfShort(nullptr, -1);

    EXPECT_EQ(amBigEndian(), std::endian::native == std::endian::big ? 1 : 0);
}
