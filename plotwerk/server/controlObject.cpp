#include "plotwerk/server/controlObject.h"

#include "protocol/PlotwerkControlNames.h"

#include <new>

namespace plotwerk {

std::string_view ControlObject::selector() const {
    return plotwerkControl::selectorOf(answered.member);
}

std::optional<std::string> ControlObject::messageAsData() const {
    // The clipboard isn't recorded.
    if (std::string_view(answered.member) == "pasteDataOf_") return std::nullopt;
    return answered.asData(answered, application.decimalSeparator);
}

// A selector ends in its own colon, unless the message has no arguments.
static std::string lineOf(std::string_view selector, const std::string &reason) {
    return oneLine(std::string(selector) + (selector.ends_with(':') ? " " : ": ") + reason);
}

static std::string reasonOfCurrentException() {
    try {
        throw;
    } catch (const std::bad_alloc &) {
        return "not enough memory";
    } catch (const std::exception &exception) {
        return exception.what();
    } catch (...) {
        return "unknown";
    }
}

void ControlObject::refuse() noexcept {
    try {
        application.lastError = lineOf(selector(), reasonOfCurrentException());
        log(LogLevel::warning, application.lastError);
    } catch (...) { // no memory for the line either: the neutral answer still goes out
        application.lastError.clear();
    }
}

} // namespace plotwerk
