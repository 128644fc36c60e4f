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
#include "util/arrays/missing.h"
#include "util/arrays/search.h"
#include "util/arrays/sort.h"
#include "util/files/fatal.h"
#include "util/files/output.h"
#include "util/files/path.h"
#include "util/files/uniqueName.h"
#include "util/geometry/plane.h"
#include "util/number/decimal.h"
#include "util/number/format.h"
#include "util/number/power.h"
#include "util/rawdata/byteOrder.h"
#include "util/rawdata/raster.h"
#include "util/text/charclass.h"
#include "util/text/copy.h"
#include "util/text/equation.h"
#include "util/text/line.h"
#include "util/text/name.h"
#include "util/text/scanline.h"
#include "util/text/search.h"
#include "util/text/utf8.h"
#include "util/text/word.h"
#include "util/time/timer.h"

#endif
