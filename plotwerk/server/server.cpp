#include "plotwerk/server/server.h"

#include "plotwerk/base/log.h"
#include "protocol/PlotwerkControlNames.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace plotwerk {

static const std::string busName = plotwerkControl::busName;

static std::unique_ptr<sdbus::IConnection> connect() {
    try {
        return sdbus::createSessionBusConnection();
    } catch (const sdbus::Error &error) {
        throw std::runtime_error("can't connect to the session bus: " + error.getMessage());
    }
}

template<class Answer>
static Answer askBus(sdbus::IConnection &bus, const char *method, const std::string &name) {
    Answer answer{};
    sdbus::createProxy(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus")
        ->callMethod(method)
        .onInterface("org.freedesktop.DBus")
        .withArguments(name)
        .storeResultsTo(answer);
    return answer;
}

static std::string ownerOfName(sdbus::IConnection &bus) {
    try {
        const auto owner = askBus<std::string>(bus, "GetNameOwner", busName);
        const auto pid = askBus<std::uint32_t>(bus, "GetConnectionUnixProcessID", owner);
        return owner + ", process " + std::to_string(pid);
    } catch (const sdbus::Error &error) {
        return "unknown: " + error.getMessage();
    }
}

Server::Server(Application &served)
    : application(served), bus(connect()), controlObject(served), busObject(*bus, controlObject) {
    try {
        bus->requestName(busName);
    } catch (const sdbus::Error &) {
        throw std::runtime_error("can't own " + busName + ", its owner is " + ownerOfName(*bus));
    }
    log(LogLevel::info, "owns " + busName + " as " + bus->getUniqueName());
}

// What is asked of a connection that no longer is one fails.
template<class Work> static auto onLivingBus(Work work) {
    try {
        return work();
    } catch (const sdbus::Error &error) {
        throw std::runtime_error("the bus has gone: " + error.getMessage());
    }
}

void Server::recover() {
    const auto listener = std::exchange(controlObject.listener, {});
    application.recover([this](std::string_view message) { controlObject.repeat(message); });
    controlObject.listener = listener;
}

void Server::setListener(std::function<void(const RecordedMessage &)> listener) {
    controlObject.listener = std::move(listener);
}

sdbus::IConnection::PollData Server::pollData() const {
    return onLivingBus([&] { return bus->getEventLoopPollData(); });
}

bool Server::processPending() {
    return onLivingBus([&] { return bus->processPendingRequest(); });
}

} // namespace plotwerk
