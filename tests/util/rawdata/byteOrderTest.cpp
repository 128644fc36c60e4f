#include "util/rawdata/byteOrder.h"

#include <bit>
#include <cstdint>
#include <gtest/gtest.h>

using namespace plw;

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
