#include "plotwerk/model/editing.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/errorColumns.h"
#include "plotwerk/model/limits.h"
#include "plotwerk/model/names.h"
#include "plotwerk/model/palette.h"
#include "plotwerk/model/sampledFunction.h"
#include "plotwerk/model/structure.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <numeric>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace plotwerk {

// The rows in the order of the key, those without a key last.
static std::vector<int> sortedRows(std::vector<double> key) {
    std::vector<double> rows(key.size());
    std::iota(rows.begin(), rows.end(), 0.0);
    sortTogether(key, rows);

    // so far NaN comes first
    const auto numbers = std::find_if(key.begin(), key.end(), [](double v) { return v == v; });
    std::rotate(rows.begin(), rows.begin() + (numbers - key.begin()), rows.end());
    return {rows.begin(), rows.end()};
}

// With a place for as many values as the table has rows: so no memory is taken once it changes.
static void sortRows(Table &table, const std::vector<int> &rows, std::vector<double> &place) {
    const auto sort = [&](std::vector<double> &values) {
        for (std::size_t i = 0; i < rows.size(); ++i) place[i] = values[rows[i]];
        std::copy_n(place.begin(), rows.size(), values.begin());
    };
    std::vector<double> x = std::move(table.x.values);
    sort(x);
    setX(table, std::move(x));
    for (Column &column : table.y) sort(column.values);
}

static void requireSorting(const std::vector<CurveRef> &curves, const Document &document) {
    double orders = 0;
    double largest = 0;
    double time = 0;
    for (const CurveRef &curve : curves) {
        const Table &table = tableOf(document, curve);
        const double rows = rowsOf(table);
        orders += sizeof(int) * rows;
        largest = std::max(largest, 9 * sizeof(double) * rows);
        time += rows * (300 + 30 * static_cast<double>(table.y.size()));
    }
    requireMemory(orders + largest);
    requireTime(time);
}

// Derivatives of a curve at its n points, by the parabolas through three neighbours.
static std::vector<double> derivative(const ValidPoints &points) {
    const int n = points.n;
    const double *x = points.x.data();
    const double *y = points.y.data();
    const auto slope = [&](int i) { return (y[i + 1] - y[i]) / (x[i + 1] - x[i]); };
    std::vector<double> result(n, unset);
    if (n == 2) result[0] = result[1] = slope(0);
    for (int i = 1; i < n - 1; ++i) {
        const double before = x[i] - x[i - 1];
        const double after = x[i + 1] - x[i];
        const double curvature = (slope(i) - slope(i - 1)) / (before + after);
        result[i] = slope(i - 1) + curvature * before;
        if (i == 1) result[0] = slope(0) - curvature * before;
        if (i == n - 2) result[n - 1] = slope(i) + curvature * after;
    }
    for (double &value : result)
        if (!std::isfinite(value)) value = unset;
    return result;
}

// For each point how low the curve gets before it rises above the point, going to the left.
static std::vector<double> lowestToTheLeft(const std::vector<double> &y) {
    struct Hill {
        double top;
        double low; // between the last higher one and this one
    };
    std::vector<Hill> higher; // descending from left to right
    std::vector<double> lows;
    lows.reserve(y.size());
    for (const double top : y) {
        double low = top;
        while (!higher.empty() && higher.back().top <= top) {
            low = std::min(low, higher.back().low);
            higher.pop_back();
        }
        higher.push_back({top, low});
        lows.push_back(low);
    }
    return lows;
}

static std::vector<double> lowestToTheRight(std::vector<double> y) {
    std::reverse(y.begin(), y.end());
    std::vector<double> lows = lowestToTheLeft(y);
    std::reverse(lows.begin(), lows.end());
    return lows;
}

static bool isAsWide(const std::vector<double> &y, int top, double level, int width) {
    const int n = static_cast<int>(y.size());
    int count = 1;
    for (int i = top - 1; i >= 0 && y[i] > level && count < width; --i) ++count;
    for (int i = top + 1; i < n && y[i] > level && count < width; ++i) ++count;
    return count >= width;
}

// A window of this many points is enough to look for peaks: points of wider ones are averaged in
// blocks, so that the time doesn't grow with the width.
static constexpr int pointsInWindow = 32;

