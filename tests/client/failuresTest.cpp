// What is told of commands that fail, when CALLPLW_ERRORS asks for it, and what is sent then.
#include "tests/client/clientTest.h"

#include <cstdlib>
#include <sstream>

class FailuresTest : public ClientTest {
  protected:
    ~FailuresTest() override { unsetenv("CALLPLW_ERRORS"); }

    // The answers to getVar, a '|' behind each: its variable's value, or lastError.
    void answer(const std::string &texts) {
        std::vector<Answer> answers;
        std::istringstream each(texts);
        for (std::string text; std::getline(each, text, '|');) answers.push_back(reply({text}));
        startPlotwerk({{"getVarOf", answers}});
    }
    static void ask(const char *how) { setenv("CALLPLW_ERRORS", how, 1); }
};

static const std::string front = "documentNameOfFrontWindow\n", show = "showCurveOf:'doc'\n";

static std::string getVar(const std::string &variable, const std::string &document = "doc") {
    return "getVarOf:'" + document + "' varName:'" + variable + "'\n";
}

TEST_F(FailuresTest, LastErrorIsAskedForAfterEachCommandThatPlotwerkCanRefuse) {
    const std::string lastError = getVar("lastError");
    const std::string three = "-x show\n-x show\n-x show\n";
    const struct {
        const char *how;
        std::string lines, answers, messages, err, out = "";
    } cases[] = {
        {"report", three, "no a||no b|",
         front + show + lastError + show + lastError + show + lastError,
         "callPlw: show: no a\ncallPlw: show: no b\n"},
        {"stop", three, "|no b|", front + show + lastError + show + lastError,
         "callPlw: show: no b\n"},
        {"", "-x show\n-x foo\n", "no a|", front + show, "unknown command: foo\n"},
        {"yes", "-x show\n", "no a|", front + show + lastError,
         "callPlw: CALLPLW_ERRORS is neither report nor stop: taken as report\n"
         "callPlw: show: no a\n"},
        // these leave an old lastError as it is
        {"report", "-x sync\n-x activeDoc\n-x getVar -s chiq\n-x getVar -s lastError\n", "1.5||",
         "waitForEmptyReply\n" + front + front + getVar("chiq") + lastError, "",
         "synced\ndoc\n1.5\n\n"},
        {"report", "-x getVar -s nix\n", "|no nix|", front + getVar("nix") + lastError,
         "callPlw: getVar: no nix\n", "\n"},
        {"report", "-x close\n", "no a|",
         front + "closeDocument:'doc' askForSave:no\n" + getVar("lastError", ""),
         "callPlw: close: no a\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.how + (' ' + c.lines));
        answer(c.answers);
        ask(c.how);
        expectOutput(runLines(c.lines), c.out, c.err, c.err.starts_with("callPlw: ") ? 2 : 0);
        EXPECT_EQ(takeMessages(), c.messages);
    }
    startPlotwerk({{"documentNameOfFrontWindow", {reply({""})}}});
    ask("report");
    expectOutput(runLines("-x show\n"), "", "callPlw: show: no document is open\n", 2);
}

TEST_F(FailuresTest, ALineThatIsNotSentAsItWasWrittenHasFailedAndWithStopIsNotSent) {
    const std::string cut =
        ": the line is longer than 511 bytes: its rest is read as a line of its own\n";
    const std::string sync = "-x sync -s ";
    std::string words = "-x sync";
    for (int i = 0; i < 30; ++i) words += " -a 1";
    const std::pair<std::string, std::string> cases[] = {
        {"-x foo -a 1\n", "foo: unknown command\n"},
        {"-x sync -z\n", "sync: wrong option -z\n"},
        {"-z -x sync -s\n", "sync: wrong option -z\ncallPlw: sync: option -s without a value\n"},
        {"-x sync stray -s 1\n", "sync: \"stray\" and all behind it is ignored\n"},
        {words + "\n", ""},
        {words + " -b 2\n", "sync: \"-b\" and all behind it is ignored\n"},
        {"# -z\n\n-s 1\nstray\n", ""},
        {sync + std::string(511 - sync.size(), 'a') + "\n", ""},
        {sync + std::string(511 - sync.size(), 'a'), ""},
        {sync + std::string(512 - sync.size(), 'a') + "\n", "sync" + cut},
        {std::string(1500, 'a') + "\n", cut.substr(2) + "callPlw" + cut}, // two of its three pieces
        {std::string(511, 'a') + "-x sync -z\n",
         cut.substr(2) + "callPlw: sync: wrong option -z\n"},
    };
    for (const auto &[lines, reasons] : cases) {
        SCOPED_TRACE(lines);
        const bool fails = !reasons.empty(), synced = lines.find("sync") != std::string::npos;
        for (const bool stop : {false, true}) {
            startPlotwerk();
            ask(stop ? "stop" : "report");
            const std::string told = stop ? reasons.substr(0, reasons.find('\n') + 1) : reasons;
            expectOutput(runLines(lines), synced && !(fails && stop) ? "synced\n" : "",
                         fails ? "callPlw: " + told : "", fails ? 2 : 0);
        }
    }
}

TEST_F(FailuresTest, ArgumentsThatAreCutOrWrongFailTheirCommandAndStatusIsTwo) {
    const std::string longest(65535, 'p'), slot(1023, 's');
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"-x", "sync", "-p", longest, "-s", slot}, ""},
        {{"-x", "sync", "-p", longest + 'p', "-x", "sync"},
         "callPlw: sync: the value of -p is cut after 65535 bytes\n"},
        {{"-s", slot + 's', "-x", "sync"},
         "callPlw: sync: the value of -s is cut after 1023 bytes\n"},
        {{"-x", "sync", "stray"}, "callPlw: sync: \"stray\" and all behind it is ignored\n"},
        {{"-x", "sync", "-d", "doc"}, "callPlw: sync: wrong option -d\n"},
        {{"-x", "sync", "-x"}, "callPlw: sync: option -x without a value\n"},
        {{"-z"}, "callPlw: wrong option -z\n"},
    };
    startPlotwerk();
    ask("report");
    for (const auto &[words, err] : cases) {
        const Output output = runArguments(words);
        EXPECT_EQ(output.err, err);
        EXPECT_EQ(output.status, err.empty() ? 0 : 2) << err;
    }
    takeMessages();
    ask("stop");
    EXPECT_EQ(runArguments({"-x", "readData", "-p", longest + 'p'}).status, 2);
    EXPECT_EQ(takeMessages(), "") << "rows would be lost, and the last value made up";
}

