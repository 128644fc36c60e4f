#include "plotwerk/model/duplicate.h"

#include "plotwerk/model/curves.h"
#include "plotwerk/model/ranges.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace plotwerk {

namespace {

bool contains(const Range &range, double x) {
    return !(x < range.min) && !(x > range.max) && x == x;
}

// Leaves of a table what is plotted of it.
void cutToPlotted(Table &table, const Range &xRange, const Range &upperXRange) {
    const std::vector<bool> holdsErrors = errorColumns(table);
    std::vector<Column> kept;
    std::vector<const Range *> ranges; // of the curves; null for errors, which go with the rows
    bool plotted = false;
    for (std::size_t c = 0; c < table.y.size(); ++c) {
        const CurveLook &look = table.y[c].look;
        if (!holdsErrors[c] && !look.visible) continue;
        plotted = plotted || !holdsErrors[c];
        ranges.push_back(holdsErrors[c] ? nullptr : look.upperX ? &upperXRange : &xRange);
        kept.push_back(std::move(table.y[c]));
    }
    if (!plotted) kept.clear();
    table.y = std::move(kept);

    std::vector<double> &xs = table.x.values;
    std::size_t rows = 0;
    for (std::size_t row = 0; row < xs.size(); ++row) {
        const double x = xs[row];
        const auto shows = [&](const Range *range) { return range && contains(*range, x); };
        if (std::none_of(ranges.begin(), ranges.end(), shows)) continue;
        for (std::size_t c = 0; c < table.y.size(); ++c) {
            std::vector<double> &values = table.y[c].values;
            values[rows] = !ranges[c] || shows(ranges[c]) ? values[row] : unset;
        }
        xs[rows] = x;
        ++rows;
    }
    xs.resize(rows);
    for (Column &column : table.y) column.values.resize(rows);
    table.xOrder = {};
}

} // namespace

Document duplicateAsPlotted(const Document &document) {
    Document copy = document;
    copy.name += " copy";
    copy.path.clear();
    copy.markWalk = 0;
    copy.changed = true;
    copy.lastSaveSucceeded = false;
    const Range xRange = rangeOf(document, xAxis);
    const Range upperXRange = rangeOf(document, upperXAxis);
    for (Source &source : copy.sources) {
        for (Table &table : source.tables) cutToPlotted(table, xRange, upperXRange);
        std::erase_if(source.tables, [](const Table &table) { return table.y.empty(); });
    }
    std::erase_if(copy.sources, [](const Source &source) { return source.tables.empty(); });
    return copy;
}

} // namespace plotwerk
