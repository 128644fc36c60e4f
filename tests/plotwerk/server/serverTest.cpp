#include "tests/plotwerk/server/serverTest.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>

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

ServerTest::ServerTest() {
    std::string pattern = (fs::temp_directory_path() / "plotwerkd-XXXXXX").string();
    directory = mkdtemp(pattern.data());
    setenv("XDG_STATE_HOME", (directory / "state").c_str(), 1);
    stateDirectory = directory / "state" / "plotwerk";
}

ServerTest::~ServerTest() {
    fs::remove_all(directory);
}

std::vector<std::string> ServerTest::command(const std::vector<std::string> &arguments) {
    std::vector<std::string> words{PLOTWERKD};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

void ServerTest::start(const std::vector<std::string> &arguments) {
    program.emplace(command(arguments));
    bus.waitForOwner(busName);
    connection = sdbus::createSessionBusConnection();
    connection->setMethodCallTimeout(deadline);
    plotwerk = std::make_unique<Plotwerk>(*connection);
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

std::string bytesOf(const fs::path &path) {
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream) << path;
    return {std::istreambuf_iterator<char>(stream), {}};
}

testing::AssertionResult holds(const std::string &text, const std::string &part) {
    if (text.find(part) != std::string::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << part << "\nin\n" << text;
}
