// busSource.h - the server's messages, answered in GLib's main loop.
#ifndef PLOTWERK_WINDOW_BUSSOURCE_H
#define PLOTWERK_WINDOW_BUSSOURCE_H

#include "plotwerk/server/server.h"

#include <functional>
#include <glib.h>

namespace plotwerk {

// Each time that the loop comes round it answers what is there and what follows at once, for 2 ms;
// it calls `answered` after that, or `gone` once when the bus has gone.
class BusSource {
  public:
    BusSource(Server &server, std::function<void()> answered,
              std::function<void(const std::string &reason)> gone);
    ~BusSource();
    BusSource(const BusSource &) = delete;
    BusSource &operator=(const BusSource &) = delete;

    // While behind, messages wait for everything else that the loop has to do, a picture that is to
    // be drawn among it.
    void stayBehind(bool behind);

    // From suspend to resume messages stay with the bus.
    void suspend();
    void resume();

  private:
    struct Source;
    Source *source;
};

} // namespace plotwerk

#endif
