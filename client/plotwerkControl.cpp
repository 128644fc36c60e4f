#include "client/plotwerkControl.h"

#include <chrono>

static const std::string busName = "org.plotwerk.PlotwerkControl";
static const std::string objectPath = "/org/plotwerk/PlotwerkControl";
static constexpr std::chrono::seconds callTimeout{300};

PlotwerkControl::PlotwerkControl(sdbus::IConnection &bus)
    : ProxyInterfaces(bus, busName, objectPath) {
    registerProxy();
}

PlotwerkControl::~PlotwerkControl() {
    unregisterProxy();
}

std::unique_ptr<sdbus::IConnection> connectToPlotwerk() {
    try {
        auto bus = sdbus::createSessionBusConnection();
        bus->setMethodCallTimeout(callTimeout);

        bool hasOwner = false;
        sdbus::createProxy(*bus, "org.freedesktop.DBus", "/org/freedesktop/DBus")
            ->callMethod("NameHasOwner")
            .onInterface("org.freedesktop.DBus")
            .withArguments(busName)
            .storeResultsTo(hasOwner);
        return hasOwner ? std::move(bus) : nullptr;
    } catch (const sdbus::Error &) {
        return nullptr;
    }
}
