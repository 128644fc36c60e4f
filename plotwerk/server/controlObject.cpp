#include "plotwerk/server/controlObject.h"

#include "protocol/PlotwerkControlNames.h"

#include <new>

namespace plotwerk {

ControlObject::ControlObject(sdbus::IConnection &bus, Application &served)
    : AdaptorInterfaces(bus, plotwerkControl::objectPath), application(served) {
    registerAdaptor();
}

ControlObject::~ControlObject() {
    unregisterAdaptor();
}

std::string_view ControlObject::selector() const {
    return plotwerkControl::selectorOf(
        own ? own->member : getObject().getCurrentlyProcessedMessage()->getMemberName());
}

RecordedMessage ControlObject::message() const {
    if (own) return *own;
    // The arguments are read once more: that only moves where the message is read.
    auto &brought = const_cast<sdbus::Message &>(*getObject().getCurrentlyProcessedMessage());
    return recordedMessage(brought, application.decimalSeparator);
}

std::optional<std::string> ControlObject::messageAsData() const {
    const RecordedMessage data = message();
    // The clipboard isn't recorded.
    if (data.member == "pasteDataOf_") return std::nullopt;
    return encodedMessage(data);
}

void ControlObject::tellListener() const noexcept {
    if (!listener) return;
    try {
        listener(message());
    } catch (const std::exception &) { // there is nobody to tell
    }
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
        application.lastError = oneLine(reasonOfCurrentException());
        log(LogLevel::warning, application.lastError + " [" + std::string(selector()) + ']');
    } catch (...) { // no memory for the line either: the neutral answer still goes out
        application.lastError.clear();
    }
}

} // namespace plotwerk
