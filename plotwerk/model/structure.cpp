#include "plotwerk/model/structure.h"

#include "plotwerk/model/names.h"

#include <algorithm>
#include <utility>

namespace plotwerk {

void restartMarkWalk(Document &document) {
    document.markWalk = 0;
    document.markHint = {};
}

void addSource(Document &document, const std::string &name, std::vector<Table> tables) {
    std::vector<std::string> taken;
    taken.reserve(document.sources.size());
    for (const Source &each : document.sources) taken.push_back(each.name);
    document.sources.push_back({freeName(name, taken), std::move(tables)});
}

void insertTables(Document &document, std::vector<NewTable> tables) {
    const auto position = [](const NewTable &each) { return std::pair(each.source, each.after); };
    std::stable_sort(tables.begin(), tables.end(), [&](const NewTable &a, const NewTable &b) {
        return position(a) < position(b);
    });
    for (auto each = tables.begin(); each != tables.end();) {
        const int source = each->source;
        std::vector<Table> &old = document.sources[source].tables;
        std::vector<Table> all;
        all.reserve(old.size() + static_cast<std::size_t>(tables.end() - each));
        for (int i = -1; i < std::ssize(old); ++i) {
            if (i >= 0) all.push_back(std::move(old[i]));
            for (; each != tables.end() && each->source == source && each->after == i; ++each)
                all.push_back(std::move(each->table));
        }
        old = std::move(all);
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

void addColumn(Document &document, Table &table, Column column) {
    table.y.push_back(std::move(column));
    restartMarkWalk(document);
}

void eraseColumns(Document &document, const std::function<std::vector<bool>(const Table &)> &goes) {
    for (Source &source : document.sources) {
        for (Table &table : source.tables) {
            const std::vector<bool> going = goes(table);
            std::vector<Column> kept;
            for (std::size_t i = 0; i < table.y.size(); ++i)
                if (!going[i]) kept.push_back(std::move(table.y[i]));
            table.y = std::move(kept);
        }
        std::erase_if(source.tables, [](const Table &table) { return table.y.empty(); });
    }
    std::erase_if(document.sources, [](const Source &source) { return source.tables.empty(); });
    restartMarkWalk(document);
}

} // namespace plotwerk
