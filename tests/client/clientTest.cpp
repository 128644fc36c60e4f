#include "tests/client/clientTest.h"

void ClientTest::startPlotwerk(Script script) {
    script.try_emplace("documentNameOfFrontWindow", std::vector{reply({"doc"})});
    if (plotwerk) plotwerk->crash();
    plotwerk.emplace(bus, script);
}

Output ClientTest::runArguments(std::vector<std::string> words) {
    words.insert(words.begin(), CALLPLW);
    return runProgram(words);
}

Output ClientTest::runShell(const std::string &words) {
    return runProgram({"sh", "-c", "exec " CALLPLW " " + words});
}

void expectOutput(const Output &output, const std::string &out, const std::string &err,
                  int status) {
    EXPECT_EQ(output.out, out);
    EXPECT_EQ(output.err, err);
    EXPECT_EQ(output.status, status) << "signal " << output.signal;
}
