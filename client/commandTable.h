// commandTable.h - the commands by name. Each stands once: as a row of its family's table, at the
// end of the family's file.
#ifndef CALLPLW_COMMANDTABLE_H
#define CALLPLW_COMMANDTABLE_H

#include "client/options.h"
#include "client/plotwerkControl.h"

#include <span>

// Reads its options, sends its messages about documentName and prints the answer, if it has one.
using Command = void(PlotwerkControl &plotwerk, const Options &options);

struct CommandRow {
    const char *name;
    const char *synopsis; // of its options, as the manual page has it: "-a x [-s series]"
    Command *run;
    bool settlesLastError = true; // done, it leaves Plotwerk's lastError empty
};

using CommandTable = std::span<const CommandRow>;

namespace command {

extern const CommandTable documentlessCommands; // these need no target document

extern const CommandTable attributeCommands; // the look of curves, axes and texts
extern const CommandTable dataCommands;      // data text, clipboard and inventory
extern const CommandTable documentCommands;  // and pictures and compositions
extern const CommandTable editingCommands;   // and analysing curves
extern const CommandTable fitCommands;       // ranges, formula and fit
extern const CommandTable pointCommands;     // and their values
extern const CommandTable selectionCommands; // and marks

inline constexpr const CommandTable *allTables[] = {
    &documentlessCommands, &attributeCommands, &dataCommands,  &documentCommands,
    &editingCommands,      &fitCommands,       &pointCommands, &selectionCommands};

} // namespace command

#endif
