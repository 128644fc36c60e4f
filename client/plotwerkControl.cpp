#include "client/plotwerkControl.h"

#include <chrono>

static const std::string busName = "org.plotwerk.PlotwerkControl";
static const std::string objectPath = "/org/plotwerk/PlotwerkControl";
static constexpr std::chrono::seconds callTimeout{300};

PlotwerkControl::PlotwerkControl(const PlotwerkConnection &connection)
    : ProxyInterfaces(*connection.bus, connection.owner, objectPath) {
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
            .withArguments(busName)
            .storeResultsTo(owner);
        return {std::move(bus), owner};
    } catch (const sdbus::Error &) {
        return {};
    }
}
