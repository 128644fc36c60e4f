#include "plotwerk/data/exchange.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/data/dataText.h"
#include "plotwerk/data/dataTextWriter.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/names.h"
#include "plotwerk/model/palette.h"
#include "plotwerk/model/structure.h"

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <utility>

namespace plotwerk {

static std::string nameOr(const std::string &name, const char *otherwise) {
    return name.empty() ? otherwise : name;
}

// Null when there is none.
static Source *sourceNamed(Document &document, const std::string &name) {
    requireName(name);
    const auto found = std::ranges::find(document.sources, nameOr(name, "Data"), &Source::name);
    return found == document.sources.end() ? nullptr : &*found;
}

// The looks of new curves, the first of which has curvesBefore others before it.
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

// The capacity for that many more rows; it grows by a quarter at least, so that single rows stay
// cheap.
static std::size_t capacityWith(const Column &column, std::size_t more) {
    const std::size_t needed = column.values.size() + more;
    const std::size_t capacity = column.values.capacity();
    return needed <= capacity ? capacity : std::max(needed, capacity + capacity / 4);
}

// Makes room so that appending can't fail.
static void reserveRows(Table &table, std::size_t more) {
    if (table.x.values.size() + more > std::numeric_limits<int>::max())
        throw Refusal("a table can't have that many rows");
    const auto columns = static_cast<double>(table.y.size() + 1);
    requireMemory(columns * sizeof(double) * static_cast<double>(capacityWith(table.x, more)));
    table.x.values.reserve(capacityWith(table.x, more));
    for (Column &column : table.y) column.values.reserve(capacityWith(column, more));
}

static void appendRows(const DataTable &more, Table &table) {
    const double rows = more.countedX ? rowsOf(table) : 0;
    for (const double x : more.table.x.values) table.x.values.push_back(rows + x);
    for (std::size_t i = 0; i < table.y.size(); ++i) {
        const std::vector<double> &values = more.table.y[i].values;
        table.y[i].values.insert(table.y[i].values.end(), values.begin(), values.end());
    }
}

static void addTables(Document &document, const std::string &source, std::vector<DataTable> read) {
    std::vector<Table> tables = tablesOf(std::move(read), numberOfCurves(document));
    requireRoom(bytesOf(tables));
    addSource(document, source, std::move(tables));
}

void addData(Document &document, const std::string &source, std::string text,
             char decimalSeparator) {
    addTables(document, source, readDataText(std::move(text), decimalSeparator));
}

void addDataFile(Document &document, const std::string &source, std::string bytes,
                 char decimalSeparator) {
    addTables(document, source, readDataFile(std::move(bytes), decimalSeparator));
}

void replaceData(Document &document, const std::string &source, std::string text,
                 char decimalSeparator) {
    Source *into = sourceNamed(document, source);
    if (into == nullptr) {
        addData(document, nameOr(source, "Data"), std::move(text), decimalSeparator);
        return restartMarkWalk(document);
    }

    std::vector<DataTable> read = readDataText(std::move(text), decimalSeparator);
    const std::vector<Table> &old = into->tables;
    int others = numberOfCurves(document);
    for (const Table &table : old) others -= static_cast<int>(table.y.size());
    std::vector<Table> tables = tablesOf(std::move(read), others);
    requireRoom(bytesOf(tables) - bytesOf(old));
    for (std::size_t t = 0; t < std::min(tables.size(), old.size()); ++t)
        for (std::size_t c = 0; c < std::min(tables[t].y.size(), old[t].y.size()); ++c)
            takeOver(old[t].y[c], tables[t].y[c]);
    replaceTables(document, *into, std::move(tables));
}

void appendData(Document &document, const std::string &source, std::string text,
                char decimalSeparator) {
    Source *into = sourceNamed(document, source);
    if (into == nullptr) {
        addData(document, nameOr(source, "Data"), std::move(text), decimalSeparator);
        return restartMarkWalk(document);
    }

    std::vector<DataTable> read = readDataText(std::move(text), decimalSeparator);
    double room = 0;
    for (const DataTable &each : read) room += bytesOf(each.table);
    requireRoom(room);

    // the text's tables stand beside the last ones of the source
    const int index = static_cast<int>(into - document.sources.data());
    std::vector<Table> &tables = into->tables;
    const std::size_t first = tables.size() - std::min(tables.size(), read.size());
    const std::size_t beside = tables.size() - first;
    std::vector<DataTable *> below; // what continues the tables from the first on, or null
    std::vector<NewTable> added;
    int curvesBefore = numberOfCurves(document);
    for (std::size_t i = 0; i < read.size(); ++i) {
        if (i < beside && continues(read[i], tables[first + i])) {
            below.push_back(&read[i]);
            continue;
        }
        below.push_back(nullptr);
        giveLooks(read[i].table, curvesBefore);
        added.push_back({index, static_cast<int>(tables.size()) - 1, std::move(read[i].table)});
    }
    for (std::size_t i = 0; i < beside; ++i) {
        if (below[i] != nullptr) reserveRows(tables[first + i], below[i]->table.x.values.size());
    }
    if (!added.empty()) insertTables(document, std::move(added));
    giveToUser(*into);
    for (std::size_t i = 0; i < beside; ++i)
        if (below[i] != nullptr) appendRows(*below[i], tables[first + i]);
}

std::string dataTextOfSelection(const Document &document, bool includeX, char decimalSeparator,
                                double longest) {
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
    double numbers = 0;
    for (const auto &columns : blocks)
        numbers += static_cast<double>(columns.size() * columns.front()->values.size());
    requireTime(timeOfWriting(numbers, 0));
    std::string text;
    for (const auto &columns : blocks) writeDataText(columns, decimalSeparator, text, longest);
    return text;
}

} // namespace plotwerk
