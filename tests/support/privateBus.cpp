#include "tests/support/privateBus.h"

#include <csignal>
#include <cstdlib>
#include <sdbus-c++/sdbus-c++.h>

static const char addressVariable[] = "DBUS_SESSION_BUS_ADDRESS";

PrivateBus::PrivateBus()
    : daemon({"dbus-daemon", "--nofork", "--print-address", "--config-file=" PRIVATE_BUS_CONFIG}) {
    std::string address = daemon.readLine();
    if (address.empty()) throw std::runtime_error("no dbus-daemon: " + daemon.finish().err);
    address.pop_back();
    setenv(addressVariable, address.c_str(), 1);
    observer = sdbus::createSessionBusConnectionWithAddress(address);
}

PrivateBus::~PrivateBus() {
    if (daemon.pid() > 0) stop();
    // Without an address the user's own bus would be looked for.
    setenv(addressVariable, "unix:path=/nonexistent", 1);
}

bool PrivateBus::hasOwner(const std::string &name) const {
    bool answer = false;
    sdbus::createProxy(*observer, "org.freedesktop.DBus", "/org/freedesktop/DBus")
        ->callMethod("NameHasOwner")
        .onInterface("org.freedesktop.DBus")
        .withArguments(name)
        .storeResultsTo(answer);
    return answer;
}

void PrivateBus::waitForOwner(const std::string &name) const {
    waitUntil("an owner of " + name, [&] { return hasOwner(name); });
}

void PrivateBus::waitForNoOwner(const std::string &name) const {
    waitUntil("no owner of " + name, [&] { return !hasOwner(name); });
}

// Asked to end, the daemon removes its socket.
void PrivateBus::stop() {
    daemon.sendSignal(SIGTERM);
    daemon.finish();
}
