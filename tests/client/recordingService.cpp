#include "tests/client/recordingService.h"

#include <cmath>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <regex>
#include <sdbus-c++/sdbus-c++.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

const char plotwerkName[] = "org.plotwerk.PlotwerkControl";

static const char rectangleSignature[] = "(dddd)";

std::vector<Method> protocolMethods() {
    std::ifstream file(PROTOCOL_XML);
    const std::string xml{std::istreambuf_iterator<char>(file), {}};
    const std::regex element(R"re(<method name="(\w+)"|type="([^"]+)" direction="(in|out)")re");
    const std::regex colon("_(?![XY]_)"); // two keywords, at_X and at_Y, have a '_' of their own

    std::vector<Method> methods;
    for (std::sregex_iterator it(xml.begin(), xml.end(), element), end; it != end; ++it) {
        const std::smatch &match = *it;
        if (match[1].matched) {
            methods.push_back({match[1], std::regex_replace(match[1].str(), colon, ":"), "", ""});
        } else {
            (match[3] == "in" ? methods.back().in : methods.back().out) += match[2];
        }
    }
    return methods;
}

Answer reply(std::vector<std::string> values) {
    return {Answer::Reply, std::move(values)};
}

std::string quoted(const std::string &text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') result += '\\';
        if (static_cast<unsigned char>(c) < 0x20) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02x", c);
            result += escape;
        } else {
            result += c;
        }
    }
    return result + '"';
}

static std::string textOf(double value) {
    if (std::isnan(value)) return "nan"; // whatever its sign
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

template<typename T> static T next(sdbus::MethodCall &call) {
    T value{};
    call >> value;
    return value;
}

static std::string nextArgument(sdbus::MethodCall &call, char type) {
    switch (type) {
    case 's': return quoted(next<std::string>(call));
    case 'i': return std::to_string(next<int32_t>(call));
    case 'd': return textOf(next<double>(call));
    default: return next<bool>(call) ? "yes" : "no";
    }
}

static std::string nextRectangle(sdbus::MethodCall &call) {
    const auto r = next<sdbus::Struct<double, double, double, double>>(call);
    return '{' + textOf(r.get<0>()) + ' ' + textOf(r.get<1>()) + ' ' + textOf(r.get<2>()) + ' ' +
           textOf(r.get<3>()) + '}';
}

static void append(sdbus::MethodReply &message, char type, const std::string &value) {
    switch (type) {
    case 's': message << value; break;
    case 'i': message << std::atoi(value.c_str()); break;
    case 'd': message << std::atof(value.c_str()); break;
    default: message << (value == "yes");
    }
}

static std::string describe(sdbus::MethodCall &call, const Method &method) {
    std::string line = method.selector;
    for (std::string types = method.in; !types.empty();) {
        const bool isRectangle = types.starts_with(rectangleSignature);
        line += ' ' + (isRectangle ? nextRectangle(call) : nextArgument(call, types[0]));
        types.erase(0, isRectangle ? sizeof rectangleSignature - 1 : 1);
    }
    return line + '\n';
}

static void respond(const sdbus::MethodCall &call, const Method &method, const Answer &answer) {
    switch (answer.kind) {
    case Answer::Never: return;
    case Answer::Death: _exit(0);
    case Answer::Error:
        call.createErrorReply(sdbus::Error("org.plotwerk.Error.Refused", "not today")).send();
        return;
    case Answer::Reply: break;
    }
    auto message = call.createReply();
    for (size_t i = 0; i < method.out.size(); ++i) {
        append(message, method.out[i], i < answer.values.size() ? answer.values[i] : "");
    }
    message.send();
}

// The service process: never returns.
[[noreturn]] static void serve(const Script &script, int notes) {
    auto connection = sdbus::createSessionBusConnection();
    auto object = sdbus::createObject(*connection, "/org/plotwerk/PlotwerkControl");
    std::map<std::string, size_t> calls;
    for (const Method &method : protocolMethods()) {
        object->registerMethod(
            plotwerkName, method.member, method.in, method.out,
            [&, method](sdbus::MethodCall call) {
                const std::string line = describe(call, method);
                if (write(notes, line.data(), line.size()) < 0) _exit(1);

                const auto answers = script.find(method.selector);
                if (answers == script.end()) return respond(call, method, reply({}));
                const size_t turn = calls[method.selector]++;
                respond(call, method, answers->second[std::min(turn, answers->second.size() - 1)]);
            });
    }
    object->finishRegistration();
    connection->requestName(plotwerkName);
    connection->enterEventLoop();
    _exit(1);
}

RecordingService::RecordingService(const PrivateBus &onBus, const Script &script) : bus(onBus) {
    notes = memfd_create("notes", MFD_CLOEXEC);
    service = fork();
    if (notes < 0 || service < 0) throw std::runtime_error("can't start the recording service");
    if (service == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        // A pipe of a client, held open here, would hide its end.
        close_range(STDERR_FILENO + 1, notes - 1, 0);
        close_range(notes + 1, ~0u, 0);
        serve(script, notes);
    }
    bus.waitForOwner(plotwerkName);
}

RecordingService::~RecordingService() {
    kill(service, SIGKILL);
    waitpid(service, nullptr, 0);
    close(notes);
}

std::string RecordingService::takeMessages() {
    std::string messages;
    char block[65536];
    for (ssize_t n; (n = pread(notes, block, sizeof block, taken)) > 0; taken += n) {
        messages.append(block, static_cast<size_t>(n));
    }
    return messages;
}

void RecordingService::crash() {
    kill(service, SIGKILL);
    bus.waitForNoOwner(plotwerkName);
}