TEST_F(FailuresTest, AValueThatIsNoNumberIsToldAndWithStopIsNotSent) {
    const std::string setYi = "setValueOfDoc:'doc' atIndex:";
    const std::tuple<const char *, const char *, std::string> cases[] = {
        {"-i 1 -a 1.5e3", "1 indexSerie:-1 toValue:1500", ""},
        {"-i ' 7 ' -a -inf -s ''", "7 indexSerie:-1 toValue:-inf", ""},
        {"-i -2147483648 -a 0x10", "-2147483648 indexSerie:-1 toValue:16", ""},
        {"-i 1 -a foo", "1 indexSerie:-1 toValue:0", "-a is no number: foo"},
        {"-i 1 -a '1,5'", "1 indexSerie:-1 toValue:1", "-a is no number: 1,5"},
        {"-i 1 -a ' '", "1 indexSerie:-1 toValue:0", "-a is no number:  "},
        {"-i 1.5 -a 2", "1 indexSerie:-1 toValue:2", "-i is no integer: 1.5"},
        {"-i 4294967297 -a 2", "", "-i is no integer: 4294967297"},
    };
    for (const auto &[options, sent, reason] : cases) {
        SCOPED_TRACE(options);
        for (const std::string how : {"", "report", "stop"}) {
            answer("|");
            ask(how.c_str());
            const bool fails = !reason.empty(), told = fails && !how.empty();
            expectOutput(runLines(std::string("-x setYi ") + options), "",
                         told ? "callPlw: setYi: the value of " + reason + '\n' : "", told ? 2 : 0);
            const bool isSent = takeMessages().find(setYi + sent) != std::string::npos;
            EXPECT_EQ(isSent, !fails || how != "stop");
        }
    }
    ask("stop");
    const std::string data = "1 2\n" + std::string(100, '3');
    expectOutput(runArguments({"-x", "readData", "-p", data, "-x", "setAttributes2"}), "",
                 "callPlw: setAttributes2: the value of -p is no number: 1 2\n", 2);
    expectOutput(runShell("-x newComposition -w A4"), "",
                 "callPlw: newComposition: the value of -w is no number: A4\n", 2);
    expectOutput(
        runShell("-x newComposition -w " + std::string(61, 'w')), "",
        "callPlw: newComposition: the value of -w is no number: " + std::string(60, 'w') + '\n', 2);
}
