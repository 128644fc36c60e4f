#include "client/execute.h"

#include "client/commandTable.h"

#include <cstdio>
#include <cstring>

std::string documentName;

static Command *find(const CommandTable &table, const char *name) {
    for (const CommandRow &row : table) {
        if (std::strcmp(row.name, name) == 0) return row.run;
    }
    return nullptr;
}

// A name given by -d first, then the remembered one, then the front document's: a target once known
// stays, even if another document has come to the front meanwhile.
static void settleDocument(PlotwerkControl &plotwerk, const Options &options) {
    if (*options['d']) {
        documentName = textOf(options['d']);
    } else if (documentName.empty()) {
        documentName = plotwerk.documentNameOfFrontWindow();
    }
}

static void reportUnknown(const char *name, const Options &options) {
    std::fprintf(stderr, "unknown command: %s", name);
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        if (*options[letter]) std::fprintf(stderr, " -%c %s", letter, options[letter]);
    }
    std::fputc('\n', stderr);
}

void execute(PlotwerkControl &plotwerk, const char *name, const OptionSlots &slots,
             const char *fText, const char *pText) {
    const Options options{slots, fText, pText};
    if (Command *run = find(command::documentlessCommands, name)) return run(plotwerk, options);

    settleDocument(plotwerk, options);
    if (documentName.empty()) return;

    for (const CommandTable *table : command::allTables) {
        if (Command *run = find(*table, name)) return run(plotwerk, options);
    }
    reportUnknown(name, options);
}
