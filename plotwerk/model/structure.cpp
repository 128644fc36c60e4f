#include "plotwerk/model/structure.h"

#include "plotwerk/model/names.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace plotwerk {

void restartMarkWalk(Document &document) {
    document.markWalk = 0;
    document.markHint = {};
}

double bytesOf(const Column &column) {
    return static_cast<double>(sizeof column + column.name.size() +
                               column.values.capacity() * sizeof(double));
}

double bytesOf(const Table &table) {
    double bytes = sizeof table + bytesOf(table.x);
    for (const Column &column : table.y) bytes += bytesOf(column);
    return bytes;
}

double bytesOf(const std::vector<Table> &tables) {
    double bytes = 0;
    for (const Table &table : tables) bytes += bytesOf(table);
    return bytes;
}

static double bytesOf(const std::vector<FitParameter> &parameters) {
    double bytes = 0;
    for (const FitParameter &each : parameters)
        bytes += static_cast<double>(sizeof each + each.name.size());
    return bytes;
}

double bytesOf(const Document &document) {
    double bytes =
        sizeof document + static_cast<double>(document.formula.size() +
                                              document.fit.formula.size() + document.title.size());
    for (const Axis &axis : document.axes) bytes += static_cast<double>(axis.title.size());
    for (const Source &source : document.sources)
        bytes += static_cast<double>(sizeof source + source.name.size()) + bytesOf(source.tables);
    for (const PlacedText &placed : document.texts)
        bytes += static_cast<double>(sizeof placed + placed.text.size());
    bytes += static_cast<double>(document.fit.covariance.values.size() * sizeof(double));
    return bytes + bytesOf(document.parameters) + bytesOf(document.fit.parameters);
}

void addSource(Document &document, const std::string &name, std::vector<Table> tables) {
    std::vector<std::string> taken;
    taken.reserve(document.sources.size());
    for (const Source &each : document.sources) taken.push_back(each.name);
    document.sources.push_back({freeName(name, taken), std::move(tables)});
}

void insertTables(Document &document, std::vector<NewTable> tables) {
    std::vector<std::size_t> added(document.sources.size());
    for (const NewTable &each : tables) ++added[each.source];
    for (std::size_t i = 0; i < added.size(); ++i)
        document.sources[i].tables.reserve(document.sources[i].tables.size() + added[i]);

    const auto position = [](const NewTable &each) { return std::pair(each.source, each.after); };
    std::stable_sort(tables.begin(), tables.end(), [&](const NewTable &a, const NewTable &b) {
        return position(a) < position(b);
    });
    // each source from its last table on: what stands behind a new one moves up
    for (auto each = tables.rbegin(); each != tables.rend();) {
        const int source = each->source;
        std::vector<Table> &all = document.sources[source].tables;
        std::size_t old = all.size();
        all.resize(old + added[source]);
        for (std::size_t at = all.size(); at > old;) {
            if (each != tables.rend() && each->source == source &&
                each->after == static_cast<int>(old) - 1)
                all[--at] = std::move((each++)->table);
            else
                all[--at] = std::move(all[--old]);
        }
    }
    restartMarkWalk(document);
}

void replaceTables(Document &document, Source &source, std::vector<Table> tables) {
    source.tables = std::move(tables);
    restartMarkWalk(document);
}

void replaceTable(Document &document, int source, int place, Table table) {
    int first = 0; // the table's first curve
    for (int s = 0; s <= source; ++s) {
        const std::vector<Table> &tables = document.sources[s].tables;
        const std::size_t end = s < source ? tables.size() : static_cast<std::size_t>(place);
        for (std::size_t t = 0; t < end; ++t) first += static_cast<int>(tables[t].y.size());
    }
    Table &old = document.sources[source].tables[place];
    const auto more = static_cast<int>(std::ssize(table.y) - std::ssize(old.y));
    if (document.markWalk > first) document.markWalk = std::max(first, document.markWalk + more);
    document.markHint = {};
    old = std::move(table);
}

void giveToUser(Source &source) {
    for (Table &table : source.tables)
        for (Column &column : table.y) column.drawnByFit = column.residuals = false;
}

void addColumns(Document &document, std::vector<NewColumn> columns) {
    std::unordered_map<Table *, std::size_t> added;
    for (const NewColumn &each : columns) ++added[each.table];
    for (const auto &[table, count] : added) table->y.reserve(table->y.size() + count);
    for (NewColumn &each : columns) each.table->y.push_back(std::move(each.column));
    restartMarkWalk(document);
}

void eraseColumns(Document &document, const std::function<std::vector<bool>(const Table &)> &goes) {
    std::vector<std::vector<bool>> going; // of each table
    for (const Source &source : document.sources)
        for (const Table &table : source.tables) going.push_back(goes(table));

    auto ofTable = going.begin();
    for (Source &source : document.sources) {
        for (Table &table : source.tables) {
            const std::vector<bool> &ofColumn = *ofTable++;
            const Column *first = table.y.data();
            std::erase_if(table.y, [&](const Column &each) { return ofColumn[&each - first]; });
        }
        std::erase_if(source.tables, [](const Table &table) { return table.y.empty(); });
    }
    std::erase_if(document.sources, [](const Source &source) { return source.tables.empty(); });
    restartMarkWalk(document);
}

} // namespace plotwerk
