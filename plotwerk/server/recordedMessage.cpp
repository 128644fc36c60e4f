#include "plotwerk/server/recordedMessage.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/journal/bytes.h"

namespace plotwerk {

RecordedMessage recordedMessage(sdbus::Message &message, char decimalSeparator) {
    RecordedMessage recorded{decimalSeparator, message.getMemberName(), {}};
    message.rewind(true);
    std::string type, contents;
    for (message.peekType(type, contents); message && !type.empty() && type[0] != '\0';
         message.peekType(type, contents)) {
        if (type == "s") {
            char *text = nullptr;
            message >> text;
            recorded.arguments.emplace_back(std::string(text));
        } else if (type == "i") {
            std::int32_t number = 0;
            message >> number;
            recorded.arguments.emplace_back(number);
        } else if (type == "d") {
            double number = 0;
            message >> number;
            recorded.arguments.emplace_back(number);
        } else if (type == "b") {
            bool yes = false;
            message >> yes;
            recorded.arguments.emplace_back(yes);
        } else {
            throw Refusal("an argument of type " + type + " can't be recorded");
        }
    }
    message.clearFlags();
    return recorded;
}

static void put(std::string &bytes, const std::string &text) {
    bytes += 's';
    putText(bytes, text);
}

static void put(std::string &bytes, std::int32_t number) {
    bytes += 'i';
    putNumber(bytes, number);
}

static void put(std::string &bytes, double number) {
    bytes += 'd';
    putNumber(bytes, number);
}

static void put(std::string &bytes, bool yes) {
    bytes += 'b';
    putNumber(bytes, static_cast<std::uint8_t>(yes));
}

// Each argument stands behind the letter of its type on the bus.
std::string encodedMessage(const RecordedMessage &message) {
    std::string bytes;
    putNumber(bytes, message.decimalSeparator);
    putText(bytes, message.member);
    for (const Argument &argument : message.arguments)
        std::visit([&](const auto &value) { put(bytes, value); }, argument);
    return bytes;
}

RecordedMessage decodedMessage(std::string_view bytes) {
    ByteReader reader(bytes);
    RecordedMessage message;
    message.decimalSeparator = reader.number<char>();
    message.member = reader.text();
    while (!reader.rest().empty()) {
        switch (reader.number<char>()) {
        case 's': message.arguments.emplace_back(std::string(reader.text())); break;
        case 'i': message.arguments.emplace_back(reader.number<std::int32_t>()); break;
        case 'd': message.arguments.emplace_back(reader.number<double>()); break;
        case 'b': message.arguments.emplace_back(reader.number<std::uint8_t>() != 0); break;
        default: throw Refusal("damaged: an argument of an unknown type");
        }
    }
    return message;
}

} // namespace plotwerk
