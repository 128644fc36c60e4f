// The messages that select and mark curves, and look them up by name.
#include "plotwerk/model/selection.h"
#include "plotwerk/server/controlObject.h"

namespace plotwerk {

void ControlObject::selectCurvesOf_sourceName_table_column_appendSelection_(
    const std::string &name, const std::string &source, const std::int32_t &table,
    const std::string &column, const bool &append) {
    actOnView(name,
              [&](Document &document) { selectByName(document, source, table, column, append); });
}

void ControlObject::selectCurvesOf_regexSourceName_table_regexColumn_appendSelection_(
    const std::string &name, const std::string &source, const std::int32_t &table,
    const std::string &column, const bool &append) {
    actOnView(name, [&](Document &document) {
        selectByPattern(document, source, table, column, append);
    });
}

void ControlObject::
    selectCurvesOf_sourceIndexFirst_sourceIndexLast_tableFirst_tableLast_columnFirst_columnLast_appendSelection_(
        const std::string &name, const std::int32_t &sourceFirst, const std::int32_t &sourceLast,
        const std::int32_t &tableFirst, const std::int32_t &tableLast,
        const std::int32_t &columnFirst, const std::int32_t &columnLast, const bool &append) {
    actOnView(name, [&](Document &document) {
        selectByPosition(document, {sourceFirst, sourceLast}, {tableFirst, tableLast},
                         {columnFirst, columnLast}, append);
    });
}

void ControlObject::selectCurvesOf_indexFirst_indexLast_appendSelection_(const std::string &name,
                                                                         const std::int32_t &first,
                                                                         const std::int32_t &last,
                                                                         const bool &append) {
    actOnView(name, [&](Document &document) { selectByIndex(document, {first, last}, append); });
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
        const auto curve = nextMarkedCurve(document);
        if (!curve) return;
        marked = {columnOf(document, *curve).name,
                  document.sources[static_cast<std::size_t>(curve->source)].name, true,
                  curve->table + 1, curve->index};
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
