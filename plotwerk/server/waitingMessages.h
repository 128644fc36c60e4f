// waitingMessages.h - messages that have been read and wait to be answered.
#ifndef PLOTWERK_SERVER_WAITINGMESSAGES_H
#define PLOTWERK_SERVER_WAITINGMESSAGES_H

#include <cstddef>
#include <functional>
#include <list>
#include <map>
#include <string>

namespace plotwerk {

// Clients take turns, a message each: one that sends many doesn't make the others wait for all of
// them. The messages of one client keep their order.
class WaitingMessages {
  public:
    // `answer` is called when it is the message's turn; until then the message takes `bytes`.
    void add(const std::string &client, std::size_t bytes, std::function<void()> answer);

    bool empty() const { return turns.empty() && unfinished.empty(); }
    std::size_t bytes() const { return bytesOfAll; }

    // Answers the next one and removes it. Throws what answering it throws, and then it stays.
    void answerNext();

  private:
    struct Message {
        std::size_t bytes;
        std::function<void()> answer;
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
