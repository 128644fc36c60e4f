// plw.h - the whole library: text and numbers, files, arrays, geometry, raster data, sampled
// functions.
#ifndef PLW_H
#define PLW_H

#include "util/files/fatal.h"

#endif
