// fullDocument.h - a document in which no field has its default, and how to compare and save one.
#ifndef TESTS_PLOTWERK_FILES_FULLDOCUMENT_H
#define TESTS_PLOTWERK_FILES_FULLDOCUMENT_H

#include "plotwerk/model/document.h"

#include <string>
#include <vector>

// Several sources, tables and columns; texts of any UTF-8; limits of int, signed zeros, subnormal
// and infinite numbers and NaN among the values.
plotwerk::Document fullDocument();

// The smallest that has every kind of record.
plotwerk::Document smallDocument();

// One line per saved field, "KEY VALUE", numbers by their bits ("nan" for every NaN).
std::vector<std::string> linesOf(plotwerk::Document document);

std::string saved(const plotwerk::Document &document, bool binary);

#endif
