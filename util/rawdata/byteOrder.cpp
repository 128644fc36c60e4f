#include "util/rawdata/byteOrder.h"

#include <bit>

namespace plw {

int swapInt(int v) {
    return static_cast<int>(__builtin_bswap32(static_cast<unsigned>(v)));
}

int swapShort(int v) {
    return static_cast<short>(__builtin_bswap16(static_cast<unsigned short>(v)));
}

float swapFloat(float v) {
    return std::bit_cast<float>(__builtin_bswap32(std::bit_cast<unsigned>(v)));
}

void swapBytesOfInt(int *a, int n) {
    for (int i = 0; i < n; ++i) a[i] = swapInt(a[i]);
}

void swapBytesOfShort(short *a, int n) {
    for (int i = 0; i < n; ++i) a[i] = static_cast<short>(swapShort(a[i]));
}

int amBigEndian() {
    return std::endian::native == std::endian::big;
}

} // namespace plw
