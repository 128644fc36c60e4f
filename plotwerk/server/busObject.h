// busObject.h - the object on the bus that clients send their messages to.
#ifndef PLOTWERK_SERVER_BUSOBJECT_H
#define PLOTWERK_SERVER_BUSOBJECT_H

#include "adaptor.h"
#include "plotwerk/server/controlObject.h"
#include "plotwerk/server/unreadAnswers.h"
#include "plotwerk/server/waitingMessages.h"

#include <cstddef>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

namespace plotwerk {

class BusObject final : public sdbus::AdaptorInterfaces<org::plotwerk::PlotwerkControl_adaptor> {
  public:
    // From here on messages of the bus come in.
    BusObject(sdbus::IConnection &bus, ControlObject &answering);
    ~BusObject();
    BusObject(const BusObject &) = delete;
    BusObject &operator=(const BusObject &) = delete;

    // While set, what comes in has to wait; otherwise it is answered at once.
    bool keepsWaiting = false;
    WaitingMessages waiting;

  private:
    template<class T> static std::size_t lengthOf(const T &) { return sizeof(T); }
    static std::size_t lengthOf(const std::string &text) { return text.size(); }
    template<class... Ts> static std::size_t lengthOf(const std::tuple<Ts...> &values) {
        return std::apply([](const auto &...each) { return (lengthOf(each) + ...); }, values);
    }

    void answered(const std::string &client, std::size_t length);

    template<class... Results, class Answer, class... Parameters>
    void receive(sdbus::Result<Results...> &&result, const char *member,
                 Answer (ControlObject::*method)(const Parameters &...),
                 std::type_identity_t<Parameters>... arguments) {
        const std::string client = getObject().getCurrentlyProcessedMessage()->getSender();
        const auto work = [this, member, method](const Parameters &...each) {
            return control.answerTo(member, method, each...);
        };
        if (!keepsWaiting) return answer(client, result, [&] { return work(arguments...); });

        constexpr std::size_t overhead = 1000;
        const std::size_t bytes = (lengthOf(arguments) + ... + overhead);
        // shared: a function must be one that can be copied
        auto reply = std::make_shared<sdbus::Result<Results...>>(std::move(result));
        auto held = std::make_shared<std::tuple<Parameters...>>(std::move(arguments)...);
        waiting.add(client, bytes, [this, client, work, reply, held] {
            answer(client, *reply, [&] { return std::apply(work, *held); });
        });
    }

    template<class Result, class Work>
    void answer(const std::string &client, const Result &reply, Work work) {
        try {
            unread.require(client);
            if constexpr (std::is_void_v<decltype(work())>) {
                work();
                answered(client, 0);
                reply.returnResults();
            } else {
                const auto result = work();
                answered(client, lengthOf(result));
                give(reply, result);
            }
        } catch (const sdbus::Error &error) {
            reply.returnError(error);
        }
    }

    template<class Result, class Value> static void give(const Result &reply, const Value &value) {
        reply.returnResults(value);
    }
    template<class Result, class... Values>
    static void give(const Result &reply, const std::tuple<Values...> &values) {
        std::apply([&](const Values &...each) { reply.returnResults(each...); }, values);
    }

    // The methods of the protocol.
#include "messageReceivers.h"

    ControlObject &control;
    UnreadAnswers unread;
};

} // namespace plotwerk

#endif
