#include "plotwerk/server/server.h"

#include "plotwerk/base/log.h"
#include "plotwerk/base/memoryReserve.h"
#include "protocol/PlotwerkControlNames.h"

#include <chrono>
#include <exception>
#include <new>
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

void Server::recover(const Application::GoesOn &goesOn) {
    application.recover([&](std::string_view message) { controlObject.repeat(message); }, goesOn);
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

namespace {

// The bus library answers only errors of its own kind. Any other exception would leave it in the
// middle of a message, and every later message refused.
struct NoMemory final : std::bad_alloc, sdbus::Error {
    using Error::Error;
    const char *what() const noexcept override { return Error::what(); }
};

} // namespace

// Made while there is memory for it.
static const std::exception_ptr noMemory =
    std::make_exception_ptr(NoMemory("org.freedesktop.DBus.Error.NoMemory", "not enough memory"));

// Takes in one message. False when none has come.
bool Server::readMessage() {
    const FailingBy failing([] { std::rethrow_exception(noMemory); });
    return bus->processPendingRequest();
}

// Takes in all that has come, but not for ever, nor without end. False when no more has come.
bool Server::readMessages() {
    constexpr std::size_t mostBytes = 50'000'000;
    constexpr std::chrono::milliseconds longest{100};
    const auto begin = std::chrono::steady_clock::now();
    while (busObject.waiting.bytes() < mostBytes &&
           std::chrono::steady_clock::now() - begin < longest) {
        if (!readMessage()) return false;
    }
    return true;
}

// Does the work unless there is no memory for it.
template<class Work> static bool findsMemory(Work work) {
    try {
        work();
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    } catch (const sdbus::Error &error) {
        if (!isNoMemory(error)) throwBusHasGone(error);
        return false;
    }
}

// Who has sent messages is looked at after each work that has taken long: looking costs as much as
// short work. Where there is no memory, a message stays with the bus until there is some, and an
// answer is given later.
bool Server::processPending() {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds pause{10}, longWork{1};
    bool more = true;
    const bool isRead = findsMemory([&] {
        if (Clock::now() - lastRead > longWork) {
            more = readMessages();
            lastRead = Clock::now();
        } else if (busObject.waiting.empty()) {
            more = readMessage();
        }
    });
    if (busObject.waiting.empty() && isRead) {
        setReserveAside();
        return more;
    }
    const bool isAnswered = findsMemory([&] {
        if (!busObject.waiting.empty()) busObject.waiting.answerNext();
    });
    if (isRead && isAnswered) {
        setReserveAside();
        return !busObject.waiting.empty();
    }
    if (!giveReserveUp() && (!isAnswered || busObject.waiting.empty()))
        std::this_thread::sleep_for(pause);
    return true;
}

} // namespace plotwerk