// Where peaks of that width are, roughly: indexes of points.
static std::vector<int> peakCandidates(const std::vector<double> &y, int width) {
    const int block = std::max(1, width / pointsInWindow);
    std::vector<double> means;
    for (std::size_t i = 0; i + block <= y.size(); i += block) {
        double sum = 0;
        for (int j = 0; j < block; ++j) sum += y[i + j];
        means.push_back(sum / block);
    }
    std::vector<int> candidates;
    for (const double position : peakPositions(means, std::numeric_limits<double>::min(),
                                               static_cast<double>(width) / block)) {
        const double index = (position + 0.5) * block;
        // values whose differences overflow have peaks anywhere, or nowhere: NaN
        if (index >= 0 && index < static_cast<double>(y.size()))
            candidates.push_back(static_cast<int>(index));
    }
    return candidates;
}

// Indexes of the maxima, ascending.
static std::vector<int> maximaOf(const std::vector<double> &y, int minWidth, double minHeight) {
    std::vector<int> maxima;
    const int n = static_cast<int>(y.size());
    if (n < 3) return maxima;
    const int window = std::clamp(minWidth, 2, n);
    const std::vector<double> left = lowestToTheLeft(y);
    const std::vector<double> right = lowestToTheRight(y);
    for (const int candidate : peakCandidates(y, window)) {
        const auto begin = y.begin() + std::max(candidate - window / 2, 0);
        const auto end = y.begin() + std::min(candidate + window / 2 + 1, n);
        const int top = static_cast<int>(std::max_element(begin, end) - y.begin());
        if (!maxima.empty() && top <= maxima.back()) continue;
        const double height = y[top] - std::max(left[top], right[top]);
        if (height > 0 && !(height < minHeight) && isAsWide(y, top, y[top] - height / 2, minWidth))
            maxima.push_back(top);
    }
    return maxima;
}

// At least 0.
static int highestLayer(const Document &document, const std::vector<CurveRef> &curves) {
    int highest = 0;
    for (const CurveRef &curve : curves)
        highest = std::max(highest, columnOf(document, curve).look.layer);
    return highest;
}

// Makes the curves' layers 0, 1, 2, ... in their order.
static void renumberLayers(Document &document, const std::vector<CurveRef> &curves) {
    std::map<int, int> numbers;
    for (const CurveRef &curve : curves) numbers[columnOf(document, curve).look.layer] = 0;
    int next = 0;
    for (auto &[layer, number] : numbers) number = next++;
    for (const CurveRef &curve : curves) {
        int &layer = columnOf(document, curve).look.layer;
        layer = numbers[layer];
    }
}

static Table tableOfExtremes(const ValidPoints &points, const std::vector<int> &indexes,
                             const Column &x, const Column &y, const std::string &name,
                             const CurveLook &look) {
    requireName(name);
    Table table;
    table.x.name = x.name;
    table.x.isTime = x.isTime;
    Column &column = table.y.emplace_back();
    column.name = name;
    column.isTime = y.isTime;
    column.look = look;
    column.look.line = false;
    column.look.marker = true;
    for (const int i : indexes) {
        table.x.values.push_back(points.x[i]);
        column.values.push_back(points.y[i]);
    }
    return table;
}

