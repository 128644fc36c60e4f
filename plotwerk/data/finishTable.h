// finishTable.h - the rows of data text that have been read, made a table.
#ifndef PLOTWERK_DATA_FINISHTABLE_H
#define PLOTWERK_DATA_FINISHTABLE_H

#include "plotwerk/data/dataText.h"
#include "plotwerk/data/remarks.h"
#include "plotwerk/data/tableRows.h"

#include <optional>

namespace plotwerk {

// The table of at least one row, with its columns of words left out, its times marked and all its
// columns named; none when no column is left. Of more names than columns those beyond belong to
// none, and where blanks separate they all do. Added to `finished`; what isn't as in the text goes
// to the remarks. Refused like requireRoom, and a name that no column can have.
std::optional<DataTable> finishTable(TableRows rows, char separator, Names names,
                                     TableSizes &finished, Remarks &remarks);

} // namespace plotwerk

#endif
