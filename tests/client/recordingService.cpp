#include "tests/client/recordingAdaptor.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <regex>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

const char plotwerkName[] = "org.plotwerk.PlotwerkControl";

Answer reply(std::vector<std::string> values) {
    return {Answer::Reply, std::move(values)};
}

std::string selectorOf(const std::string &member) {
    static const std::regex colon("_(?![XY]_)"); // at_X and at_Y have a '_' of their own
    return std::regex_replace(member, colon, ":");
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

// Arguments as the notes show them.
static std::string shown(const std::string &value) {
    return quoted(value);
}

static std::string shown(int32_t value) {
    return std::to_string(value);
}

static std::string shown(bool value) {
    return value ? "yes" : "no";
}

static std::string shown(double value) {
    if (std::isnan(value)) return "nan"; // whatever its sign
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

static std::string shown(const sdbus::Struct<double, double, double, double> &r) {
    return '{' + shown(r.get<0>()) + ' ' + shown(r.get<1>()) + ' ' + shown(r.get<2>()) + ' ' +
           shown(r.get<3>()) + '}';
}

// Scripted values as a reply's.
static void read(const std::string &text, std::string &value) {
    value = text;
}

static void read(const std::string &text, int32_t &value) {
    value = std::atoi(text.c_str());
}

static void read(const std::string &text, double &value) {
    value = std::atof(text.c_str());
}

static void read(const std::string &text, bool &value) {
    value = text == "yes";
}

template<typename... Values>
static void readAll(const std::vector<std::string> &texts, std::tuple<Values...> &values) {
    auto text = texts.begin();
    const auto next = [&] { return text == texts.end() ? "" : *text++; };
    std::apply([&](auto &...value) { (read(next(), value), ...); }, values);
}

RecordingAdaptor::RecordingAdaptor(sdbus::IConnection &bus, const Script &toAnswer, int notesFile)
    : AdaptorInterfaces(bus, "/org/plotwerk/PlotwerkControl"), script(toAnswer), notes(notesFile) {
    registerAdaptor();
}

RecordingAdaptor::~RecordingAdaptor() {
    unregisterAdaptor();
}

void RecordingAdaptor::note(const std::string &line) const {
    if (write(notes, line.data(), line.size()) < 0) _exit(1);
}

std::vector<std::string> RecordingAdaptor::nextAnswer(const std::string &selector) {
    const auto answers = script.find(selector);
    if (answers == script.end()) return {};
    const size_t turn = std::min(calls[selector]++, answers->second.size() - 1);
    const Answer &answer = answers->second[turn];
    switch (answer.kind) {
    case Answer::Error: throw sdbus::Error("org.plotwerk.Error.Refused", "not today");
    case Answer::Death: _exit(0);
    case Answer::Never:
        for (;;) pause();
    case Answer::Reply: break;
    }
    return answer.values;
}

template<typename Result, typename... Arguments>
Result RecordingAdaptor::take(const char *member, const Arguments &...arguments) {
    const std::string selector = selectorOf(member);
    note(selector + (std::string() + ... + (' ' + shown(arguments))) + '\n');
    const std::vector<std::string> values = nextAnswer(selector);

    if constexpr (requires { std::tuple_size<Result>::value; }) {
        Result result{};
        readAll(values, result);
        return result;
    } else if constexpr (!std::is_void_v<Result>) {
        std::tuple<Result> result{};
        readAll(values, result);
        return std::get<0>(result);
    }
}

// The service process: never returns.
[[noreturn]] static void serve(const Script &script, int notes) {
    const auto bus = sdbus::createSessionBusConnection();
    RecordingAdaptor adaptor(*bus, script, notes);
    bus->requestName(plotwerkName);
    bus->enterEventLoop();
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