void renameSelection(Document &document, const std::string &name) {
    const std::vector<CurveRef> selected = requireSelection(document);
    const std::size_t longest = name.size() + std::string_view(" error").size();
    requireName(name + " error"); // as long as any column of errors that is renamed, too
    const double room = 2.0 * static_cast<double>(selected.size() * longest);
    requireRoom(room);
    requireMemory(room + 200.0 * numberOfCurves(document));

    // Of each table the columns of errors by what they belong to and by name, from left to right:
    // of equal ones each curve takes the next.
    struct Named {
        std::vector<std::size_t> columns;
        std::size_t next = 0;
    };
    struct TableErrors {
        ErrorColumns errors;
        std::unordered_map<std::size_t, std::map<std::string, Named>> named; // by their owner
    };
    std::unordered_map<const Table *, TableErrors> tables;

    std::vector<std::pair<std::string *, std::string>> names;
    for (const CurveRef &curve : selected) {
        Table &table = tableOf(document, curve);
        auto found = tables.find(&table);
        const bool isNew = found == tables.end();
        if (isNew) found = tables.emplace(&table, TableErrors{ErrorColumns(table), {}}).first;
        auto &[errors, named] = found->second;
        if (isNew)
            for (std::size_t i = 0; i < table.y.size(); ++i)
                if (const auto owner = errors.namedOwner(i))
                    named[*owner][table.y[i].name].columns.push_back(i);

        std::string &oldName = columnOf(document, curve).name;
        names.emplace_back(&oldName, name);
        const auto owned = named.find(errors.firstNamed(curve.column));
        if (owned == named.end()) continue;
        for (auto &[errorName, group] : owned->second) {
            if (group.next == group.columns.size()) continue;
            Column &held = table.y[group.columns[group.next++]];
            if (held.rank == 0)
                names.emplace_back(&held.name, errorNameAlong(errorName, oldName, name));
        }
    }

    for (auto &[old, becomes] : names) old->swap(becomes);
}

void showSelection(Document &document) {
    const std::vector<CurveRef> selected = requireSelection(document);
    std::vector<CurveRef> others = curvesOf(document);
    std::erase_if(others, [&](const auto &curve) { return columnOf(document, curve).rank > 0; });
    int highest = highestLayer(document, others);
    if (highest > mostCounted - std::ssize(selected)) {
        renumberLayers(document, others);
        highest = highestLayer(document, others);
    }
    for (const CurveRef &curve : selected) {
        CurveLook &look = columnOf(document, curve).look;
        look.visible = true;
        look.layer = ++highest;
    }
}

void deleteSelection(Document &document) {
    requireSelection(document);
    eraseColumns(document, [](const Table &table) {
        std::vector<bool> selected;
        for (const Column &column : table.y) selected.push_back(column.rank > 0);
        return selected;
    });
}

void deleteAllCurves(Document &document) {
    eraseColumns(document,
                 [](const Table &table) { return std::vector<bool>(table.y.size(), true); });
}

void sortByX(Document &document) {
    const std::vector<CurveRef> curves = firstOfEachTable(requireSelection(document));
    requireSorting(curves, document);
    std::vector<std::vector<int>> orders;
    std::size_t mostRows = 0;
    for (const CurveRef &curve : curves) {
        orders.push_back(sortedRows(tableOf(document, curve).x.values));
        mostRows = std::max(mostRows, orders.back().size());
    }
    std::vector<double> place(mostRows);
    for (std::size_t i = 0; i < curves.size(); ++i)
        sortRows(tableOf(document, curves[i]), orders[i], place);
}

void sortBySelection(Document &document, bool ascending) {
    const CurveRef first = requireSelection(document).front();
    requireSorting({first}, document);
    std::vector<double> key = columnOf(document, first).values;
    if (!ascending)
        for (double &value : key) value = -value;
    const std::vector<int> rows = sortedRows(std::move(key));
    std::vector<double> place(rows.size());
    sortRows(tableOf(document, first), rows, place);
}

void swapSelectionWithX(Document &document) {
    for (const CurveRef &curve : firstOfEachTable(requireSelection(document))) {
        Table &table = tableOf(document, curve);
        Column &column = columnOf(document, curve);
        column.name.swap(table.x.name);
        std::swap(column.isTime, table.x.isTime);
        std::vector<double> x = std::move(table.x.values);
        setX(table, std::move(column.values));
        column.values = std::move(x);
    }
}

