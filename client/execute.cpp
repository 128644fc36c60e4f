#include "client/execute.h"

#include "client/commandTable.h"
#include "client/failures.h"

#include <cstdio>
#include <cstring>

std::string documentName;

static const CommandRow *find(const CommandTable &table, const char *name) {
    for (const CommandRow &row : table) {
        if (std::strcmp(row.name, name) == 0) return &row;
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
    if (failuresAreTold()) return fail(name, "unknown command");
    std::fprintf(stderr, "unknown command: %s", name);
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        if (*options[letter]) std::fprintf(stderr, " -%c %s", letter, options[letter].text);
    }
    std::fputc('\n', stderr);
}

void tellRefusal(PlotwerkControl &plotwerk, const char *command) {
    if (!failuresAreTold()) return;
    const std::string reason = plotwerk.getVarOf_varName_(documentName, "lastError");
    if (!reason.empty()) fail(command, reason);
}

void execute(PlotwerkControl &plotwerk, const char *name, const OptionSlots &slots,
             const char *fText, const char *pText) {
    const Options options{name, slots, {fText, 'f', name}, {pText, 'p', name}};
    // these are never refused
    if (const CommandRow *row = find(command::documentlessCommands, name))
        return row->run(plotwerk, options);

    settleDocument(plotwerk, options);
    if (documentName.empty()) return fail(name, "no document is open");

    for (const CommandTable *table : command::allTables) {
        if (const CommandRow *row = find(*table, name)) {
            row->run(plotwerk, options);
            if (row->settlesLastError) tellRefusal(plotwerk, name);
            return;
        }
    }
    reportUnknown(name, options);
}
