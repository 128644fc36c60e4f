// ending.h - the end by SIGTERM or SIGINT when it comes in the middle of work.
//
// For a process that has both signals blocked and looks at them between two messages.
#ifndef PLOTWERK_BASE_ENDING_H
#define PLOTWERK_BASE_ENDING_H

namespace plotwerk {

// Whether one of the signals has come that nobody has taken yet.
bool endIsAskedFor();

// From here on such a signal ends the process with status 0 when it works on for another 0.2 s:
// as a kill would, but with a line on the log. A child has no part in it.
void endInTheMiddleOfWork();

} // namespace plotwerk

#endif
