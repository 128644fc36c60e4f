#include "plotwerk/server/waitingMessages.h"

#include <utility>

namespace plotwerk {

void WaitingMessages::add(const std::string &client, std::size_t bytes,
                          std::unique_ptr<WaitingMessage> message) {
    // what may throw comes first
    std::list<Message> added;
    added.push_back({bytes, std::move(message)});
    std::list<Clients::iterator> turn(1);
    const auto [messages, isFirst] = clients.try_emplace(client);
    if (isFirst) {
        turn.front() = messages;
        turns.splice(turns.end(), turn);
    }
    messages->second.splice(messages->second.end(), added);
    bytesOfAll += bytes;
}

// Takes the message whose turn it is. Allocates nothing.
void WaitingMessages::takeNext(std::list<Message> &taken) {
    const auto client = turns.front();
    std::list<Message> &messages = client->second;
    bytesOfAll -= messages.front().bytes;
    taken.splice(taken.end(), messages, messages.begin());
    if (messages.empty()) {
        turns.pop_front();
        clients.erase(client);
    } else {
        turns.splice(turns.end(), turns, turns.begin());
    }
}

void WaitingMessages::answerNext() {
    std::list<Message> taken = std::exchange(unfinished, {});
    if (taken.empty()) takeNext(taken);
    try {
        taken.front().message->answer();
    } catch (...) {
        unfinished = std::move(taken);
        throw;
    }
}

} // namespace plotwerk
