// controlObject.h - what plotwerkd does for each message.
//
// A message that can't be done changes nothing, leaves a line in lastError and in the log (the
// reason, the document's name; in the log its selector, too), and gets its neutral answer: NaN, -1,
// 0, empty, false. Nothing that a message says ends the server.
#ifndef PLOTWERK_SERVER_CONTROLOBJECT_H
#define PLOTWERK_SERVER_CONTROLOBJECT_H

#include "plotwerk/application/application.h"
#include "plotwerk/base/bounds.h"
#include "plotwerk/base/log.h"
#include "plotwerk/base/memoryReserve.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/names.h"
#include "plotwerk/server/recordedMessage.h"

#include <sdbus-c++/sdbus-c++.h>

#include <chrono>
#include <cmath>
#include <functional>
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
                        std::optional<GatheredBytes> data;
                        if constexpr ((isArgument<Parameters> && ...))
                            data = encodedMessage(decimalSeparator, message.member,
                                                  *static_cast<decltype(&held)>(message.arguments));
                        return data;
                    }};
        return (this->*method)(arguments...);
    }

    // Does what the message asks for, as if the bus had brought it; it isn't answered. A message
    // that is refused leaves lastError as ever. Throws Refusal when there is no such message.
    void perform(const RecordedMessage &message);

    // Does again what a journal has recorded (encodedMessage). Throws Refusal for damaged bytes.
    void repeat(std::string_view record);

    // Hears of each message that was done, before it is answered; but not of one that is repeated,
    // nor of one with an argument that can't be recorded. None unless set.
    std::function<void(const RecordedMessage &)> listener;

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
            if (isLogged(LogLevel::debug)) log(LogLevel::debug, selector());
            work();
            tellListener();
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

    // Work with any open document; a reason not to do it is told with the document's name.
    template<class Work> void withOpen(const std::string &name, Work work) {
        Document &document = application.document(name);
        try {
            work(document);
        } catch (const Refusal &refusal) {
            throw Refusal(std::string(refusal.what()) + " (\"" + name + "\")");
        }
    }

    // The same, but with none that stands for a file that couldn't be read.
    template<class Work> void with(const std::string &name, Work work) {
        withOpen(name, [&](Document &document) {
            application.requireRead(document);
            work(document);
        });
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

    // actOnView of what selects, and tells how many curves it has found. None is refused with that
    // reason, but only when none is selected: what follows must not hit the curves before.
    template<class Reason, class Select>
    void selectIn(const std::string &name, Reason reasonForNone, Select select) {
        int found = 1;
        actOnView(name, [&](Document &document) { found = select(document); });
        if (found > 0 || repeating) return; // it was refused when the journal recorded it
        attempt([&] { withOpen(name, [&](const Document &) { throw Refusal(reasonForNone()); }); });
    }

    // Makes a change, and adds it to the document's journal before it is answered.
    template<class Change> void recorded(Document &document, Change makeChange) {
        Journal::setRoomAside();
        const auto begin = std::chrono::steady_clock::now();
        const int names = namesOfTheTime();
        makeChange();
        application.record(document, std::chrono::steady_clock::now() - begin, [&] {
            return names == namesOfTheTime() ? messageAsData() : std::nullopt;
        });
    }

    // The message that is being answered, for a journal; none when its effect depends on more than
    // what a journal records.
    std::optional<GatheredBytes> messageAsData() const;

    void tellListener() const noexcept;

    // The answer that work finds in the document, or the neutral one.
    template<class Answer, class Work>
    Answer answer(const std::string &name, Answer neutral, Work work) {
        actOn(
            name,
            [&](auto &document) -> void requires std::is_invocable_v<Work &, decltype(document)> {
                Answer found = work(document);
                if constexpr (std::is_same_v<Answer, std::string>) requireAnswer(found);
                neutral = std::move(found);
            });
        dropSignOfNaN(neutral);
        return neutral;
    }

    // Logs the exception that is being handled, and keeps its line as lastError.
    void refuse() noexcept;

    struct Message {
        const char *member;
        const void *arguments;
        std::optional<GatheredBytes> (*asData)(const Message &, char decimalSeparator);
    };

    Application &application;
    Message answered{};     // that is being answered
    bool repeating = false; // it comes from a journal
};

} // namespace plotwerk

#endif
