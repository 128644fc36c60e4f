// serverTest.h - plotwerkd run from outside, over a private bus, through the generated proxy.
#ifndef TESTS_PLOTWERK_SERVER_SERVERTEST_H
#define TESTS_PLOTWERK_SERVER_SERVERTEST_H

#include "protocol/PlotwerkControlNames.h"
#include "protocol/PlotwerkControlProxy.h"
#include "tests/support/privateBus.h"
#include "tests/support/process.h"
#include "tests/support/temporaryFolder.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <vector>

using plotwerkControl::busName, plotwerkControl::objectPath;

class Plotwerk final : public sdbus::ProxyInterfaces<org::plotwerk::PlotwerkControl_proxy> {
  public:
    explicit Plotwerk(sdbus::IConnection &bus);
    ~Plotwerk();
};

// A method of the protocol, as the server itself describes it.
struct Method {
    struct Argument {
        std::string name, type;
    };
    std::string name;
    std::vector<Argument> arguments; // that are sent
    std::string results;             // the types of what is answered, a letter each

    // The first keyword of the selector.
    std::string keyword() const { return name.substr(0, name.find('_')); }
};

std::vector<Method> methodsOf(sdbus::IConnection &bus);

// In its own directory, where relative paths lead.
class ServerTest : public testing::Test {
  protected:
    ServerTest(); // of plotwerkd
    explicit ServerTest(std::string path);
    ~ServerTest() override;

    std::vector<std::string> command(const std::vector<std::string> &arguments = {}) const;

    // Runs the program until it owns its name, and connects `plotwerk` with it.
    void start(const std::vector<std::string> &arguments = {});

    // Ends it by SIGTERM; it must end well.
    Output stop();

    // The path of a file in this test's directory, with the given bytes.
    std::string file(const std::string &name, const std::string &bytes) const;
    std::string pathOf(const std::string &name) const { return (directory / name).string(); }

    // Bounds a resource (RLIMIT_AS, ...) of the program. What it takes of the address space.
    void limit(__rlimit_resource resource, rlim_t most) const;
    rlim_t addressSpace() const;

    // All that the document holds, as it would be saved.
    std::string contentsOf(const std::string &document);

    // Closes all documents: a new "Untitled" is left. Calls visit(name) before each is closed.
    void closeAll(const std::function<void(const std::string &)> &visit = [](const std::string &) {
    });

    // Sends a message, its arguments as texts: "1.5", "nan", "-7", "yes", "a name", "0 0 300 200".
    // Returns the line of what is answered, with strings in quotes; "" for nothing.
    std::string answerTo(const Method &method, const std::vector<std::string> &arguments);

    std::string lastError() { return plotwerk->getVarOf_varName_("", "lastError"); }

    std::string programPath;
    const TemporaryFolder folder;
    const std::filesystem::path &directory = folder.path;
    const std::filesystem::path stateDirectory = directory / "state/plotwerk"; // of its state
    PrivateBus bus;
    std::optional<ChildProcess> program;
    std::unique_ptr<sdbus::IConnection> connection;
    std::unique_ptr<Plotwerk> plotwerk;
    std::unique_ptr<sdbus::IProxy> control; // the same object, for messages by name

  private:
    const std::string programsPath; // $PATH, which a test may change
    const std::filesystem::path folderBefore = std::filesystem::current_path();
};

// Whole files, for the tests' own use.
std::string bytesOf(const std::filesystem::path &path);

// Whether a refused message has changed the selection all the same: one that finds no curve has.
bool hasSelectedNone(const std::string &reason);

testing::AssertionResult holds(const std::string &text, const std::string &part);

#endif