void differentiateSelection(Document &document) {
    const std::vector<CurveRef> selected = requireSelection(document);
    double room = 0;
    double largest = 0;
    for (const CurveRef &curve : selected) {
        room += bytesOf(columnOf(document, curve)) + 1;
        largest = std::max(largest, 4.5 * sizeof(double) * rowsOf(tableOf(document, curve)));
    }
    requireRoom(room);
    requireMemory(room + largest + sizeof(Column) * numberOfCurves(document));

    int curvesBefore = numberOfCurves(document);
    for (const CurveRef &curve : selected) requireName(columnOf(document, curve).name + "'");
    std::vector<NewColumn> derivatives;
    derivatives.reserve(selected.size());
    for (const CurveRef &curve : selected) {
        Table &table = tableOf(document, curve);
        const Column &original = columnOf(document, curve);
        const ValidPoints points = validPoints(table, original);
        const std::vector<double> ofPoints = derivative(points);
        Column &column = derivatives.emplace_back(NewColumn{&table, {}}).column;
        column.name = original.name + "'";
        column.look = lookOfNewCurve(curvesBefore++, original.look);
        column.look.sum = original.look.sum;
        column.values.assign(rowsOf(table), unset);
        for (int i = 0; i < points.n; ++i) column.values[points.row[i]] = ofPoints[i];
    }
    addColumns(document, std::move(derivatives));
}

void createCurve(Document &document, double minX, double maxX, double incX, double minY,
                 double incY) {
    for (const double value : {minX, maxX, incX, minY, incY})
        if (!std::isfinite(value)) throw Refusal("a curve's limits and increments must be numbers");
    if (incX <= 0) throw Refusal("a curve's x increment must be positive");
    if (minX > maxX) throw Refusal("a curve's smallest x is above its largest");
    const double steps = (maxX - minX) / incX + 1e-6;
    if (!(steps < 1e8)) throw Refusal("a curve can't have more than 1e8 points");

    const int n = static_cast<int>(steps) + 1;
    requireRoom(2.0 * sizeof(double) * n + sizeof(Table) + sizeof(Column));
    Table table;
    table.x.name = "X";
    table.y.resize(1);
    Column &column = table.y.front();
    column.name = "Y1";
    column.look = lookOfNewCurve(numberOfCurves(document));
    table.x.values.resize(n);
    column.values.resize(n);
    for (int i = 0; i < n; ++i) {
        table.x.values[i] = std::min(std::fma(i, incX, minX), maxX);
        column.values[i] = std::fma(i, incY, minY);
    }

    std::vector<Table> tables;
    tables.push_back(std::move(table));
    if (document.sources.empty()) {
        addSource(document, "Data", std::move(tables));
        return restartMarkWalk(document);
    }
    const auto first = firstSelectedCurve(document);
    const int source = first ? first->source : static_cast<int>(document.sources.size()) - 1;
    const int last = static_cast<int>(document.sources[source].tables.size()) - 1;
    std::vector<NewTable> added;
    added.push_back({source, first ? first->table : last, std::move(tables.front())});
    insertTables(document, std::move(added));
}

void searchExtremes(Document &document, bool maxima, bool minima, int minWidth, double minHeight) {
    std::vector<CurveRef> selected = requireSelection(document);
    if (!maxima && !minima) return;

    double rows = 0;
    double largest = 0;
    for (const CurveRef &curve : selected) {
        rows += rowsOf(tableOf(document, curve));
        largest = std::max<double>(largest, rowsOf(tableOf(document, curve)));
    }
    requireMemory(125 * largest);
    requireTime(400 * (maxima + minima) * rows);
    double room = 0; // what has been found
    std::vector<NewTable> found;
    const int curvesBefore = numberOfCurves(document);
    for (const CurveRef &curve : selected) {
        const Table &table = tableOf(document, curve);
        const Column &column = columnOf(document, curve);
        const ValidPoints points = validPoints(table, column);
        const auto search = [&](const std::vector<double> &y, std::string_view suffix) {
            const std::vector<int> indexes = maximaOf(y, minWidth, minHeight);
            if (indexes.empty()) return;
            const CurveLook look =
                lookOfNewCurve(curvesBefore + static_cast<int>(found.size()), column.look);
            found.push_back({curve.source, curve.table,
                             tableOfExtremes(points, indexes, table.x, column,
                                             column.name + std::string(suffix), look)});
            room += bytesOf(found.back().table);
            requireRoom(room);
        };
        std::vector<double> y = points.y;
        if (maxima) search(y, maximaSuffix);
        for (double &value : y) value = -value;
        if (minima) search(y, minimaSuffix);
    }
    if (found.empty()) throw Refusal("the selected curves have no such extremes");

    insertTables(document, std::move(found));
}

} // namespace plotwerk
