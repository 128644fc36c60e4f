// mainLoop.h - the loop of a server without a window.
#ifndef PLOTWERK_SERVER_MAINLOOP_H
#define PLOTWERK_SERVER_MAINLOOP_H

#include "plotwerk/server/server.h"

namespace plotwerk {

// From here on SIGTERM, SIGINT and SIGCHLD wait for runUntilSignal. To be called before the process
// has any thread or connection, whose threads take over what is blocked.
void holdSignals();

// Answers messages, one at a time, until SIGTERM or SIGINT arrives.
// Throws std::runtime_error when the bus goes away.
void runUntilSignal(Server &server);

} // namespace plotwerk

#endif
