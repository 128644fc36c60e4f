// selection.h - selecting curves by name, pattern, position and index; marks; the fit data; counts.
//
// Tables and columns count from 1 here, as messages number them, curves from 0. -1 stands for any
// table, or for no limit on that side of a range, an empty name or pattern for any name. Patterns
// are RE2's regular expressions and match whole names in UTF-8. Refused: one that RE2 can't read
// (it has neither lookahead nor back references), that takes too much memory, that is longer than
// 1000 bytes, or that could take too long over the names that there are. No pattern matches a name
// longer than that.
//
// The curves that are found are selected in the document's order. Without append they replace the
// selection, with append they follow it, and what is selected already keeps its rank. Finding none
// is no error: without append nothing is selected then; but a number of a table that no source has
// is refused. Each selecting function returns how many curves it has found.
#ifndef PLOTWERK_MODEL_SELECTION_H
#define PLOTWERK_MODEL_SELECTION_H

#include "plotwerk/model/curves.h"

#include <optional>
#include <string>

namespace plotwerk {

struct IndexRange {
    int first = -1;
    int last = -1;
};

int selectByName(Document &document, const std::string &source, int table,
                 const std::string &column, bool append);

int selectByPattern(Document &document, const std::string &source, int table,
                    const std::string &column, bool append);

// Refused when a limit is less than 1 (and not -1), when the first is above the last, or when a
// limit is above the number of sources, of tables in the longest of these sources, or of y columns
// in the widest of these tables.
int selectByPosition(Document &document, IndexRange sources, IndexRange tables, IndexRange columns,
                     bool append);

// Refused when a limit is no curve's index (and not -1) or when the first is above the last.
int selectByIndex(Document &document, IndexRange curves, bool append);

// Index of the first curve that matches; -1 for none, also for a table that isn't there.
int indexOfCurveNamed(const Document &document, const std::string &source, int table,
                      const std::string &column);
int indexOfCurveMatching(const Document &document, const std::string &source, int table,
                         const std::string &column);

// -1 without a selection.
int indexOfSelectedCurve(const Document &document);

// Marks the selected curves and no others, and starts the walk of marks over. Returns how many.
int markSelection(Document &document);

// The next marked curve in the document's order; nothing after the last, and then the first again.
std::optional<CurveRef> nextMarkedCurve(Document &document);

// The first selected curve becomes the document's only fit data. Refused without a selection.
void markFitData(Document &document);

// -1 without fit data.
int indexOfFitCurve(const Document &document);

struct Inventory {
    int sources = 0;
    int tables = 0;
    int columns = 0; // x columns are not counted
};

// Counts in the whole document, or just in the table or the source of the first selected curve; a
// restriction without a selection is refused. The table wins over the source.
Inventory inventoryOf(const Document &document, bool justInTable, bool justInSource);

} // namespace plotwerk

#endif
