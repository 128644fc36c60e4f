// columnNames.h - the names of columns, from the lines above their first row.
#ifndef PLOTWERK_DATA_COLUMNNAMES_H
#define PLOTWERK_DATA_COLUMNNAMES_H

#include "plotwerk/data/fields.h"
#include "plotwerk/data/head.h"

namespace plotwerk {

// The names that the lines of the head before layout.firstRow give the columns, with the units that
// stand below them: from the last line that names any, and of comments only from one with as many
// names as there are columns. None when there is no such line; otherwise there may be more or fewer
// than columns.
Names columnNames(const std::vector<HeadLine> &head, const TableLayout &layout, Commas commas);

} // namespace plotwerk

#endif
