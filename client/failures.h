// failures.h - commands that failed, for whoever asks to be told: by CALLPLW_ERRORS=report in the
// environment, or by CALLPLW_ERRORS=stop, which ends the process at the first. Another value is
// reported and taken as "report", an empty one as none.
#ifndef CALLPLW_FAILURES_H
#define CALLPLW_FAILURES_H

#include <string>

bool failuresAreTold();

// The command has failed, or will: prints "callPlw: COMMAND: REASON" on the standard error, without
// COMMAND where that is empty. Does nothing unless failures are told.
void fail(const std::string &command, const std::string &reason);

// 2 when failures are told and there was one, else 0.
int exitStatus();

#endif
