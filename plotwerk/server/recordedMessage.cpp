#include "plotwerk/server/recordedMessage.h"

#include "plotwerk/base/refusal.h"

namespace plotwerk {

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
