// recordedMessage.h - a message as data: what was asked for, and what its effect depends on beside
// the document.
#ifndef PLOTWERK_SERVER_RECORDEDMESSAGE_H
#define PLOTWERK_SERVER_RECORDEDMESSAGE_H

#include <cstdint>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace plotwerk {

using Argument = std::variant<std::string, std::int32_t, double, bool>;

struct RecordedMessage {
    char decimalSeparator = '.'; // in force when the message was answered
    std::string member;
    std::vector<Argument> arguments;
};

// The message with its arguments, which may have been read before. Throws Refusal when one is of a
// type that no message which changes a document has.
RecordedMessage recordedMessage(sdbus::Message &message, char decimalSeparator);

// As bytes: doubles bit for bit, texts byte for byte.
std::string encodedMessage(const RecordedMessage &message);

// Throws Refusal "damaged: REASON".
RecordedMessage decodedMessage(std::string_view bytes);

} // namespace plotwerk

#endif
