#include "client/answer.h"
#include "client/commandTable.h"
#include "client/execute.h"

namespace command {

static void replaceData(PlotwerkControl &plotwerk, const Options &options) {
    const std::string data = textOf(options.pText);
    const std::string source = textOf(options['s']);
    const bool rangeOverAll = yesNo(options['r']);
    plotwerk.replaceDataformText_of_source_doRangeOverAll_(data, documentName, source,
                                                           rangeOverAll);
}

static void readData(PlotwerkControl &plotwerk, const Options &options) {
    const std::string data = textOf(options.pText);
    const std::string source = textOf(options['s']);
    const bool rangeOverAll = yesNo(options['r']);
    const bool append = yesNo(options['a']);
    plotwerk.readDataformText_of_source_doRangeOverAll_appendToExistingData_(
        data, documentName, source, rangeOverAll, append);
}

static void copy(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.copySelectedCurvesOf_includeX_(documentName, yesNo(options['i']));
}

static void setDecimalSeparator(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.setDeciSeparator_(integer(options['s'], 0));
}

static void pasteData(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.pasteDataOf_(documentName);
}

static void duplicateAsPlotted(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.duplicateAsPlottedOf_(documentName);
}

static void inventory(PlotwerkControl &plotwerk, const Options &options) {
    const bool inSelectedTable = yesNo(options['t']);
    const bool inSelectedSource = yesNo(options['s']);
    const auto [sources, tables, columns] =
        plotwerk.inventoryOf_sources_tables_columns_justInSelTable_justInSelSource_(
            documentName, inSelectedTable, inSelectedSource);
    // Deliberately the reverse of the message's order.
    answer("%d %d %d\n", columns, tables, sources);
}

static constexpr CommandRow rows[] = {
    {"replaceData", "-p data [-s source] [-r yes-or-no]", replaceData},
    {"readData", "-p data [-s source] [-r yes-or-no] [-a yes-or-no]", readData},
    {"copy", "[-i yes-or-no]", copy},
    {"setDecimalSeparator", "[-s integer]", setDecimalSeparator},
    {"pasteData", "", pasteData},
    {"duplicateAsPlotted", "", duplicateAsPlotted},
    {"inventory", "[-t yes-or-no] [-s yes-or-no]", inventory},
};

constinit const CommandTable dataCommands = rows;

} // namespace command
