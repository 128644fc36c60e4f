// structure.h - how tables and curves come into a document and go.
//
// What follows the numbering of the curves is looked after here: each of these functions
// starts the walk of marks over unless it says something else. Where memory runs out they throw
// std::bad_alloc, and the document is as it was; what is to be added must have found room before
// (requireRoom).
#ifndef PLOTWERK_MODEL_STRUCTURE_H
#define PLOTWERK_MODEL_STRUCTURE_H

#include "plotwerk/model/document.h"

#include <functional>
#include <string>
#include <vector>

namespace plotwerk {

void restartMarkWalk(Document &document);

// About the bytes of memory that it takes.
double bytesOf(const Column &column);
double bytesOf(const Table &table);
double bytesOf(const std::vector<Table> &tables);
double bytesOf(const Document &document);

// Adds a last source of that name, made free with freeName, with these tables. The curves that are
// there keep their numbers, and the walk of marks goes on.
void addSource(Document &document, const std::string &name, std::vector<Table> tables);

// No fit replaces curves of the source from now on.
void giveToUser(Source &source);

struct NewTable {
    int source;
    int after; // the table that it follows; -1 for none
    Table table;
};

// Numbers of sources and tables are those before. Tables behind the same one keep their order.
void insertTables(Document &document, std::vector<NewTable> tables);

void replaceTables(Document &document, Source &source, std::vector<Table> tables);

// In the place of one of the document's tables. The walk of marks goes on where it was.
void replaceTable(Document &document, int source, int place, Table table);

struct NewColumn {
    Table *table; // of the document; this is its last column then
    Column column;
};

void addColumns(Document &document, std::vector<NewColumn> columns);

// Erases those y columns of each table that `goes` says yes for, the tables without y columns then,
// and the sources without tables.
void eraseColumns(Document &document, const std::function<std::vector<bool>(const Table &)> &goes);

} // namespace plotwerk

#endif
