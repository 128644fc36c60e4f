#include "util/rawdata/raster.h"

#include "util/arrays/storage.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace plw {

// Rotates len bytes by shift <= len towards the end, with room for shift bytes in spare.
static void roll(char *buf, std::size_t len, std::size_t shift, char *spare) {
    if (shift == 0) return;
    std::memcpy(spare, buf + (len - shift), shift);
    std::memmove(buf + shift, buf, len - shift);
    std::memcpy(buf, spare, shift);
}

[[noreturn]] static void exitBadShift(const char *routine) {
    std::fprintf(stderr, "ERROR in %s\n", routine);
    std::exit(1);
}

void rollBytes(void *buf, int len, int shift) {
    if (shift < 0 || shift > len) exitBadShift("rollBytes");

    char *spare = allocate<char>(shift);
    roll(static_cast<char *>(buf), len, shift, spare);
    std::free(spare);
}

void roll2D_Data(void *data, int width, int height, int elemSize, int shiftX, int shiftY) {
    if (shiftX < 0 || shiftX > width || shiftY < 0 || shiftY > height) exitBadShift("roll2D_Data");

    auto *raster = static_cast<char *>(data);
    const std::size_t rowSize = static_cast<std::size_t>(width) * elemSize;

    if (shiftX > 0) {
        const std::size_t shift = static_cast<std::size_t>(shiftX) * elemSize;
        char *spare = allocate<char>(shift);
        for (int r = 0; r < height; ++r) roll(raster + r * rowSize, rowSize, shift, spare);
        std::free(spare);
    }
    if (shiftY > 0) {
        const std::size_t shift = shiftY * rowSize;
        char *spare = allocate<char>(shift);
        roll(raster, height * rowSize, shift, spare);
        std::free(spare);
    }
}

// The remainder in 0 .. size-1.
static int wrapped(long position, int size) {
    const long rest = position % size;
    return static_cast<int>(rest < 0 ? rest + size : rest);
}

template<class T>
static void map2D(const T *src, int srcWidth, int srcHeight, T *dst, int dstWidth, int dstHeight,
                  int startX, int startY, int xPerColumn, int yPerColumn, int xPerRow,
                  int yPerRow) {
    if (dstWidth < 1 || dstHeight < 1) return;

    const int dx = wrapped(xPerColumn, srcWidth);
    const int dy = wrapped(yPerColumn, srcHeight);
    for (long r = 0; r < dstHeight; ++r) {
        int x = wrapped(startX + r * xPerRow, srcWidth);
        int y = wrapped(startY + r * yPerRow, srcHeight);
        for (int c = 0; c < dstWidth; ++c) {
            *dst++ = src[x + static_cast<long>(y) * srcWidth];
            x = x < srcWidth - dx ? x + dx : x - (srcWidth - dx);
            y = y < srcHeight - dy ? y + dy : y - (srcHeight - dy);
        }
    }
}

void map2D_Char(const unsigned char *src, int srcWidth, int srcHeight, unsigned char *dst,
                int dstWidth, int dstHeight, int startX, int startY, int xPerColumn, int yPerColumn,
                int xPerRow, int yPerRow) {
    map2D(src, srcWidth, srcHeight, dst, dstWidth, dstHeight, startX, startY, xPerColumn,
          yPerColumn, xPerRow, yPerRow);
}

void map2D_Short(const short *src, int srcWidth, int srcHeight, short *dst, int dstWidth,
                 int dstHeight, int startX, int startY, int xPerColumn, int yPerColumn, int xPerRow,
                 int yPerRow) {
    map2D(src, srcWidth, srcHeight, dst, dstWidth, dstHeight, startX, startY, xPerColumn,
          yPerColumn, xPerRow, yPerRow);
}

} // namespace plw
