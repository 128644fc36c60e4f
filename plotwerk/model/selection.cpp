#include "plotwerk/model/selection.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/memoryReserve.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/model/limits.h"
#include "plotwerk/model/names.h"
#include "plotwerk/model/structure.h"

#include <re2/re2.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace plotwerk {

using NameTest = std::function<bool(const std::string &)>;

static NameTest named(const std::string &name) {
    if (name.empty()) return [](const std::string &) { return true; };
    return [name](const std::string &other) { return other == name; };
}

// In bytes. With it and the length of names the longest search of a name takes milliseconds.
static constexpr int patternMemory = 1 << 18;

// Where RE2 finds no memory it may end the process, so it must have what it can take at most. To
// read 333 times \pL it takes 11 MB, to make a program up to 3, to match 1.2.
static constexpr std::size_t memoryToMatch = 4 << 20;
static constexpr std::size_t memoryToRead = 4 << 20;
static constexpr std::size_t memoryPerByte = 16 << 10; // of the pattern

// time: what all tests that share it may have taken at worst, in nanoseconds; refused beyond
// requireTime.
static NameTest matching(const std::string &pattern, double &time) {
    if (pattern.empty()) return named("");
    if (pattern.size() > longestName) throw Refusal("pattern is too long");
    requireFree(memoryToRead + memoryPerByte * pattern.size());
    RE2::Options options;
    options.set_log_errors(false);
    options.set_never_capture(true);
    options.set_max_mem(patternMemory);
    const auto regex = std::make_shared<const RE2>(pattern, options);
    if (!regex->ok()) throw Refusal("pattern \"" + pattern + "\" can't be read: " + regex->error());
    constexpr double perByte = 6; // and instruction of the pattern's program
    return [regex, &time](const std::string &name) {
        requireTime(time += perByte * regex->ProgramSize() * static_cast<double>(name.size() + 1));
        requireFree(memoryToMatch);
        return RE2::FullMatch(name, *regex);
    };
}

static std::vector<CurveRef> curvesWith(const Document &document, const NameTest &source, int table,
                                        const NameTest &column) {
    std::vector<CurveRef> found;
    std::vector<char> sourceFits;
    for (const Source &each : document.sources) sourceFits.push_back(source(each.name));
    for (const CurveRef &curve : curvesOf(document))
        if (sourceFits[curve.source] && (table == -1 || table == curve.table + 1) &&
            column(columnOf(document, curve).name))
            found.push_back(curve);
    return found;
}

static std::vector<CurveRef> curvesMatching(const Document &document, const std::string &source,
                                            int table, const std::string &column) {
    double time = 0;
    return curvesWith(document, matching(source, time), table, matching(column, time));
}

static int select(Document &document, const std::vector<CurveRef> &curves, bool append) {
    int highest = 0;
    for (const CurveRef &curve : curvesOf(document)) {
        Column &column = columnOf(document, curve);
        if (!append) column.rank = 0;
        highest = std::max(highest, column.rank);
    }
    if (highest > mostCounted - std::ssize(curves)) {
        highest = 0;
        for (const CurveRef &curve : selectedCurves(document))
            columnOf(document, curve).rank = ++highest;
    }
    for (const CurveRef &curve : curves) {
        Column &column = columnOf(document, curve);
        if (column.rank == 0) column.rank = ++highest;
    }
    return static_cast<int>(curves.size());
}

// A table's number is valid when any source has that many tables.
static void requireTable(const Document &document, int table) {
    if (table == -1) return;
    for (const Source &source : document.sources)
        if (table >= 1 && table <= std::ssize(source.tables)) return;
    throw Refusal("no table " + std::to_string(table));
}

// Resolves -1 and checks limits that count from `lowest` to `highest`.
static IndexRange within(IndexRange range, int lowest, int highest, const char *what) {
    for (const int limit : {range.first, range.last})
        if (limit != -1 && (limit < lowest || limit > highest))
            throw Refusal(std::string("no ") + what + " " + std::to_string(limit));
    if (range.first == -1) range.first = lowest;
    if (range.last == -1)
        range.last = highest;
    else if (range.first > range.last)
        throw Refusal(std::string("first ") + what + " " + std::to_string(range.first) +
                      " is above the last, " + std::to_string(range.last));
    return range;
}

