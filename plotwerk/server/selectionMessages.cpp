// The messages that select and mark curves, and look them up by name.
#include "plotwerk/model/selection.h"
#include "plotwerk/server/controlObject.h"

namespace plotwerk {

static std::string noCurves() {
    return "there are no curves";
}

// What was looked for, of a selection that finds no curve.
static std::string noCurveOf(const std::string &source, std::int32_t table,
                             const std::string &column) {
    std::string text;
    const auto add = [&](const char *what, const std::string &wanted) {
        text += (text.empty() ? "no curve of " : ", ") + std::string(what) + ' ' + wanted;
    };
    if (!source.empty()) add("source", '"' + source + '"');
    if (table != -1) add("table", std::to_string(table));
    if (!column.empty()) add("column", '"' + column + '"');
    return text.empty() ? noCurves() : text;
}

void ControlObject::selectCurvesOf_sourceName_table_column_appendSelection_(
    const std::string &name, const std::string &source, const std::int32_t &table,
    const std::string &column, const bool &append) {
    selectIn(
        name, [&] { return noCurveOf(source, table, column); },
        [&](Document &document) { return selectByName(document, source, table, column, append); });
}

void ControlObject::selectCurvesOf_regexSourceName_table_regexColumn_appendSelection_(
    const std::string &name, const std::string &source, const std::int32_t &table,
    const std::string &column, const bool &append) {
    selectIn(
        name, [&] { return noCurveOf(source, table, column); },
        [&](Document &document) {
            return selectByPattern(document, source, table, column, append);
        });
}

void ControlObject::
    selectCurvesOf_sourceIndexFirst_sourceIndexLast_tableFirst_tableLast_columnFirst_columnLast_appendSelection_(
        const std::string &name, const std::int32_t &sourceFirst, const std::int32_t &sourceLast,
        const std::int32_t &tableFirst, const std::int32_t &tableLast,
        const std::int32_t &columnFirst, const std::int32_t &columnLast, const bool &append) {
    selectIn(name, noCurves, [&](Document &document) {
        return selectByPosition(document, {sourceFirst, sourceLast}, {tableFirst, tableLast},
                                {columnFirst, columnLast}, append);
    });
}

void ControlObject::selectCurvesOf_indexFirst_indexLast_appendSelection_(const std::string &name,
                                                                         const std::int32_t &first,
                                                                         const std::int32_t &last,
                                                                         const bool &append) {
    selectIn(name, noCurves, [&](Document &document) {
        return selectByIndex(document, {first, last}, append);
    });
}

std::int32_t ControlObject::indexOfCurveNameOf_source_table_column_(const std::string &name,
                                                                    const std::string &source,
                                                                    const std::int32_t &table,
                                                                    const std::string &column) {
    return answer(name, -1, [&](const Document &document) {
        return indexOfCurveNamed(document, source, table, column);
    });
}

std::int32_t ControlObject::indexOfCurveNameOf_regexSource_table_regexColumn_(
    const std::string &name, const std::string &source, const std::int32_t &table,
    const std::string &column) {
    return answer(name, -1, [&](const Document &document) {
        return indexOfCurveMatching(document, source, table, column);
    });
}

// Only y columns are curves: yData is yes for each of them.
std::tuple<std::string, std::string, bool, std::int32_t, std::int32_t>
ControlObject::nameOfNextMarkedCurveOf_name_source_yData_table_index_(const std::string &name) {
    using Marked = std::tuple<std::string, std::string, bool, std::int32_t, std::int32_t>;
    Marked marked{"", "", false, 0, -1};
    actOnView(name, [&](Document &document) {
        std::string column, source; // with room for any name, before the walk has gone on
        column.reserve(longestName);
        source.reserve(longestName);
        const auto curve = nextMarkedCurve(document);
        if (!curve) return;
        column = columnOf(document, *curve).name;
        source = document.sources[static_cast<std::size_t>(curve->source)].name;
        marked = {std::move(column), std::move(source), true, curve->table + 1, curve->index};
    });
    return marked;
}

std::int32_t ControlObject::markSelectedCurvesOf_(const std::string &name) {
    return answer(name, 0, markSelection);
}

void ControlObject::markSelectionAsFitDataOf_(const std::string &name) {
    actOn(name, markFitData);
}

} // namespace plotwerk
