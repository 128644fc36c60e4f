#include "plotwerk/model/duplicate.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/names.h"
#include "plotwerk/model/ranges.h"
#include "plotwerk/model/structure.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace plotwerk {

static bool contains(const Range &range, double x) {
    return !(x < range.min) && !(x > range.max) && x == x;
}

// The columns that aren't plotted, neither as curves nor as the errors of one.
static std::vector<bool> unplottedColumns(const Table &table) {
    std::vector<bool> unplotted(table.y.size());
    const ErrorColumns errors(table);
    bool plotted = false;
    for (std::size_t c = 0; c < table.y.size(); ++c) {
        unplotted[c] = !errors.holdsErrors(c) && !table.y[c].look.visible;
        plotted = plotted || (!errors.holdsErrors(c) && !unplotted[c]);
    }
    if (!plotted) unplotted.assign(table.y.size(), true);
    return unplotted;
}

// Leaves of a table the rows of which something is plotted.
static void cutRows(Table &table, const Range &xRange, const Range &upperXRange) {
    const ErrorColumns errors(table);
    std::vector<const Range *> ranges; // of the visible curves; null for the other columns
    for (std::size_t c = 0; c < table.y.size(); ++c) {
        const CurveLook &look = table.y[c].look;
        const bool drawn = !errors.holdsErrors(c) && look.visible;
        ranges.push_back(!drawn ? nullptr : look.upperX ? &upperXRange : &xRange);
    }

    std::vector<double> xs = std::move(table.x.values);
    std::size_t kept = 0;
    for (std::size_t row = 0; row < xs.size(); ++row) {
        const double x = xs[row];
        const auto shows = [&](const Range *range) { return range && contains(*range, x); };
        if (std::none_of(ranges.begin(), ranges.end(), shows)) continue;
        for (std::size_t c = 0; c < table.y.size(); ++c) {
            std::vector<double> &values = table.y[c].values;
            values[kept] = !ranges[c] || shows(ranges[c]) ? values[row] : unset;
        }
        xs[kept++] = x;
    }
    const auto cut = [&](std::vector<double> &values) {
        values.resize(kept);
        values.shrink_to_fit();
    };
    cut(xs);
    for (Column &column : table.y) cut(column.values);
    setX(table, std::move(xs));
}

Document duplicateAsPlotted(const Document &document) {
    requireRoom(bytesOf(document));
    Document duplicate = document;
    change(duplicate, [&](Document &copy) {
        copy.name += " copy";
        requireName(copy.name);
        copy.path.clear();
        const Range xRange = rangeOf(document, xAxis);
        const Range upperXRange = rangeOf(document, upperXAxis);
        for (Source &source : copy.sources)
            for (Table &table : source.tables) cutRows(table, xRange, upperXRange);
        eraseColumns(copy, unplottedColumns);
    });
    return duplicate;
}

} // namespace plotwerk
