#include "plotwerk/server/unreadAnswers.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/log.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>

namespace plotwerk {

UnreadAnswers::UnreadAnswers(sdbus::IConnection &bus)
    : daemon(sdbus::createProxy(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus")) {
}

double UnreadAnswers::heldFor(const std::string &client) const {
    std::map<std::string, sdbus::Variant> numbers;
    try {
        daemon->callMethod("GetConnectionStats")
            .onInterface("org.freedesktop.DBus.Debug.Stats")
            .withTimeout(std::chrono::milliseconds(500))
            .withArguments(client)
            .storeResultsTo(numbers);
        return numbers.at("OutgoingBytes").get<std::uint32_t>();
    } catch (const sdbus::Error &error) {
        const bool late = error.getName() == "org.freedesktop.DBus.Error.Timeout" ||
                          error.getName() == "org.freedesktop.DBus.Error.NoReply";
        return late ? std::numeric_limits<double>::infinity() : 0;
    } catch (const std::out_of_range &) {
        return 0;
    }
}

void UnreadAnswers::require(const std::string &client) {
    const auto found = left.find(client);
    if (found == left.end() || found->second > 0) return;
    const bool isCutOff = std::isinf(found->second);
    found->second = mostUnread() - heldFor(client);
    if (found->second > 0) return;
    found->second = -std::numeric_limits<double>::infinity();
    if (!isCutOff)
        log(LogLevel::warning, "client " + client + " doesn't read its answers (limit unread)");
    throw sdbus::Error("org.freedesktop.DBus.Error.LimitsExceeded",
                       "too many answers wait to be read (limit unread)");
}

void UnreadAnswers::add(const std::string &client, std::size_t bytes) {
    constexpr std::size_t mostClients = 1000; // most of them have gone
    constexpr double overhead = 256;
    if (left.size() > mostClients) left.clear();
    left.try_emplace(client, mostUnread()).first->second -= static_cast<double>(bytes) + overhead;
}

} // namespace plotwerk
