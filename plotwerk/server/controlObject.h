// controlObject.h - what plotwerkd does for each message.
//
// A message that can't be done changes nothing, leaves a line in the log and in lastError (its
// selector, the document's name and the reason), and gets its neutral answer: NaN, -1, 0, empty,
// false. Nothing that a message says ends the server.
#ifndef PLOTWERK_SERVER_CONTROLOBJECT_H
#define PLOTWERK_SERVER_CONTROLOBJECT_H

#include "plotwerk/application/application.h"
#include "plotwerk/base/log.h"
#include "plotwerk/base/memoryReserve.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/names.h"
#include "plotwerk/server/recordedMessage.h"

#include <sdbus-c++/sdbus-c++.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace plotwerk {

using Rectangle = sdbus::Struct<double, double, double, double>;

// NaN as clients are to print it, "nan": arithmetic gives either sign (0/0 the negative one).
template<class Value> void dropSignOfNaN(Value &value) {
    if constexpr (std::is_same_v<Value, double>) value = stored(value);
}
template<class... Values> void dropSignOfNaN(std::tuple<Values...> &values) {
    std::apply([](auto &...value) { (dropSignOfNaN(value), ...); }, values);
}

class ControlObject {
  public:
    explicit ControlObject(Application &served) : application(served) {}
    ControlObject(const ControlObject &) = delete;
    ControlObject &operator=(const ControlObject &) = delete;

    // Answers a message by the method that has its name.
    template<class Answer, class... Parameters>
    Answer answerTo(const char *member, Answer (ControlObject::*method)(const Parameters &...),
                    const Parameters &...arguments) {
        const std::tuple<const Parameters &...> held(arguments...);
        answered = {member, &held, [](const Message &message, char decimalSeparator) {
                        std::optional<std::string> data;
                        if constexpr ((isArgument<Parameters> && ...))
                            data = encodedMessage(decimalSeparator, message.member,
                                                  *static_cast<decltype(&held)>(message.arguments));
                        return data;
                    }};
        return (this->*method)(arguments...);
    }

    // Does again what a journal has recorded (encodedMessage). Throws Refusal for damaged bytes; a
    // message that is refused leaves lastError as ever.
    void repeat(std::string_view record);

    // The methods of the protocol, a message each; *Messages.cpp define them. To be called by
    // answerTo.
#include "messageDeclarations.h"

  private:
    static constexpr double nan = std::numeric_limits<double>::quiet_NaN();

    // Of the message that is being answered.
    std::string_view selector() const;

    // Does the work of a message. True when it was done; otherwise it has been refused.
    template<class Work> bool attempt(Work work) {
        try {
            const WithoutReserve withoutReserve;
            log(LogLevel::debug, selector());
            work();
            return true;
        } catch (...) {
            refuse();
            return false;
        }
    }

    // attempt for a message that clears lastError when it was done: all but those that only ask
    // about the application. A client asks for the front document before it can ask for lastError.
    template<class Work> void act(Work work) {
        if (attempt(work)) application.lastError.clear();
    }

    // Work with the document; a reason not to do it is told with the document's name.
    template<class Work> void with(const std::string &name, Work work) {
        Document &document = application.document(name);
        try {
            work(document);
        } catch (const Refusal &refusal) {
            throw Refusal('"' + name + "\": " + refusal.what());
        }
    }

    // Work that asks for a document that it may change counts as a change: see change.h.
    template<class Work> void workOn(const std::string &name, Work work) {
        if constexpr (std::is_invocable_v<Work &, const Document &>)
            with(name, work);
        else
            with(name,
                 [&](Document &document) { recorded(document, [&] { change(document, work); }); });
    }
    template<class Work> void actOn(const std::string &name, Work work) {
        act([&] { workOn(name, work); });
    }

    // As actOn, of what nobody would save the document for.
    template<class Work> void actOnView(const std::string &name, Work work) {
        act([&] {
            with(name, [&](Document &document) {
                recorded(document, [&] { changeView(document, work); });
            });
        });
    }

    // Makes a change, and adds it to the document's journal before it is answered.
    template<class Change> void recorded(Document &document, Change makeChange) {
        const auto begin = std::chrono::steady_clock::now();
        const int names = namesOfTheTime();
        makeChange();
        application.record(document, std::chrono::steady_clock::now() - begin, [&] {
            return names == namesOfTheTime() ? messageAsData() : std::nullopt;
        });
    }

    // The message that is being answered; none when its effect depends on more than what a journal
    // records.
    std::optional<std::string> messageAsData() const;

    // The answer that work finds in the document, or the neutral one.
    template<class Answer, class Work>
    Answer answer(const std::string &name, Answer neutral, Work work) {
        actOn(
            name,
            [&](auto &document) -> void requires std::is_invocable_v<Work &, decltype(document)> {
                neutral = work(document);
            });
        dropSignOfNaN(neutral);
        return neutral;
    }

    // Logs the exception that is being handled, and keeps its line as lastError.
    void refuse() noexcept;

    struct Message {
        const char *member;
        const void *arguments;
        std::optional<std::string> (*asData)(const Message &, char decimalSeparator);
    };

    Application &application;
    Message answered{}; // that is being answered
};

} // namespace plotwerk

#endif
