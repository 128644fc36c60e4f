#include "plotwerk/server/waitingMessages.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

using namespace plotwerk;

namespace {

struct Message final : WaitingMessage {
    explicit Message(std::function<void()> how) : answering(std::move(how)) {}
    void answer() override { answering(); }

    const std::function<void()> answering;
};

} // namespace

TEST(WaitingMessages, TakeTurnsByClientAndTakeNoRoomOnceTheyAreAnswered) {
    WaitingMessages messages;
    std::string answered;
    bool fails = true;
    const auto add = [&](const char *client, std::size_t bytes, char name) {
        messages.add(client, bytes, std::make_unique<Message>([&, name] {
                         if (name == '2' && std::exchange(fails, false))
                             throw std::runtime_error("not yet");
                         answered += name;
                     }));
    };
    const auto answerAll = [&] {
        while (!messages.empty()) {
            try {
                messages.answerNext();
            } catch (const std::runtime_error &) {
                answered += '!';
            }
        }
    };
    for (const char name : {'1', '2', '3'}) add("busy", 1000, name);
    add("other", 10, 'a');
    add("third", 1, 'A');
    add("other", 10, 'b');
    EXPECT_EQ(messages.bytes(), 3021U);
    answerAll();
    EXPECT_EQ(answered, "1aA!2b3") << "one that can't be answered yet stays the next";
    EXPECT_EQ(messages.bytes(), 0U);
    add("other", 5, 'c'); // a client that comes back
    EXPECT_EQ(messages.bytes(), 5U);
    answerAll();
    EXPECT_EQ(answered.back(), 'c');
}
