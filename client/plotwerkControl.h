// plotwerkControl.h - the connection to a running Plotwerk and the proxy of its control object.
#ifndef CALLPLW_PLOTWERKCONTROL_H
#define CALLPLW_PLOTWERKCONTROL_H

#include "protocol/PlotwerkControlProxy.h"

#include <memory>

// Every call blocks until Plotwerk has answered; an error reply, a lost connection or 300 s without
// an answer throw sdbus::Error.
class PlotwerkControl : public sdbus::ProxyInterfaces<org::plotwerk::PlotwerkControl_proxy> {
  public:
    explicit PlotwerkControl(sdbus::IConnection &bus);
    ~PlotwerkControl();
};

// The session bus with the call time-out set, or null when there is no bus or nobody owns
// Plotwerk's name. Starts no thread and does not have Plotwerk started.
std::unique_ptr<sdbus::IConnection> connectToPlotwerk();

#endif
