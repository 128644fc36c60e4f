// busObject.h - the object on the bus that clients send their messages to.
#ifndef PLOTWERK_SERVER_BUSOBJECT_H
#define PLOTWERK_SERVER_BUSOBJECT_H

#include "adaptor.h"
#include "plotwerk/server/controlObject.h"
#include "plotwerk/server/unreadAnswers.h"
#include "plotwerk/server/waitingMessages.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

namespace plotwerk {

bool isNoMemory(const sdbus::Error &error);

class BusObject final : public sdbus::AdaptorInterfaces<org::plotwerk::PlotwerkControl_adaptor> {
  public:
    // From here on messages of the bus come in.
    BusObject(sdbus::IConnection &bus, ControlObject &answering);
    ~BusObject();
    BusObject(const BusObject &) = delete;
    BusObject &operator=(const BusObject &) = delete;

    // What has come in waits here to be answered.
    WaitingMessages waiting;

  private:
    template<class T> static std::size_t lengthOf(const T &) { return sizeof(T); }
    static std::size_t lengthOf(const std::string &text) { return text.size(); }
    template<class... Ts> static std::size_t lengthOf(const std::tuple<Ts...> &values) {
        return std::apply(
            [](const auto &...each) { return (lengthOf(each) + ... + std::size_t{0}); }, values);
    }

    // A message that has come in. What it leaves undone when it finds no memory is done when it is
    // answered again, but no work twice.
    template<class Reply, class Work, class... Parameters>
    class Received final : public WaitingMessage {
      public:
        Received(BusObject &receiving, std::string sender, Reply &&to, Work how,
                 Parameters &&...given)
            : object(receiving),
              client(std::move(sender)),
              reply(std::move(to)),
              work(std::move(how)),
              arguments(std::in_place, std::move(given)...) {}

        void answer() override {
            try {
                if (!result) {
                    object.unread.require(client);
                    result.emplace(std::apply(work, *arguments));
                    arguments.reset();
                    object.answered(client, lengthOf(*result));
                }
                give(reply, *result);
            } catch (const sdbus::Error &error) {
                if (result && lengthOf(*result) < longAnswer && isNoMemory(error)) throw;
                reply.returnError(error);
            }
        }

      private:
        BusObject &object;
        const std::string client;
        const Reply reply;
        const Work work;
        std::optional<std::tuple<Parameters...>> arguments; // until the work is done
        std::optional<std::invoke_result_t<Work, const Parameters &...>> result;
    };

    // What has changed something has a shorter answer, which can wait for memory.
    static constexpr std::size_t longAnswer = 1 << 16;

    void answered(const std::string &client, std::size_t length);

    template<class... Results, class Answer, class... Parameters>
    void receive(sdbus::Result<Results...> &&result, const char *member,
                 Answer (ControlObject::*method)(const Parameters &...),
                 std::type_identity_t<Parameters>... arguments) {
        const auto work = [this, member, method](const Parameters &...each) {
            if constexpr (std::is_void_v<Answer>) {
                control.answerTo(member, method, each...);
                return std::tuple<>();
            } else {
                return control.answerTo(member, method, each...);
            }
        };
        using Message = Received<sdbus::Result<Results...>, decltype(work), Parameters...>;
        // the arguments are there twice: as the bus library has read them, too
        constexpr std::size_t overhead = 1500;
        const std::size_t bytes = 2 * (lengthOf(arguments) + ... + overhead);
        const std::string client = getObject().getCurrentlyProcessedMessage()->getSender();
        waiting.add(client, bytes,
                    std::make_unique<Message>(*this, client, std::move(result), work,
                                              std::move(arguments)...));
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
