// plotwerkControl.h - the connection to a running Plotwerk and the proxy of its control object.
#ifndef CALLPLW_PLOTWERKCONTROL_H
#define CALLPLW_PLOTWERKCONTROL_H

#include "protocol/PlotwerkControlProxy.h"

#include <memory>
#include <string>

// The session bus with the call time-out set, and whom to call there.
struct PlotwerkConnection {
    std::unique_ptr<sdbus::IConnection> bus; // null: there is no bus, or no Plotwerk on it
    std::string owner; // of Plotwerk's name, by the name that no later process ever gets
};

// Starts no thread and does not have Plotwerk started.
PlotwerkConnection connectToPlotwerk();

// The Plotwerk that was found, and no other that takes its name later: once it has gone, calls
// fail. Every call blocks until Plotwerk has answered; an error reply, a lost connection or 300 s
// without an answer throw sdbus::Error.
class PlotwerkControl : public sdbus::ProxyInterfaces<org::plotwerk::PlotwerkControl_proxy> {
  public:
    explicit PlotwerkControl(const PlotwerkConnection &connection);
    ~PlotwerkControl();
};

#endif
