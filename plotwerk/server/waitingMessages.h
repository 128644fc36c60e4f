// waitingMessages.h - messages that have been read and wait to be answered.
#ifndef PLOTWERK_SERVER_WAITINGMESSAGES_H
#define PLOTWERK_SERVER_WAITINGMESSAGES_H

#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <string>

namespace plotwerk {

class WaitingMessage {
  public:
    WaitingMessage() = default;
    virtual ~WaitingMessage() = default;
    WaitingMessage(const WaitingMessage &) = delete;
    WaitingMessage &operator=(const WaitingMessage &) = delete;

    // Throws when it can't be answered yet.
    virtual void answer() = 0;
};

// Clients take turns, a message each: one that sends many doesn't make the others wait for all of
// them. The messages of one client keep their order.
class WaitingMessages {
  public:
    // Until it is answered the message takes `bytes`.
    void add(const std::string &client, std::size_t bytes, std::unique_ptr<WaitingMessage> message);

    bool empty() const { return turns.empty() && unfinished.empty(); }
    std::size_t bytes() const { return bytesOfAll; }

    // Answers the next one and removes it. Throws what answering it throws, and then it stays.
    void answerNext();

  private:
    struct Message {
        std::size_t bytes;
        std::unique_ptr<WaitingMessage> message;
    };
    using Clients = std::map<std::string, std::list<Message>>; // those that have messages

    void takeNext(std::list<Message> &taken);

    Clients clients;
    std::list<Clients::iterator> turns;
    std::list<Message> unfinished; // which could not be answered yet
    std::size_t bytesOfAll = 0;
};

} // namespace plotwerk

#endif
