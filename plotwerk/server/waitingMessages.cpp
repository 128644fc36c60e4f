#include "plotwerk/server/waitingMessages.h"

#include <utility>

namespace plotwerk {

void WaitingMessages::add(const std::string &client, std::size_t bytes,
                          std::function<void()> answer) {
    const auto [messages, isFirst] = clients.try_emplace(client);
    if (isFirst) turns.push_back(messages);
    messages->second.push_back({bytes, std::move(answer)});
    bytesOfAll += bytes;
}

void WaitingMessages::answerNext() {
    const auto client = turns.front();
    const Message message = std::move(client->second.front());
    client->second.pop_front();
    bytesOfAll -= message.bytes;
    if (client->second.empty()) {
        turns.pop_front();
        clients.erase(client);
    } else {
        turns.splice(turns.end(), turns, turns.begin());
    }
    message.answer();
}

} // namespace plotwerk
