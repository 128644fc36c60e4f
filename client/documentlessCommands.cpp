#include "client/answer.h"
#include "client/commandTable.h"

#include <unistd.h>

namespace command {

static void parentPID(PlotwerkControl &, const Options &) {
    answer("PPID = %d\n", getppid());
}

static void sync(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.waitForEmptyReply();
    answer("synced\n");
}

static void activeDoc(PlotwerkControl &plotwerk, const Options &) {
    const std::string name = plotwerk.documentNameOfFrontWindow();
    answer("%s\n", name.empty() ? "none" : name.c_str());
}

static constexpr CommandRow rows[] = {
    {"parentPID", "", parentPID},
    {"sync", "", sync},
    {"activeDoc", "", activeDoc},
};

constinit const CommandTable documentlessCommands = rows;

} // namespace command
