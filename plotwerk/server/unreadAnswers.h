// unreadAnswers.h - clients that send messages and don't read the answers.
#ifndef PLOTWERK_SERVER_UNREADANSWERS_H
#define PLOTWERK_SERVER_UNREADANSWERS_H

#include <cstddef>
#include <memory>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <unordered_map>

namespace plotwerk {

// What a client doesn't read piles up in the bus, and when the bus holds too much of ours, here:
// then nobody is answered any more. So the bus is asked now and then what it holds for a client;
// before it answers, it has taken all that was sent. A bus that doesn't tell counts as holding
// nothing.
class UnreadAnswers {
  public:
    explicit UnreadAnswers(sdbus::IConnection &bus);

    // Throws sdbus::Error LimitsExceeded when the client leaves more unread than one may (limit
    // unread). To be called before one of its messages is done.
    void require(const std::string &client);

    // `bytes` were answered.
    void add(const std::string &client, std::size_t bytes);

  private:
    double heldFor(const std::string &client) const;

    std::unique_ptr<sdbus::IProxy> daemon;
    // By client, what it may yet be sent before the bus is asked.
    std::unordered_map<std::string, double> left;
};

} // namespace plotwerk

#endif
