// byteOrder.h - bytes of numbers in reverse order, for binary data of the other kind of machine.
#ifndef PLW_UTIL_RAWDATA_BYTEORDER_H
#define PLW_UTIL_RAWDATA_BYTEORDER_H

namespace plw {

// v with its four bytes reversed: 0x01020304 -> 0x04030201.
int swapInt(int v);

// The two low bytes of v exchanged, as a signed 16-bit value: 0x1280 -> -0x7fee (0x8012).
int swapShort(int v);

// v with its four bytes reversed.
float swapFloat(float v);

// Reverses the bytes of each of a[0..n-1] in place; nothing for n <= 0.
void swapBytesOfInt(int *a, int n);
void swapBytesOfShort(short *a, int n);

// 1 on a machine that stores the highest byte first, else 0.
int amBigEndian();

} // namespace plw

#endif
