// execute.h - one command: its name looked up, its target document settled, its messages sent.
#ifndef CALLPLW_EXECUTE_H
#define CALLPLW_EXECUTE_H

#include "client/options.h"
#include "client/plotwerkControl.h"

#include <string>

// The target document, empty while there is none. Kept from command to command and from line to
// line; "open" and "close" forget it.
extern std::string documentName;

// When failures are told (failures.h): asks Plotwerk for the reason for which it refused the
// command's last message that could be refused, and tells it.
void tellRefusal(PlotwerkControl &plotwerk, const char *command);

// Carries out one command and prints its answer. Without a target document every command but
// parentPID, sync and activeDoc does nothing, an unknown one included. An unknown name is reported
// on the standard error with its options from a to z. Where failures are told, all of these are.
void execute(PlotwerkControl &plotwerk, const char *name, const OptionSlots &slots,
             const char *fText, const char *pText);

#endif
