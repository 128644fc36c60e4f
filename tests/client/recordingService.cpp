#include "tests/client/recordingService.h"

#include "protocol/PlotwerkControlAdaptor.h"
#include "protocol/PlotwerkControlNames.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

static const std::string plotwerkName = plotwerkControl::busName;

Answer reply(std::vector<std::string> values) {
    return {Answer::Reply, std::move(values)};
}

// An argument as the notes show it.
template<typename Value> static std::string shown(const Value &value) {
    if constexpr (std::is_same_v<Value, std::string>) return "'" + value + "'";
    if constexpr (std::is_same_v<Value, bool>) return value ? "yes" : "no";
    if constexpr (std::is_same_v<Value, std::int32_t>) return std::to_string(value);
    if constexpr (std::is_same_v<Value, double>) {
        if (std::isnan(value)) return "nan"; // whatever its sign
        char text[32];
        std::snprintf(text, sizeof text, "%.17g", value);
        return text;
    }
}

template<> std::string shown(const sdbus::Struct<double, double, double, double> &r) {
    return '{' + shown(r.get<0>()) + ' ' + shown(r.get<1>()) + ' ' + shown(r.get<2>()) + ' ' +
           shown(r.get<3>()) + '}';
}

// A reply, or one of its values, from what is scripted.
template<typename Value> static void read(const std::vector<std::string> &texts, Value &value) {
    const std::string text = texts.empty() ? "" : texts.front();
    if constexpr (std::is_same_v<Value, std::string>)
        value = text;
    else if constexpr (std::is_same_v<Value, bool>)
        value = text == "yes";
    else
        value = static_cast<Value>(std::atof(text.c_str()));
}

template<typename... Values>
static void read(std::vector<std::string> texts, std::tuple<Values...> &values) {
    texts.resize(sizeof...(Values));
    auto text = texts.begin();
    std::apply([&](auto &...value) { (read({*text++}, value), ...); }, values);
}

// The selector with each argument's value behind its keyword, then the arguments that it leaves
// out.
static std::string noted(const std::string &selector, const std::vector<std::string> &names,
                         const std::vector<std::string> &values) {
    std::string line;
    std::size_t given = 0;
    std::istringstream keywords(selector);
    for (std::string keyword; std::getline(keywords, keyword, ':');) {
        line += (line.empty() ? "" : " ") + keyword + (keywords.eof() ? "" : ":");
        if (given < names.size() && names[given] == keyword) line += values[given++];
    }
    for (; given < names.size(); ++given) line += ' ' + names[given] + ':' + values[given];
    return line + '\n';
}

// The generated adaptor: every message goes through take().
class RecordingAdaptor final
    : public sdbus::AdaptorInterfaces<org::plotwerk::PlotwerkControl_adaptor> {
  public:
    // The notes go to a file.
    RecordingAdaptor(sdbus::IConnection &bus, const Script &toAnswer, int notesFile)
        : AdaptorInterfaces(bus, plotwerkControl::objectPath), script(toAnswer), notes(notesFile) {
        registerAdaptor();
    }
    ~RecordingAdaptor() { unregisterAdaptor(); }

  private:
#include "recordedMessages.h"

    // Notes the message, then answers as scripted.
    template<typename Result, typename... Arguments>
    Result take(const char *member, const std::vector<std::string> &names,
                const std::tuple<Arguments...> &arguments) {
        const std::string selector(plotwerkControl::selectorOf(member));
        const std::string line = std::apply(
            [&](const auto &...values) { return noted(selector, names, {shown(values)...}); },
            arguments);
        if (write(notes, line.data(), line.size()) < 0) _exit(1);

        const std::vector<std::string> values = nextAnswer(selector);
        if constexpr (!std::is_void_v<Result>) {
            Result result{};
            read(values, result);
            return result;
        }
    }

    // The scripted values of this call; an error or no answer at all happen here.
    std::vector<std::string> nextAnswer(const std::string &selector) {
        const auto begins = [&](const auto &entry) { return selector.starts_with(entry.first); };
        const auto answers = std::find_if(script.begin(), script.end(), begins);
        if (answers == script.end()) return {};
        const std::size_t turn = std::min(calls[selector]++, answers->second.size() - 1);
        const Answer &answer = answers->second[turn];
        if (answer.kind == Answer::Error)
            throw sdbus::Error("org.plotwerk.Error.Refused", "not today");
        if (answer.kind == Answer::Never)
            for (;;) pause();
        return answer.values;
    }

    const Script script;
    const int notes;
    std::map<std::string, std::size_t> calls;
};

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

void RecordingService::crash() {
    kill(service, SIGKILL);
    bus.waitForNoOwner(plotwerkName);
}
