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
inline void putArgument(std::string &bytes, const std::string &text) {
    bytes += 's';
    putText(bytes, text);
}
inline void putArgument(std::string &bytes, std::int32_t number) {
    bytes += 'i';
    putNumber(bytes, number);
}
inline void putArgument(std::string &bytes, double number) {
    bytes += 'd';
    putNumber(bytes, number);
}
inline void putArgument(std::string &bytes, bool yes) {
    bytes += 'b';
    putNumber(bytes, static_cast<std::uint8_t>(yes));
}

// A message with its arguments, which are referred to.
template<class... Arguments>
std::string encodedMessage(char decimalSeparator, std::string_view member,
                           const std::tuple<const Arguments &...> &arguments) {
    std::string bytes(1, decimalSeparator);
    putText(bytes, member);
    std::apply([&](const auto &...each) { (putArgument(bytes, each), ...); }, arguments);
    return bytes;
}

// Throws Refusal "damaged: REASON".
RecordedMessage decodedMessage(std::string_view bytes);

} // namespace plotwerk

#endif
