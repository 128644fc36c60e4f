#include "util/rawdata/raster.h"

#include <gtest/gtest.h>
#include <numeric>
#include <string>
#include <vector>

using namespace plw;

TEST(RollBytes, RotatesTowardsTheEnd) {
    const struct {
        int shift;
        const char *want;
    } cases[] = {{0, "abcdef"}, {1, "fabcde"}, {2, "efabcd"}, {5, "bcdefa"}, {6, "abcdef"}};
    for (const auto &c : cases) {
        std::string s = "abcdef";
        rollBytes(s.data(), 6, c.shift);
        EXPECT_EQ(s, c.want) << c.shift;
    }
    rollBytes(nullptr, 0, 0);
}

TEST(Roll2D_Data, MovesEveryElementToItsPlace) {
    int small[] = {1, 2, 3, 4, 5, 6};
    roll2D_Data(small, 3, 2, sizeof(int), 1, 1);
    EXPECT_EQ(std::vector<int>(small, small + 6), (std::vector<int>{6, 4, 5, 3, 1, 2}));

    const int width = 5, height = 4;
    for (int shiftX = 0; shiftX <= width; ++shiftX) {
        for (int shiftY = 0; shiftY <= height; ++shiftY) {
            std::vector<short> data(width * height);
            std::iota(data.begin(), data.end(), static_cast<short>(0));
            roll2D_Data(data.data(), width, height, sizeof(short), shiftX, shiftY);
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x)
                    EXPECT_EQ(data[(x + shiftX) % width + (y + shiftY) % height * width],
                              x + y * width)
                        << shiftX << ", " << shiftY;
        }
    }
    roll2D_Data(nullptr, 0, 2, sizeof(int), 0, 1);
}

TEST(RollDeathTest, RefusesAShiftOutside) {
    char data[6] = {};
    for (int shift : {-1, 7})
        EXPECT_EXIT(rollBytes(data, 6, shift), testing::ExitedWithCode(1),
                    "^ERROR in rollBytes\n$");
    const struct { int x, y; } shifts[] = {{-1, 0}, {4, 0}, {0, -1}, {0, 3}};
    for (const auto &shift : shifts)
        EXPECT_EXIT(roll2D_Data(data, 3, 2, 1, shift.x, shift.y), testing::ExitedWithCode(1),
                    "^ERROR in roll2D_Data\n$")
            << shift.x << ", " << shift.y;
}

// Position modulo size, step by step.
static long cyclic(long position, long size) {
    while (position < 0) position += size;
    while (position >= size) position -= size;
    return position;
}

TEST(Map2D, ReadsThePeriodicSourceAlongTheSteps) {
    const int width = 4, height = 3;
    std::vector<unsigned char> chars(width * height);
    std::iota(chars.begin(), chars.end(), static_cast<unsigned char>(250));
    std::vector<short> shorts(width * height);
    std::iota(shorts.begin(), shorts.end(), static_cast<short>(-5));

    const struct {
        const char *what;
        int startX, startY, xPerColumn, yPerColumn, xPerRow, yPerRow;
    } cases[] = {{"one element everywhere", 3, 2, 0, 0, 0, 0},
                 {"as it is", 0, 0, 1, 0, 0, 1},
                 {"transposed", 0, 0, 0, 1, 1, 0},
                 {"mirrored, start outside", -1, 3, -1, 0, 0, -1},
                 {"slanted", 1, 1, 3, 2, -3, -2},
                 {"rows and steps beyond one period", 9, -7, 6, -5, 5, 4}};
    for (const auto &c : cases) {
        const int columns = 7, rows = 6;
        std::vector<unsigned char> charMap(columns * rows);
        std::vector<short> shortMap(columns * rows);
        map2D_Char(chars.data(), width, height, charMap.data(), columns, rows, c.startX, c.startY,
                   c.xPerColumn, c.yPerColumn, c.xPerRow, c.yPerRow);
        map2D_Short(shorts.data(), width, height, shortMap.data(), columns, rows, c.startX,
                    c.startY, c.xPerColumn, c.yPerColumn, c.xPerRow, c.yPerRow);
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                const long x = cyclic(c.startX + column * c.xPerColumn + row * c.xPerRow, width);
                const long y = cyclic(c.startY + column * c.yPerColumn + row * c.yPerRow, height);
                EXPECT_EQ(charMap[column + row * columns], chars[x + y * width]) << c.what;
                EXPECT_EQ(shortMap[column + row * columns], shorts[x + y * width]) << c.what;
            }
        }
    }
    map2D_Char(nullptr, 0, 0, nullptr, 0, 5, 0, 0, 1, 0, 0, 1);
}
