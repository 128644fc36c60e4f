#include "plotwerk/server/server.h"

#include "plotwerk/base/log.h"
#include "plotwerk/base/programs.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <stdexcept>
#include <sys/signalfd.h>
#include <unistd.h>

namespace plotwerk {

static const std::string busName = "org.plotwerk.PlotwerkControl";
static const std::string objectPath = "/org/plotwerk/PlotwerkControl";

// SIGTERM and SIGINT end the server, SIGCHLD tells of programs that it has started.
static sigset_t awaitedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGCHLD}) sigaddset(&signals, signal);
    return signals;
}

// Takes the signals that have arrived. True when the server is to end.
static bool endIsSignalled(int signalled) {
    bool end = false;
    for (signalfd_siginfo info; read(signalled, &info, sizeof info) == sizeof info;) {
        if (info.ssi_signo == SIGCHLD)
            reapChildren();
        else
            end = true;
    }
    return end;
}

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
        const auto pid = askBus<uint32_t>(bus, "GetConnectionUnixProcessID", owner);
        return owner + ", process " + std::to_string(pid);
    } catch (const sdbus::Error &error) {
        return "unknown: " + error.getMessage();
    }
}

Server::Server(Application &application)
    : bus(connect()), controlObject(*bus, objectPath, application) {
    const sigset_t signals = awaitedSignals();
    sigprocmask(SIG_BLOCK, &signals, nullptr);

    try {
        bus->requestName(busName);
    } catch (const sdbus::Error &) {
        throw std::runtime_error("can't own " + busName + ", its owner is " + ownerOfName(*bus));
    }
    log(LogLevel::info, "owns " + busName + " as " + bus->getUniqueName());
}

void Server::run() {
    const sigset_t signals = awaitedSignals();
    const int signalled = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signalled < 0) throw std::runtime_error(std::string("signalfd: ") + std::strerror(errno));

    // The signals are looked at between any two messages, however fast these come.
    pollfd waited[2] = {{signalled, POLLIN, 0}, {}};
    try {
        do {
            const bool more = bus->processPendingRequest();
            const auto busState = bus->getEventLoopPollData();
            waited[1] = {busState.fd, busState.events, 0};
            poll(waited, 2, more ? 0 : busState.getPollTimeout());
        } while (!(waited[0].revents & POLLIN) || !endIsSignalled(signalled));
    } catch (const sdbus::Error &error) {
        close(signalled);
        throw std::runtime_error("the bus has gone: " + error.getMessage());
    }
    close(signalled);
}

} // namespace plotwerk
