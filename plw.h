// plw.h - the whole library: text and numbers, files, arrays, geometry, raster data, sampled
// functions.
#ifndef PLW_H
#define PLW_H

#include "fct/cFct.h"
#include "fct/fct.h"
#include "fct/fct2D.h"
#include "fct/fct_tup.h"
#include "fct/statistics.h"
#include "util/arrays/intArray.h"
#include "util/arrays/search.h"
#include "util/arrays/sort.h"
#include "util/files/fatal.h"
#include "util/files/output.h"
#include "util/files/path.h"
#include "util/files/timer.h"
#include "util/files/uniqueName.h"
#include "util/geometry/plane.h"
#include "util/rawdata/byteOrder.h"
#include "util/rawdata/raster.h"

#endif
