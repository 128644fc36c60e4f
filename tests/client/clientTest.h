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

// A command with its options, as written on a line, and what it must bring about with the document
// "doc" in front. The question for the front document is not among its messages.
struct CommandCase {
    std::string line;     // words parted by blanks, or in single quotes: split alike by everybody
    std::string messages; // one per line
    std::string out;
};

// All 69 commands: with every option given and with none.
const std::vector<CommandCase> &commandCases();

// The line's command.
std::string commandOf(const CommandCase &c);

// The question for the front document where the case asks it: first of all, and never twice.
std::string frontQuestion(const CommandCase &c, bool &targetKnown);

std::vector<std::string> wordsOf(const std::string &line);

class ClientTest : public testing::Test {
  protected:
    // From now on Plotwerk answers by this script; "doc" is in front unless the script says
    // otherwise.
    void startPlotwerk(Script script = {});

    // The client in argument mode and, without words, in line mode.
    static std::vector<std::string> client(const std::vector<std::string> &words = {});
    static Output runArguments(const std::vector<std::string> &words);
    static Output runLines(const std::string &input);

    std::string takeMessages() { return plotwerk->takeMessages(); }

    PrivateBus bus;
    std::optional<RecordingService> plotwerk;
};

// The client ended well and said this.
void expectOutput(const Output &output, const std::string &out, const std::string &err = "");

#endif
