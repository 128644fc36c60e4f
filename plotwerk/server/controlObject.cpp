#include "plotwerk/server/controlObject.h"

#include "protocol/PlotwerkControlNames.h"

namespace plotwerk {

std::string_view ControlObject::selector() const {
    return plotwerkControl::selectorOf(answered.member);
}

std::optional<GatheredBytes> ControlObject::messageAsData() const {
    // The clipboard isn't recorded.
    if (std::string_view(answered.member) == "pasteDataOf_") return std::nullopt;
    return answered.asData(answered, application.decimalSeparator);
}

void ControlObject::tellListener() const noexcept {
    if (!listener || repeating) return;
    try {
        if (const auto data = answered.asData(answered, application.decimalSeparator))
            listener(decodedMessage(data->whole()));
    } catch (const std::exception &) { // there is nobody to tell
    }
}

static std::string reasonOfCurrentException() {
    try {
        throw;
    } catch (const std::exception &exception) {
        return reasonOf(exception);
    } catch (...) {
        return "unknown";
    }
}

void ControlObject::refuse() noexcept {
    try {
        application.lastError = oneLine(reasonOfCurrentException());
        log(LogLevel::warning, application.lastError + " [" + std::string(selector()) + ']');
    } catch (...) { // no memory for the line either, but for a text as short as this
        application.lastError = "no memory";
    }
}

} // namespace plotwerk
