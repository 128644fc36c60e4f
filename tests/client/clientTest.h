// clientTest.h - the client, run from outside between a private bus and a recording service.
#ifndef PLW_TESTS_CLIENT_CLIENTTEST_H
#define PLW_TESTS_CLIENT_CLIENTTEST_H

#include "tests/client/recordingService.h"
#include "tests/support/privateBus.h"
#include "tests/support/process.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

// A command with its options, as written behind -x in a shell and on a line alike, and what it must
// bring about when "doc" is in front. The question for the front document is not among its
// messages. The last newline of messages and output is left out.
struct CommandCase {
    std::string line;
    std::string messages = "";
    std::string out = "";
};

// All commands: with every option given, and with none.
const std::vector<CommandCase> &commandCases();

class ClientTest : public testing::Test {
  protected:
    // From now on Plotwerk answers by this script; "doc" is in front unless the script says
    // otherwise.
    void startPlotwerk(Script script = {});
    std::string takeMessages() { return plotwerk->takeMessages(); }

    // The client in argument mode, its words in a vector or as a shell splits them, and in line
    // mode.
    static Output runArguments(std::vector<std::string> words);
    static Output runShell(const std::string &words);
    static Output runLines(const std::string &input) { return runProgram({CALLPLW}, input); }

    PrivateBus bus;
    std::optional<RecordingService> plotwerk;
};

// The client said this and ended so.
void expectOutput(const Output &output, const std::string &out, const std::string &err = "",
                  int status = 0);

#endif
