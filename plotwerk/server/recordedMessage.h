// recordedMessage.h - a message as data: what was asked for, and what its effect depends on beside
// the document.
#ifndef PLOTWERK_SERVER_RECORDEDMESSAGE_H
#define PLOTWERK_SERVER_RECORDEDMESSAGE_H

#include "plotwerk/journal/bytes.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <variant>
#include <vector>

namespace plotwerk {

using Argument = std::variant<std::string, std::int32_t, double, bool>;

template<class T, class... Ts> constexpr bool isAmong(const std::variant<Ts...> *) {
    return (std::is_same_v<T, Ts> || ...);
}

// Whether a message that changes a document can have an argument of this type.
template<class T> constexpr bool isArgument = isAmong<T>(static_cast<const Argument *>(nullptr));

struct RecordedMessage {
    char decimalSeparator = '.'; // in force when the message was answered
    std::string member;
    std::vector<Argument> arguments;
};

// Behind the letter of its type on the bus: doubles bit for bit, texts byte for byte.
inline void putArgument(GatheredBytes &bytes, const std::string &text) {
    bytes.putNumber('s');
    bytes.putText(text);
}
inline void putArgument(GatheredBytes &bytes, std::int32_t number) {
    bytes.putNumber('i');
    bytes.putNumber(number);
}
inline void putArgument(GatheredBytes &bytes, double number) {
    bytes.putNumber('d');
    bytes.putNumber(number);
}
inline void putArgument(GatheredBytes &bytes, bool yes) {
    bytes.putNumber('b');
    bytes.putNumber(static_cast<std::uint8_t>(yes));
}

// A message with its arguments, which are referred to.
template<class... Arguments>
GatheredBytes encodedMessage(char decimalSeparator, std::string_view member,
                             const std::tuple<const Arguments &...> &arguments) {
    GatheredBytes bytes;
    bytes.putNumber(decimalSeparator);
    bytes.putText(member);
    std::apply([&](const auto &...each) { (putArgument(bytes, each), ...); }, arguments);
    return bytes;
}

// Throws Refusal "damaged: REASON".
RecordedMessage decodedMessage(std::string_view bytes);

} // namespace plotwerk

#endif
