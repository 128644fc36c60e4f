#include "client/answer.h"
#include "client/commandTable.h"
#include "client/execute.h"

namespace command {

static void selectCurve(PlotwerkControl &plotwerk, const Options &options) {
    const std::string source = textOf(options['s']);
    const int table = integer(options['t']);
    const std::string column = textOf(options['c']);
    const bool append = yesNo(options['a']);
    plotwerk.selectCurvesOf_sourceName_table_column_appendSelection_(documentName, source, table,
                                                                     column, append);
}

static void selectCurveByPosition(PlotwerkControl &plotwerk, const Options &options) {
    const int firstSource = integer(options['s']);
    const int lastSource = integer(options['e']);
    const int firstTable = integer(options['t']);
    const int lastTable = integer(options['u']);
    const int firstColumn = integer(options['c']);
    const int lastColumn = integer(options.fText); // the long -f text, read as a plain number
    const bool append = yesNo(options['a']);
    plotwerk
        .selectCurvesOf_sourceIndexFirst_sourceIndexLast_tableFirst_tableLast_columnFirst_columnLast_appendSelection_(
            documentName, firstSource, lastSource, firstTable, lastTable, firstColumn, lastColumn,
            append);
}

static void selectCurveByIndex(PlotwerkControl &plotwerk, const Options &options) {
    const int first = integer(options['i']);
    const int last = integer(options['j']);
    const bool append = yesNo(options['a']);
    plotwerk.selectCurvesOf_indexFirst_indexLast_appendSelection_(documentName, first, last,
                                                                  append);
}

static void indexOfCurveName(PlotwerkControl &plotwerk, const Options &options) {
    const std::string source = textOf(options['s']);
    const int table = integer(options['t']);
    const std::string column = textOf(options['c']);
    answer("%d\n",
           plotwerk.indexOfCurveNameOf_source_table_column_(documentName, source, table, column));
}

static void nextMarkedCurve(PlotwerkControl &plotwerk, const Options &) {
    const auto [name, source, yData, table, index] =
        plotwerk.nameOfNextMarkedCurveOf_name_source_yData_table_index_(documentName);
    answer("%d %s %s Table %d %s\n", index, yData ? "y" : "x", name.c_str(), table, source.c_str());
}

static void markSelectedCurves(PlotwerkControl &plotwerk, const Options &) {
    answer("%d\n", plotwerk.markSelectedCurvesOf_(documentName));
}

static void markSelectionAsFitData(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.markSelectionAsFitDataOf_(documentName);
}

static constexpr CommandRow rows[] = {
    {"selectCurve", "[-s source] [-t table] [-c column] [-a yes-or-no]", selectCurve},
    {"selectCurveByPosition",
     "[-s first] [-e last] [-t first] [-u last] [-c first] [-f last] [-a yes-or-no]",
     selectCurveByPosition},
    {"selectCurveByIndex", "[-i first] [-j last] [-a yes-or-no]", selectCurveByIndex},
    {"indexOfCurveName", "[-s source] [-t table] [-c column]", indexOfCurveName},
    {"nextMarkedCurve", "", nextMarkedCurve},
    {"markSelectedCurves", "", markSelectedCurves},
    {"markSelectionAsFitData", "", markSelectionAsFitData},
};

constinit const CommandTable selectionCommands = rows;

} // namespace command
