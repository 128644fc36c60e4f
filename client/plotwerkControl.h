// plotwerkControl.h - the connection to a running Plotwerk and the proxy of its control object.
#ifndef CALLPLW_PLOTWERKCONTROL_H
#define CALLPLW_PLOTWERKCONTROL_H

#include "protocol/PlotwerkControlProxy.h"

#include <memory>
#include <string>

// The session bus, its call time-out set, and whom to call on it.
struct PlotwerkConnection {
    std::unique_ptr<sdbus::IConnection> bus; // null: there is no bus, or no Plotwerk on it
    std::string owner; // who owns Plotwerk's name: a unique name, never given to another process
};

// Starts no thread, and doesn't make the bus start Plotwerk.
PlotwerkConnection connectToPlotwerk();

// Speaks to the Plotwerk that was found, never to one that takes its name later: once the first has
// gone, calls fail. Every call blocks until Plotwerk has answered; an error reply, a lost
// connection or 300 s without an answer throw sdbus::Error.
class PlotwerkControl : public sdbus::ProxyInterfaces<org::plotwerk::PlotwerkControl_proxy> {
  public:
    explicit PlotwerkControl(const PlotwerkConnection &connection);
    ~PlotwerkControl();
};

#endif
