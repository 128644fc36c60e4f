#include "tests/client/clientTest.h"

void ClientTest::startPlotwerk(Script script) {
    script.try_emplace("documentNameOfFrontWindow", std::vector{reply({"doc"})});
    if (plotwerk) plotwerk->crash();
    plotwerk.emplace(bus, script);
}

std::vector<std::string> ClientTest::client(const std::vector<std::string> &words) {
    std::vector<std::string> command{CALLPLW};
    command.insert(command.end(), words.begin(), words.end());
    return command;
}

Output ClientTest::runArguments(const std::vector<std::string> &words) {
    return runProgram(client(words));
}

Output ClientTest::runLines(const std::string &input) {
    return runProgram(client(), input);
}

void expectOutput(const Output &output, const std::string &out, const std::string &err) {
    EXPECT_EQ(output.out, out);
    EXPECT_EQ(output.err, err);
    EXPECT_EQ(output.status, 0);
    EXPECT_EQ(output.signal, 0);
}

std::vector<std::string> wordsOf(const std::string &line) {
    std::vector<std::string> words;
    for (size_t start = line.find_first_not_of(' '); start < line.size();) {
        const bool isQuoted = line[start] == '\'';
        if (isQuoted) ++start;
        const size_t end = std::min(line.find(isQuoted ? '\'' : ' ', start), line.size());
        words.push_back(line.substr(start, end - start));
        start = line.find_first_not_of(' ', std::min(end + 1, line.size()));
    }
    return words;
}

std::string commandOf(const CommandCase &c) {
    return wordsOf(c.line).at(1);
}

std::string frontQuestion(const CommandCase &c, bool &targetKnown) {
    const std::string command = commandOf(c);
    if (command == "parentPID" || command == "sync" || command == "activeDoc") return "";
    const bool asked = !targetKnown;
    targetKnown = command != "open" && command != "close";
    return asked ? "documentNameOfFrontWindow\n" : "";
}
