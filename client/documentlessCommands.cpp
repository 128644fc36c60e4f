#include "client/answer.h"
#include "client/commands.h"

#include <unistd.h>

namespace command {

void parentPID(PlotwerkControl &, const Options &) {
    answer("PPID = %d\n", getppid());
}

void sync(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.waitForEmptyReply();
    answer("synced\n");
}

void activeDoc(PlotwerkControl &plotwerk, const Options &) {
    const std::string name = plotwerk.documentNameOfFrontWindow();
    answer("%s\n", name.empty() ? "none" : name.c_str());
}

} // namespace command
