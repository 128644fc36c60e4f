// exchange.h - data text into and out of a document.
#ifndef PLOTWERK_DATA_EXCHANGE_H
#define PLOTWERK_DATA_EXCHANGE_H

#include "plotwerk/model/document.h"

#include <limits>
#include <string>
#include <vector>

namespace plotwerk {

// Reads data text into the source of that name (an empty name is "Data"; of several the first). A
// missing source is added. A curve that is new gets a colour that the last ones don't have. Refused
// as readDataText refuses, which tells about the decimal separator as well.
//
// replaceData exchanges the source's tables for those of the text. A column that comes to the
// position of an old one keeps that one's look, mark, fit data mark and rank in the selection.
//
// appendData lets the text's tables, in order, continue the source's last tables, as many as the
// text has: where both have as many columns the rows go below, and the names stay; numbers without
// x continue a table whose x counts its rows (0, 1, 2, ...). Any other table of the text is added
// to the source.
void replaceData(Document &document, const std::string &source, std::string text,
                 char decimalSeparator);
void appendData(Document &document, const std::string &source, std::string text,
                char decimalSeparator);

// Reads data text into a new last source of that name: see addSource.
void addData(Document &document, const std::string &name, std::string text, char decimalSeparator);

// As addData, of the bytes of a file: see readDataFile.
void addDataFile(Document &document, const std::string &name, std::string bytes,
                 char decimalSeparator);

// The selected curves as data text: one block for each of their tables, each with its columns in
// the order of the selection, led by x if so asked. Refused without a selection, and where the text
// would become longer than `longest` bytes.
std::string dataTextOfSelection(const Document &document, bool includeX, char decimalSeparator,
                                double longest = std::numeric_limits<double>::infinity());

} // namespace plotwerk

#endif
