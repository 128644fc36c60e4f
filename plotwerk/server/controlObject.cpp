#include "plotwerk/server/controlObject.h"

#include <new>

namespace plotwerk {

ControlObject::ControlObject(sdbus::IConnection &bus, const std::string &objectPath,
                             Application &served)
    : AdaptorInterfaces(bus, objectPath), application(served) {
    registerAdaptor();
}

ControlObject::~ControlObject() {
    unregisterAdaptor();
}

// A selector ends in its own colon, unless the message has no arguments.
static std::string lineOf(const std::string &selector, const std::string &reason) {
    return oneLine(selector + (selector.ends_with(':') ? " " : ": ") + reason);
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

void ControlObject::refuse(const char *selector) noexcept {
    try {
        application.lastError = lineOf(selector, reasonOfCurrentException());
        log(LogLevel::warning, application.lastError);
    } catch (...) { // no memory for the line either: the neutral answer still goes out
        application.lastError.clear();
    }
}

} // namespace plotwerk
