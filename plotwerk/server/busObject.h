// busObject.h - the object on the bus that clients send their messages to.
#ifndef PLOTWERK_SERVER_BUSOBJECT_H
#define PLOTWERK_SERVER_BUSOBJECT_H

#include "plotwerk/server/controlObject.h"
#include "plotwerk/server/unreadAnswers.h"
#include "protocol/PlotwerkControlAdaptor.h"

#include <cstddef>
#include <string>
#include <tuple>
#include <type_traits>

namespace plotwerk {

class BusObject final : public sdbus::AdaptorInterfaces<org::plotwerk::PlotwerkControl_adaptor> {
  public:
    // Answers on the bus from here on.
    BusObject(sdbus::IConnection &bus, ControlObject &answering);
    ~BusObject();
    BusObject(const BusObject &) = delete;
    BusObject &operator=(const BusObject &) = delete;

  private:
    template<class T> static std::size_t lengthOf(const T &) { return sizeof(T); }
    static std::size_t lengthOf(const std::string &text) { return text.size(); }
    template<class... Ts> static std::size_t lengthOf(const std::tuple<Ts...> &values) {
        return std::apply([](const auto &...each) { return (lengthOf(each) + ...); }, values);
    }

    void answered(const std::string &client, std::size_t length);

    template<class Answer, class... Parameters>
    Answer receive(const char *member, Answer (ControlObject::*method)(const Parameters &...),
                   const Parameters &...arguments) {
        const std::string client = getObject().getCurrentlyProcessedMessage()->getSender();
        unread.require(client);
        if constexpr (std::is_void_v<Answer>) {
            control.answerTo(member, method, arguments...);
            answered(client, 0);
        } else {
            Answer answer = control.answerTo(member, method, arguments...);
            answered(client, lengthOf(answer));
            return answer;
        }
    }

    // The methods of the protocol.
#include "messageReceivers.h"

    ControlObject &control;
    UnreadAnswers unread;
};

} // namespace plotwerk

#endif
