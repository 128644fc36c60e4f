#include "plotwerk/data/exchange.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/data/dataText.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/palette.h"
#include "plotwerk/model/structure.h"

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <utility>

namespace plotwerk {

static Source &sourceNamed(Document &document, const std::string &name) {
    const std::string &wanted = name.empty() ? "Data" : name;
    for (Source &source : document.sources)
        if (source.name == wanted) return source;
    return document.sources.emplace_back(Source{wanted, {}});
}

// Curves that come after so many others.
static void giveLooks(Table &table, int &curvesBefore) {
    for (Column &column : table.y) column.look = lookOfNewCurve(curvesBefore++);
}

static std::vector<Table> tablesOf(std::vector<DataTable> read, int curvesBefore) {
    std::vector<Table> tables;
    tables.reserve(read.size());
    for (DataTable &each : read) {
        giveLooks(each.table, curvesBefore);
        tables.push_back(std::move(each.table));
    }
    return tables;
}

// What the user has made of a curve goes over to the one that takes its position.
static void takeOver(const Column &old, Column &column) {
    column.look = old.look;
    column.marked = old.marked;
    column.fitData = old.fitData;
    column.rank = old.rank;
}

static bool countsItsRows(const Table &table) {
    const std::vector<double> &x = table.x.values;
    return x.empty() || (x.front() == 0 && x.back() == static_cast<double>(x.size() - 1));
}

static bool continues(const DataTable &more, const Table &table) {
    return more.table.y.size() == table.y.size() && (!more.countedX || countsItsRows(table));
}

// Makes room so that appending can't fail, and growth by single rows stays cheap.
static void reserveRows(Column &column, std::size_t more) {
    const std::size_t needed = column.values.size() + more;
    if (needed > column.values.capacity())
        column.values.reserve(std::max(needed, 2 * column.values.capacity()));
}

static void appendRows(const DataTable &more, Table &table) {
    const double rows = more.countedX ? rowsOf(table) : 0;
    for (const double x : more.table.x.values) table.x.values.push_back(rows + x);
    for (std::size_t i = 0; i < table.y.size(); ++i) {
        const std::vector<double> &values = more.table.y[i].values;
        table.y[i].values.insert(table.y[i].values.end(), values.begin(), values.end());
    }
}

void replaceData(Document &document, const std::string &source, std::string text,
                 char decimalSeparator) {
    std::vector<DataTable> read = readDataText(std::move(text), decimalSeparator);
    Source &into = sourceNamed(document, source);
    const std::vector<Table> &old = into.tables;
    int others = numberOfCurves(document);
    for (const Table &table : old) others -= static_cast<int>(table.y.size());
    std::vector<Table> tables = tablesOf(std::move(read), others);
    for (std::size_t t = 0; t < std::min(tables.size(), old.size()); ++t)
        for (std::size_t c = 0; c < std::min(tables[t].y.size(), old[t].y.size()); ++c)
            takeOver(old[t].y[c], tables[t].y[c]);
    replaceTables(document, into, std::move(tables));
}

void appendData(Document &document, const std::string &source, std::string text,
                char decimalSeparator) {
    std::vector<DataTable> read = readDataText(std::move(text), decimalSeparator);
    Source &into = sourceNamed(document, source);
    const int index = static_cast<int>(&into - document.sources.data());
    std::vector<Table> &tables = into.tables;

    // the text's tables stand beside the last ones of the source
    const std::size_t first = tables.size() - std::min(tables.size(), read.size());
    const std::size_t beside = tables.size() - first;
    for (std::size_t i = 0; i < beside; ++i) {
        Table &table = tables[first + i];
        if (!continues(read[i], table)) continue;
        const std::size_t more = read[i].table.x.values.size();
        if (table.x.values.size() + more > std::numeric_limits<int>::max())
            throw Refusal("a table can't have so many rows");
        reserveRows(table.x, more);
        for (Column &column : table.y) reserveRows(column, more);
    }
    giveToUser(into);
    std::vector<NewTable> added;
    int curvesBefore = numberOfCurves(document);
    for (std::size_t i = 0; i < read.size(); ++i) {
        if (i < beside && continues(read[i], tables[first + i])) {
            appendRows(read[i], tables[first + i]);
        } else {
            giveLooks(read[i].table, curvesBefore);
            added.push_back({index, static_cast<int>(tables.size()) - 1, std::move(read[i].table)});
        }
    }
    if (!added.empty()) insertTables(document, std::move(added));
}

void addData(Document &document, const std::string &source, std::string text,
             char decimalSeparator) {
    addSource(document, source,
              tablesOf(readDataText(std::move(text), decimalSeparator), numberOfCurves(document)));
}

std::string dataTextOfSelection(const Document &document, bool includeX, char decimalSeparator) {
    std::vector<std::vector<const Column *>> blocks;
    std::unordered_map<const Table *, std::size_t> blockOf;
    for (const CurveRef &curve : requireSelection(document)) {
        const Table &table = tableOf(document, curve);
        const auto [block, isNew] = blockOf.emplace(&table, blocks.size());
        if (isNew) {
            blocks.emplace_back();
            if (includeX) blocks.back().push_back(&table.x);
        }
        blocks[block->second].push_back(&columnOf(document, curve));
    }
    std::string text;
    for (const auto &columns : blocks) writeDataText(columns, decimalSeparator, text);
    return text;
}

} // namespace plotwerk