static bool contains(IndexRange range, int index) {
    return range.first <= index && index <= range.last;
}

int selectByName(Document &document, const std::string &source, int table,
                 const std::string &column, bool append) {
    requireTable(document, table);
    return select(document, curvesWith(document, named(source), table, named(column)), append);
}

int selectByPattern(Document &document, const std::string &source, int table,
                    const std::string &column, bool append) {
    requireTable(document, table);
    return select(document, curvesMatching(document, source, table, column), append);
}

int selectByPosition(Document &document, IndexRange sources, IndexRange tables, IndexRange columns,
                     bool append) {
    std::vector<CurveRef> curves = curvesOf(document);
    const auto keep = [&](IndexRange range, int CurveRef::*member) {
        std::erase_if(curves,
                      [&](const CurveRef &curve) { return !contains(range, curve.*member + 1); });
    };
    const auto most = [&](int CurveRef::*member) {
        int count = 0;
        for (const CurveRef &curve : curves) count = std::max(count, curve.*member + 1);
        return count;
    };
    keep(within(sources, 1, most(&CurveRef::source), "source"), &CurveRef::source);
    keep(within(tables, 1, most(&CurveRef::table), "table"), &CurveRef::table);
    keep(within(columns, 1, most(&CurveRef::column), "column"), &CurveRef::column);
    return select(document, curves, append);
}

int selectByIndex(Document &document, IndexRange curves, bool append) {
    const IndexRange range = within(curves, 0, numberOfCurves(document) - 1, "curve");
    std::vector<CurveRef> found = curvesOf(document);
    std::erase_if(found, [&](const CurveRef &curve) { return !contains(range, curve.index); });
    return select(document, found, append);
}

int indexOfCurveNamed(const Document &document, const std::string &source, int table,
                      const std::string &column) {
    const auto found = curvesWith(document, named(source), table, named(column));
    return found.empty() ? -1 : found.front().index;
}

int indexOfCurveMatching(const Document &document, const std::string &source, int table,
                         const std::string &column) {
    const auto found = curvesMatching(document, source, table, column);
    return found.empty() ? -1 : found.front().index;
}

int indexOfSelectedCurve(const Document &document) {
    const auto first = firstSelectedCurve(document);
    return first ? first->index : -1;
}

int markSelection(Document &document) {
    int marked = 0;
    for (const CurveRef &curve : curvesOf(document)) {
        Column &column = columnOf(document, curve);
        column.marked = column.rank > 0;
        marked += column.marked;
    }
    restartMarkWalk(document);
    return marked;
}

std::optional<CurveRef> nextMarkedCurve(Document &document) {
    auto curve = curveAt(document, document.markWalk, document.markHint);
    for (; curve; curve = curveAt(document, document.markWalk, *curve)) {
        document.markWalk = curve->index + 1;
        document.markHint = *curve;
        if (columnOf(document, *curve).marked) return curve;
    }
    restartMarkWalk(document);
    return std::nullopt;
}

void markFitData(Document &document) {
    const CurveRef first = requireSelection(document).front();
    for (const CurveRef &curve : curvesOf(document))
        columnOf(document, curve).fitData = curve == first;
}

int indexOfFitCurve(const Document &document) {
    const auto fitted = fitCurve(document);
    return fitted ? fitted->index : -1;
}

Inventory inventoryOf(const Document &document, bool justInTable, bool justInSource) {
    Inventory inventory;
    if (!justInTable && !justInSource) {
        inventory.sources = static_cast<int>(document.sources.size());
        for (const Source &source : document.sources)
            inventory.tables += static_cast<int>(source.tables.size());
        inventory.columns = numberOfCurves(document);
        return inventory;
    }
    const CurveRef first = requireSelection(document).front();
    const Source &source = document.sources[first.source];
    inventory.sources = 1;
    for (const Table &table : source.tables) {
        if (justInTable && &table != &tableOf(document, first)) continue;
        ++inventory.tables;
        inventory.columns += static_cast<int>(table.y.size());
    }
    return inventory;
}

} // namespace plotwerk
