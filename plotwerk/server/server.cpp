#include "plotwerk/server/server.h"

#include "plotwerk/base/log.h"
#include "plotwerk/base/memoryReserve.h"
#include "protocol/PlotwerkControlNames.h"

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
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
    setReserveAside();
    log(LogLevel::info, "owns " + busName + " as " + bus->getUniqueName());
}

// What is asked of a connection that no longer is one fails.
[[noreturn]] static void throwBusHasGone(const sdbus::Error &error) {
    throw std::runtime_error("the bus has gone: " + error.getMessage());
}

void Server::recover(const std::function<void()> &afterEach) {
    const auto listener = std::exchange(controlObject.listener, {});
    application.recover([&](std::string_view message) {
        controlObject.repeat(message);
        afterEach();
    });
    controlObject.listener = listener;
}

void Server::setListener(std::function<void(const RecordedMessage &)> listener) {
    controlObject.listener = std::move(listener);
}

sdbus::IConnection::PollData Server::pollData() const {
    try {
        return bus->getEventLoopPollData();
    } catch (const sdbus::Error &error) {
        throwBusHasGone(error);
    }
}

// Takes in all that has come, but not for ever, nor without end.
void Server::readMessages() {
    constexpr std::size_t mostBytes = 50'000'000;
    constexpr std::chrono::milliseconds longest{100};
    const auto begin = std::chrono::steady_clock::now();
    busObject.keepsWaiting = true;
    try {
        while (busObject.waiting.bytes() < mostBytes && bus->processPendingRequest() &&
               std::chrono::steady_clock::now() - begin < longest) {
        }
    } catch (...) {
        busObject.keepsWaiting = false;
        throw;
    }
    busObject.keepsWaiting = false;
}

// Who has sent messages is looked at after each work that has taken long: looking costs as much as
// short work. Without memory for a message it stays with the bus until there is some.
bool Server::processPending() {
    constexpr std::chrono::milliseconds pause{10}, longWork{1};
    try {
        if (std::chrono::steady_clock::now() - lastRead > longWork) {
            readMessages();
            lastRead = std::chrono::steady_clock::now();
        }
        bool more = true;
        if (busObject.waiting.empty())
            more = bus->processPendingRequest();
        else
            busObject.waiting.answerNext();
        setReserveAside();
        return more;
    } catch (const sdbus::Error &error) {
        if (error.getName() != "org.freedesktop.DBus.Error.NoMemory") throwBusHasGone(error);
        if (!giveReserveUp()) std::this_thread::sleep_for(pause);
        return true;
    }
}

} // namespace plotwerk
