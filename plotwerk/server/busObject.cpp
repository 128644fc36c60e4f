#include "plotwerk/server/busObject.h"

#include "protocol/PlotwerkControlNames.h"

namespace plotwerk {

BusObject::BusObject(sdbus::IConnection &bus, ControlObject &answering)
    : AdaptorInterfaces(bus, plotwerkControl::objectPath), control(answering), unread(bus) {
    registerAdaptor();
}

BusObject::~BusObject() {
    unregisterAdaptor();
}

} // namespace plotwerk
