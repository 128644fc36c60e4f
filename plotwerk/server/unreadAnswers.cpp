#include "plotwerk/server/unreadAnswers.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/log.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>

namespace plotwerk {

// What a bus takes from one sender before it stops reading, but for messages that it is reading.
static constexpr double roomOfBus = 980e6;

// From here on those who hold most get no more: two of the longest answers find room beside, and
// one that is on its way.
static double mostUnreadByAll() {
    return std::min(3 * mostUnread(), roomOfBus - 3 * longestAnswer());
}

static double heldByBus(sdbus::IProxy &daemon, const std::string &client) {
    std::map<std::string, sdbus::Variant> numbers;
    try {
        daemon.callMethod("GetConnectionStats")
            .onInterface("org.freedesktop.DBus.Debug.Stats")
            .withTimeout(std::chrono::milliseconds(500))
            .withArguments(client)
            .storeResultsTo(numbers);
        return numbers.at("OutgoingBytes").get<std::uint32_t>();
    } catch (const sdbus::Error &error) {
        const bool late = error.getName() == "org.freedesktop.DBus.Error.Timeout" ||
                          error.getName() == "org.freedesktop.DBus.Error.NoReply";
        return late ? mostUnread() : 0; // cut off until the bus answers
    } catch (const std::out_of_range &) {
        return 0;
    }
}

UnreadAnswers::UnreadAnswers(sdbus::IConnection &bus)
    : UnreadAnswers([daemon = std::shared_ptr(
                         sdbus::createProxy(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus"))](
                        const std::string &client) { return heldByBus(*daemon, client); }) {
}

void UnreadAnswers::ask(const std::string &name, Client &client) {
    const double held = heldFor(name);
    heldForAll += held - client.held;
    client.held = held;
}

// Once a second and for half a second at most: there may be many.
void UnreadAnswers::askForAll() {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point now = Clock::now();
    if (now - askedForAll < std::chrono::seconds(1)) return;
    askedForAll = now;
    for (auto &[name, client] : clients) {
        if (client.held > 0) ask(name, client);
        if (Clock::now() - now > std::chrono::milliseconds(500)) return;
    }
}

// A client that reads has little unread at any moment beside those that don't.
bool UnreadAnswers::holdsMuch(const Client &client) const {
    const auto holders =
        std::ranges::count_if(clients, [](const auto &each) { return each.second.held > 0; });
    return client.held * 4 * static_cast<double>(holders) > heldForAll;
}

void UnreadAnswers::require(const std::string &client) {
    const auto found = clients.find(client);
    if (found == clients.end()) return;
    Client &asking = found->second;
    const auto areTooMany = [this] { return heldForAll >= mostUnreadByAll(); };
    if (asking.held < mostUnread() && !areTooMany()) return;

    ask(client, asking);
    if (areTooMany()) askForAll();
    const bool wasCutOff = asking.isCutOff;
    asking.isCutOff = asking.held >= mostUnread() || (areTooMany() && holdsMuch(asking));
    if (!asking.isCutOff) return;
    if (!wasCutOff)
        log(LogLevel::warning, "client " + client + " doesn't read its answers (limit unread)");
    throw sdbus::Error("org.freedesktop.DBus.Error.LimitsExceeded",
                       "too many answers wait to be read (limit unread)");
}

void UnreadAnswers::requireRoomFor(std::size_t bytes) {
    const auto hasRoom = [&] { return heldForAll + static_cast<double>(bytes) <= roomOfBus; };
    if (!hasRoom()) askForAll();
    if (!hasRoom())
        throw sdbus::Error("org.freedesktop.DBus.Error.LimitsExceeded",
                           "too many answers to others wait to be read");
}

// Most of them have gone.
void UnreadAnswers::forgetThoseWhoHoldLittle() {
    constexpr double little = 1e5;
    std::erase_if(clients, [&](const auto &each) {
        if (each.second.held >= little) return false;
        heldForAll -= each.second.held;
        return true;
    });
}

void UnreadAnswers::add(const std::string &client, std::size_t bytes) {
    constexpr std::size_t mostClients = 1000;
    constexpr double overhead = 256;
    if (clients.size() > mostClients) {
        askForAll();
        forgetThoseWhoHoldLittle();
    }
    const double added = static_cast<double>(bytes) + overhead;
    clients[client].held += added;
    heldForAll += added;
}

} // namespace plotwerk
