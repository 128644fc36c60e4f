#include "client/plotwerkControl.h"

#include "protocol/PlotwerkControlNames.h"

#include <chrono>

static constexpr std::chrono::seconds callTimeout{300};

PlotwerkControl::PlotwerkControl(const PlotwerkConnection &connection)
    : ProxyInterfaces(*connection.bus, connection.owner, plotwerkControl::objectPath) {
    registerProxy();
}

PlotwerkControl::~PlotwerkControl() {
    unregisterProxy();
}

PlotwerkConnection connectToPlotwerk() {
    try {
        auto bus = sdbus::createSessionBusConnection();
        bus->setMethodCallTimeout(callTimeout);

        std::string owner;
        sdbus::createProxy(*bus, "org.freedesktop.DBus", "/org/freedesktop/DBus")
            ->callMethod("GetNameOwner")
            .onInterface("org.freedesktop.DBus")
            .withArguments(std::string(plotwerkControl::busName))
            .storeResultsTo(owner);
        return {std::move(bus), owner};
    } catch (const sdbus::Error &) {
        return {};
    }
}
