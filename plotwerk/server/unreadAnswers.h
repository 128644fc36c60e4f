// unreadAnswers.h - clients that send messages and don't read the answers.
#ifndef PLOTWERK_SERVER_UNREADANSWERS_H
#define PLOTWERK_SERVER_UNREADANSWERS_H

#include <chrono>
#include <cstddef>
#include <functional>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <unordered_map>
#include <utility>

namespace plotwerk {

// What clients don't read piles up in the bus, and when the bus holds too much of ours, here: then
// nobody is answered any more. So the bus is asked now and then what it holds for a client; before
// it answers, it has taken all that was sent. A bus that doesn't tell counts as holding nothing.
class UnreadAnswers {
  public:
    explicit UnreadAnswers(sdbus::IConnection &bus);

    // Of a bus that tells by the function how many bytes it holds for a client.
    using HeldFor = std::function<double(const std::string &client)>;
    explicit UnreadAnswers(HeldFor told) : heldFor(std::move(told)) {}

    // Throws sdbus::Error LimitsExceeded when the client leaves more unread than one may (limit
    // unread), or much while all together leave too much. To be called before one of its messages
    // is done.
    void require(const std::string &client);

    // Throws it when the bus may have no room for an answer of so many bytes.
    void requireRoomFor(std::size_t bytes);

    // `bytes` were answered.
    void add(const std::string &client, std::size_t bytes);

  private:
    struct Client {
        double held = 0; // by the bus, or read since it was asked
        bool isCutOff = false;
    };

    void ask(const std::string &name, Client &client);
    void askForAll();
    bool holdsMuch(const Client &client) const;
    void forgetThoseWhoHoldLittle();

    const HeldFor heldFor;
    std::unordered_map<std::string, Client> clients;
    double heldForAll = 0;
    std::chrono::steady_clock::time_point askedForAll;
};

} // namespace plotwerk

#endif
