// server.h - the application on the session bus.
#ifndef PLOTWERK_SERVER_SERVER_H
#define PLOTWERK_SERVER_SERVER_H

#include "plotwerk/application/application.h"
#include "plotwerk/server/controlObject.h"

#include <memory>

namespace plotwerk {

class Server {
  public:
    // Publishes the control object and owns its name, with a line in the log; messages wait until
    // run. From here on SIGTERM and SIGINT wait for run too.
    // Throws std::runtime_error: no session bus, or the name has an owner (unique name and pid).
    explicit Server(Application &application);

    // Answers messages, one at a time, until SIGTERM or SIGINT arrives.
    // Throws std::runtime_error when the bus goes away.
    void run();

  private:
    std::unique_ptr<sdbus::IConnection> bus;
    ControlObject controlObject;
};

} // namespace plotwerk

#endif
