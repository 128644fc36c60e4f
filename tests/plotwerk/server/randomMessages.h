// randomMessages.h - messages that nobody would send, made at random.
#ifndef TESTS_PLOTWERK_SERVER_RANDOMMESSAGES_H
#define TESTS_PLOTWERK_SERVER_RANDOMMESSAGES_H

#include "tests/plotwerk/server/serverTest.h"

#include <random>
#include <string>
#include <variant>
#include <vector>

using Rectangle = sdbus::Struct<double, double, double, double>;
using Value = std::variant<std::string, std::int32_t, double, bool, Rectangle>;
using Values = std::vector<Value>;

// What may be sent: the first is sensible, the others need not be. The first document is "doc".
const Values &valuesOf(const Method::Argument &argument);

struct Message {
    std::string method;
    Values values;
};

// They make the document that sensible messages work on, its first curve selected and copied.
extern const std::vector<Message> beginning;

class Random {
  public:
    explicit Random(unsigned seed) : engine(seed) {}

    std::size_t below(std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(engine);
    }

    // Arguments that are mostly sensible: all but one in 2, 8 or 32.
    Values arguments(const Method &method);

  private:
    Value strange(const Values &values);
    void damage(std::string &text);

    std::mt19937 engine;
};

// Throws sdbus::Error for what isn't answered.
void send(sdbus::IProxy &control, const std::string &method, const Values &values);

// Doesn't wait for the answer.
void sendAhead(sdbus::IProxy &control, const std::string &method, const Values &values,
               sdbus::async_reply_handler answered);

// Until it has passed on all that was sent.
void waitForBus(sdbus::IConnection &bus);

#endif
