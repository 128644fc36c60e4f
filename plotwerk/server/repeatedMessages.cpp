// Messages that the bus hasn't brought, a journal's among them, done by the methods that answer
// them.
#include "plotwerk/base/refusal.h"
#include "plotwerk/server/controlObject.h"

#include <utility>
#include <vector>

namespace plotwerk {

using Arguments = std::vector<Argument>;

template<class Answer, class... Parameters>
static void repeatMessage(ControlObject &object, const char *member,
                          Answer (ControlObject::*method)(const Parameters &...),
                          const Arguments &arguments) {
    if constexpr ((isArgument<Parameters> && ...)) {
        [&]<std::size_t... i>(std::index_sequence<i...>) {
            if (arguments.size() != sizeof...(i) ||
                !(std::holds_alternative<Parameters>(arguments[i]) && ...)) {
                throw Refusal("damaged: the arguments are not those of the message");
            }
            object.answerTo(member, method, std::get<Parameters>(arguments[i])...);
        }
        (std::index_sequence_for<Parameters...>());
    } else {
        throw Refusal("damaged: a message that changes no document");
    }
}

void ControlObject::perform(const RecordedMessage &message) {
    static constexpr struct {
        std::string_view member;
        void (*repeat)(ControlObject &, const Arguments &);
    } repetitions[] = {
#include "repetitions.h"
    };
    for (const auto &each : repetitions) {
        if (each.member != message.member) continue;
        each.repeat(*this, message.arguments);
        return;
    }
    throw Refusal("damaged: there is no message " + message.member);
}

void ControlObject::repeat(std::string_view record) {
    const RecordedMessage message = decodedMessage(record);
    application.decimalSeparator = message.decimalSeparator;
    repeating = true;
    try {
        perform(message);
    } catch (...) {
        repeating = false;
        throw;
    }
    repeating = false;
}

} // namespace plotwerk
