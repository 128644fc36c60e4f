#include "client/answer.h"
#include "client/commands.h"
#include "client/execute.h"

namespace command {

void replaceData(PlotwerkControl &plotwerk, const Options &options) {
    const std::string data = textOf(options.pText);
    const std::string source = textOf(options['s']);
    const bool rangeOverAll = yesNo(options['r']);
    plotwerk.replaceDataformText_of_source_doRangeOverAll_(data, documentName, source,
                                                           rangeOverAll);
}

void readData(PlotwerkControl &plotwerk, const Options &options) {
    const std::string data = textOf(options.pText);
    const std::string source = textOf(options['s']);
    const bool rangeOverAll = yesNo(options['r']);
    const bool append = yesNo(options['a']);
    plotwerk.readDataformText_of_source_doRangeOverAll_appendToExistingData_(
        data, documentName, source, rangeOverAll, append);
}

void copy(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.copySelectedCurvesOf_includeX_(documentName, yesNo(options['i']));
}

void setDecimalSeparator(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.setDeciSeparator_(integer(options['s'], 0));
}

void pasteData(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.pasteDataOf_(documentName);
}

void duplicateAsPlotted(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.duplicateAsPlottedOf_(documentName);
}

void inventory(PlotwerkControl &plotwerk, const Options &options) {
    const bool inSelectedTable = yesNo(options['t']);
    const bool inSelectedSource = yesNo(options['s']);
    const auto [sources, tables, columns] =
        plotwerk.inventoryOf_sources_tables_columns_justInSelTable_justInSelSource_(
            documentName, inSelectedTable, inSelectedSource);
    // Deliberately the reverse of the message's order.
    answer("%d %d %d\n", columns, tables, sources);
}

} // namespace command
