#include "plotwerk/server/busObject.h"

#include "plotwerk/base/memoryReserve.h"
#include "protocol/PlotwerkControlNames.h"

namespace plotwerk {

bool isNoMemory(const sdbus::Error &error) {
    return error.getName() == "org.freedesktop.DBus.Error.NoMemory";
}

BusObject::BusObject(sdbus::IConnection &bus, ControlObject &answering)
    : AdaptorInterfaces(bus, plotwerkControl::objectPath), control(answering), unread(bus) {
    registerAdaptor();
}

BusObject::~BusObject() {
    unregisterAdaptor();
}

// The work is done: that must be said whatever memory it took.
void BusObject::answered(const std::string &client, std::size_t length) {
    if (length >= longAnswer) {
        unread.requireRoomFor(length);
        makeRoomFor(2 * length + longAnswer);
    }
    unread.add(client, length);
}

} // namespace plotwerk
