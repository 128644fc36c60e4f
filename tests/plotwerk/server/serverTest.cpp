#include "tests/plotwerk/server/serverTest.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <utility>

namespace fs = std::filesystem;

Plotwerk::Plotwerk(sdbus::IConnection &bus) : ProxyInterfaces(bus, busName, objectPath) {
    registerProxy();
}

Plotwerk::~Plotwerk() {
    unregisterProxy();
}

std::vector<Method> methodsOf(sdbus::IConnection &bus) {
    std::string xml;
    sdbus::createProxy(bus, busName, objectPath)
        ->callMethod("Introspect")
        .onInterface("org.freedesktop.DBus.Introspectable")
        .storeResultsTo(xml);
    xml = xml.substr(xml.find("<interface name=\"" + std::string(busName) + '"'));
    xml = xml.substr(0, xml.find("</interface>"));

    std::vector<Method> methods;
    const std::regex line("<method name=\"(\\w+)\"|"
                          "<arg type=\"([^\"]+)\" name=\"(\\w+)\" direction=\"(in|out)\"");
    for (std::sregex_iterator match(xml.begin(), xml.end(), line), end; match != end; ++match) {
        if ((*match)[1].matched)
            methods.push_back({(*match)[1], {}, ""});
        else if ((*match)[4] == "in")
            methods.back().arguments.push_back({(*match)[3], (*match)[2]});
        else
            methods.back().results += (*match)[2];
    }
    return methods;
}

ServerTest::ServerTest() : ServerTest(PLOTWERKD) {
}

ServerTest::ServerTest(std::string path)
    : programPath(std::move(path)), programsPath(std::getenv("PATH")) {
    setenv("XDG_STATE_HOME", (directory / "state").c_str(), 1);
    fs::current_path(directory);
}

ServerTest::~ServerTest() {
    fs::current_path(folderBefore);
    setenv("PATH", programsPath.c_str(), 1);
}

void ServerTest::limit(__rlimit_resource resource, rlim_t most) const {
    rlimit limit{};
    prlimit(program->pid(), resource, nullptr, &limit);
    limit.rlim_cur = most;
    ASSERT_EQ(prlimit(program->pid(), resource, &limit, nullptr), 0);
}

rlim_t ServerTest::addressSpace() const {
    return std::stoul(program->procStatus("VmSize")) * 1024;
}

std::vector<std::string> ServerTest::command(const std::vector<std::string> &arguments) const {
    std::vector<std::string> words{programPath};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

void ServerTest::start(const std::vector<std::string> &arguments) {
    control.reset(); // before the connection that it hangs on
    plotwerk.reset();
    program.emplace(command(arguments));
    bus.waitForOwner(busName);
    connection = sdbus::createSessionBusConnection();
    connection->setMethodCallTimeout(deadline);
    plotwerk = std::make_unique<Plotwerk>(*connection);
    control = sdbus::createProxy(*connection, busName, objectPath);
}

Output ServerTest::stop() {
    plotwerk.reset();
    program->sendSignal(SIGTERM);
    Output output = program->finish();
    EXPECT_EQ(output.status, 0) << output.err;
    return output;
}

std::string ServerTest::file(const std::string &name, const std::string &bytes) const {
    std::ofstream(directory / name, std::ios::binary) << bytes;
    return pathOf(name);
}

std::string ServerTest::contentsOf(const std::string &document) {
    const std::string copy = pathOf("contents");
    plotwerk->saveDocument_to_binary_(document, copy, false);
    EXPECT_TRUE(plotwerk->didSaveSucceed_(document)) << document;
    return bytesOf(copy);
}

void ServerTest::closeAll(const std::function<void(const std::string &)> &visit) {
    std::string name;
    do {
        name = plotwerk->documentNameOfFrontWindow();
        visit(name);
        plotwerk->closeDocument_askForSave_(name, false);
    } while (name != "Untitled" || plotwerk->documentNameOfFrontWindow() != name);
}

static void append(sdbus::MethodCall &call, char type, const std::string &text) {
    switch (type) {
    case 's': call << text; break;
    case 'i': call << std::stoi(text); break;
    case 'd': call << std::strtod(text.c_str(), nullptr); break;
    case 'b': call << (text == "yes"); break;
    default: {
        double values[4];
        const char *rest = text.c_str();
        for (double &value : values) {
            char *end = nullptr;
            value = std::strtod(rest, &end);
            rest = end;
        }
        call << sdbus::Struct<double, double, double, double>(values[0], values[1], values[2],
                                                              values[3]);
    }
    }
}

template<class Value> static Value read(sdbus::MethodReply &reply) {
    Value value{};
    reply >> value;
    return value;
}

std::string ServerTest::answerTo(const Method &method, const std::vector<std::string> &arguments) {
    sdbus::MethodCall call = control->createMethodCall(busName, method.name);
    for (std::size_t i = 0; i < arguments.size(); ++i)
        append(call, method.arguments.at(i).type[0], arguments[i]);
    sdbus::MethodReply reply = control->callMethod(call, deadline);
    std::ostringstream line;
    for (const char type : method.results) {
        if (line.tellp() > 0) line << ' ';
        switch (type) {
        case 's': line << '\'' << read<std::string>(reply) << '\''; break;
        case 'i': line << read<std::int32_t>(reply); break;
        case 'd': line << read<double>(reply); break;
        default: line << (read<bool>(reply) ? "yes" : "no");
        }
    }
    return line.str();
}

std::string bytesOf(const fs::path &path) {
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream) << path;
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return std::move(bytes).str();
}

bool hasSelectedNone(const std::string &reason) {
    return reason.starts_with("no curve of ") || reason.starts_with("there are no curves");
}

testing::AssertionResult holds(const std::string &text, const std::string &part) {
    if (text.find(part) != std::string::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << part << "\nin\n" << text;
}
