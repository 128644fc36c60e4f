// exchange.h - data text into and out of a document, and copies of what is plotted.
#ifndef PLOTWERK_MODEL_EXCHANGE_H
#define PLOTWERK_MODEL_EXCHANGE_H

#include "plotwerk/model/document.h"

#include <string>
#include <vector>

namespace plotwerk {

// Reads data text into the source of that name (an empty name is "Data"; of several the first). A
// missing source is added. A curve that is new gets a colour that the last ones don't have. Refused
// as readDataText refuses.
//
// replaceData exchanges the source's tables for those of the text. A column that comes to the
// position of an old one keeps that one's look, mark, fit data mark and place in the selection.
//
// appendData lets the text's tables, in order, continue the source's last tables, as many as the
// text has: where both have as many columns the rows go below, and the names stay; numbers without
// x continue a table whose x counts its rows (0, 1, 2, ...). Any other table of the text is added
// to the source.
void replaceData(Document &document, const std::string &source, std::string text);
void appendData(Document &document, const std::string &source, std::string text);

// Adds a last source of that name, made free with freeName, with these tables.
void addSource(Document &document, const std::string &name, std::vector<Table> tables);

// Reads data text into a new last source of that name, as addSource makes it.
void addData(Document &document, const std::string &name, std::string text);

// The selected curves as data text: one block for each of their tables, each with its columns in
// the order of the selection, led by x if so asked. Refused without a selection.
std::string dataTextOfSelection(const Document &document, bool includeX);

// A new document "NAME copy", never saved: the visible curves with the points inside the x range of
// their axis, everything else as it is. Columns of errors stay with them. A row stays as long as
// one of its table's visible curves needs it; the others have NaN there.
Document duplicateAsPlotted(const Document &document);

// The name itself when it isn't among the taken ones, otherwise one that uniqueName makes of it
// ("NAME 14:03:09", "NAME 14:03:09#1", ...).
std::string freeName(const std::string &name, const std::vector<std::string> &taken);

} // namespace plotwerk

#endif
