// raster.h - cyclic rotation of buffers and rasters, and resampling of periodic rasters.
//
// A raster is stored row by row: element (x, y) is at x + y * width.
#ifndef PLW_UTIL_RAWDATA_RASTER_H
#define PLW_UTIL_RAWDATA_RASTER_H

namespace plw {

// Rotates the len bytes of buf by shift towards its end: what leaves the end comes in at the front.
//   "abcdef", shift 2 -> "efabcd"   shift 0 and shift 6: unchanged
// Ends the process unless 0 <= shift <= len: "ERROR in rollBytes".
void rollBytes(void *buf, int len, int shift);

// Rotates a raster of height rows of width elements of elemSize bytes by shiftX elements to the
// right and shiftY rows downwards. elemSize is positive.
//   {1,2,3 / 4,5,6}, shiftX 1, shiftY 1 -> {6,4,5 / 3,1,2}
// Ends the process unless 0 <= shiftX <= width and 0 <= shiftY <= height: "ERROR in roll2D_Data".
void roll2D_Data(void *data, int width, int height, int elemSize, int shiftX, int shiftY);

// Fills the raster dst from src, repeated without end in both directions: element (c, r) of dst is
// the one of src at x = startX + c * xPerColumn + r * xPerRow, y = startY + c * yPerColumn +
// r * yPerRow. Nothing happens if dst has no elements; src must have some, and none in common with
// dst.
void map2D_Char(const unsigned char *src, int srcWidth, int srcHeight, unsigned char *dst,
                int dstWidth, int dstHeight, int startX, int startY, int xPerColumn, int yPerColumn,
                int xPerRow, int yPerRow);
void map2D_Short(const short *src, int srcWidth, int srcHeight, short *dst, int dstWidth,
                 int dstHeight, int startX, int startY, int xPerColumn, int yPerColumn, int xPerRow,
                 int yPerRow);

} // namespace plw

#endif
