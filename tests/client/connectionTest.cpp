// Plotwerk missing, failing or silent; and what a long run costs.
#include "tests/client/clientTest.h"

#include "client/plotwerkControl.h"

#include <csignal>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>

using ConnectionTest = ClientTest;

static void expectNoConnection(const Output &output) {
    EXPECT_EQ(output.out, "");
    EXPECT_EQ(output.err, "can't connect to Plotwerk\n");
    EXPECT_EQ(output.status, 1);
}

// The client died of an uncaught error whose report names the cause; what it had answered is out.
static void expectAbort(const Output &output, const std::string &out, const std::string &cause) {
    EXPECT_EQ(output.out, out);
    EXPECT_EQ(output.signal, SIGABRT);
    EXPECT_NE(output.err.find("sdbus::Error"), std::string::npos) << output.err;
    EXPECT_NE(output.err.find(cause), std::string::npos) << output.err;
}

TEST_F(ConnectionTest, EveryCommandNeedsPlotwerk) {
    for (const CommandCase &c : commandCases()) {
        SCOPED_TRACE(c.line);
        expectNoConnection(runArguments(wordsOf(c.line)));
    }
    expectNoConnection(runArguments({"-z"}));
    expectNoConnection(runLines("-x parentPID\n"));
}

TEST_F(ConnectionTest, EveryCommandNeedsABus) {
    bus.stop();
    expectNoConnection(runArguments({"-x", "parentPID"}));
    expectNoConnection(runLines(""));
    for (const char *address : {"", "nonsense", "unix:path=/nonexistent"}) {
        SCOPED_TRACE(address);
        expectNoConnection(runProgram(
            {"env", std::string("DBUS_SESSION_BUS_ADDRESS=") + address, CALLPLW, "-x", "sync"}));
    }
    expectNoConnection(runProgram(
        {"env", "-u", "DBUS_SESSION_BUS_ADDRESS", "-u", "XDG_RUNTIME_DIR", CALLPLW, "-x", "sync"}));
}

TEST_F(ConnectionTest, AnErrorReplyEndsTheClient) {
    startPlotwerk({{"waitForEmptyReply", {reply({}), {Answer::Error, {}}}}});
    const std::string lines = "-x sync\n-x sync\n-x sync\n";
    expectAbort(runLines(lines), "synced\n", "[org.plotwerk.Error.Refused] not today");
    EXPECT_EQ(takeMessages(), "waitForEmptyReply\nwaitForEmptyReply\n");
    startPlotwerk({{"documentNameOfFrontWindow", {{Answer::Error, {}}}}});
    expectAbort(runArguments({"-x", "sync", "-x", "show"}), "synced\n", "not today");
    startPlotwerk({{"getVarOf:varName:", {{Answer::Death, {}}}}});
    expectAbort(runLines("-x sync\n-x getVar\n-x sync\n"), "synced\n",
                "[org.freedesktop.DBus.Error.NoReply]");
}

TEST_F(ConnectionTest, LosingPlotwerkOrTheBusBetweenLinesEndsTheClient) {
    startPlotwerk();
    ChildProcess first(client()), second(client());
    for (ChildProcess *run : {&first, &second}) {
        run->write("-x sync\n");
        EXPECT_EQ(run->readLine(), "synced\n");
    }
    plotwerk->crash();
    expectAbort(first.finish("-x parentPID\n-x sync\n-x sync\n"),
                "PPID = " + std::to_string(getpid()) + "\n",
                "[org.freedesktop.DBus.Error.ServiceUnknown]");
    bus.stop();
    expectAbort(second.finish("-x sync\n"), "", "");
}

TEST_F(ConnectionTest, APlotwerkThatTakesTheNameLaterIsNotSpokenTo) {
    startPlotwerk();
    ChildProcess run(client());
    run.write("-x sync\n");
    EXPECT_EQ(run.readLine(), "synced\n");
    startPlotwerk();
    expectAbort(run.finish("-x show -d doc\n"), "", "[org.freedesktop.DBus.Error.ServiceUnknown]");
    EXPECT_EQ(takeMessages(), "");
}

TEST_F(ConnectionTest, EachAnswerIsOutBeforeTheNextLineIsRead) {
    startPlotwerk();
    ChildProcess run(client());
    for (const CommandCase &c : commandCases()) {
        if (c.out.empty()) continue;
        run.write(c.line + '\n');
        EXPECT_NE(run.readLine(), "") << c.line;
    }
    EXPECT_EQ(run.procStatus("Threads"), "1");
    expectOutput(run.finish(), "");
}

TEST_F(ConnectionTest, ACallWaitsInOneThreadForFiveMinutes) {
    startPlotwerk({{"getVarOf:varName:", {{Answer::Never, {}}}}});
    ChildProcess run(client());
    run.write("-x getVar\n");
    std::string messages;
    waitUntil("the message", [&] {
        messages += takeMessages();
        return messages.ends_with("getVarOf:varName: \"doc\" \"\"\n");
    });
    EXPECT_EQ(run.procStatus("Threads"), "1");
    plotwerk->crash();
    expectAbort(run.finish(), "", "[org.freedesktop.DBus.Error.NoReply]");

    startPlotwerk();
    const PlotwerkConnection connection = connectToPlotwerk();
    ASSERT_NE(connection.bus, nullptr);
    EXPECT_EQ(connection.bus->getMethodCallTimeout(), 300'000'000) << "microseconds";
}

TEST_F(ConnectionTest, MemoryStaysConstant) {
    const auto repeated = [](const std::string &line, int count) {
        std::string text;
        while (count-- > 0) text += line;
        return text;
    };
    startPlotwerk();
    // A sanitizer would hold back what is released.
    ChildProcess run({"env", "ASAN_OPTIONS=quarantine_size_mb=0", CALLPLW});
    const auto residentAfter = [&](const std::string &lines) {
        run.write(lines + "-x parentPID\n");
        const std::string last = "PPID = " + std::to_string(getpid()) + "\n";
        while (run.readLine() != last) {
        }
        return std::stol(run.procStatus("VmRSS"));
    };
    const std::string idle = "-s 1 -a 2\n\n", ask = "-x YatX -a 1\n-x show -d other\n";
    const long first = residentAfter(repeated(idle, 1000) + repeated(ask, 1000));
    const long afterIdle = residentAfter(repeated(idle, 200'000));
    const long afterMessages = residentAfter(repeated(ask, 5000));
    // One page per thousand lines would already show.
    EXPECT_LE(afterIdle, first + 64) << "kB";
    EXPECT_LE(afterMessages, first + 64) << "kB";
}

TEST(ProtocolTest, HoldsTheMessagesThatNoCommandSends) {
    const std::pair<std::string, std::string> unsent[] = {
        {"selectCurvesOf:regexSourceName:table:regexColumn:appendSelection:", "ssisb -> "},
        {"indexOfCurveNameOf:regexSource:table:regexColumn:", "ssis -> i"},
        {"deleteAllCurvesOf:", "s -> "},
        {"setXTitleOf:to:", "ss -> "},
        {"setYTitleOf:to:", "ss -> "},
        {"setRTFxTitleOf:to:", "ss -> "},
        {"setRTFyTitleOf:to:", "ss -> "},
        {"get2XRangeOf:xmin:xmax:", "s -> dd"},
        {"get2YRangeOf:ymin:ymax:", "s -> dd"},
        {"set2XRangeOf:xmin:xmax:", "sdd -> "},
        {"set2YRangeOf:ymin:ymax:", "sdd -> "},
        {"setLocalRangeOf:XorYAxis:", "sb -> "},
        {"appendDataAndDrawInFastMode:of:source:", "sss -> "},
        {"dataOfSelectedCurvesOf:", "s -> s"},
    };
    std::ifstream file(PROTOCOL_XML);
    const std::string xml{std::istreambuf_iterator<char>(file), {}};
    const std::regex element(R"re(<method name="(\w+)"|type="([^"]+)" direction="(in|out)")re");
    std::map<std::string, std::string> signatures;
    std::string *signature = nullptr;
    for (std::sregex_iterator it(xml.begin(), xml.end(), element), end; it != end; ++it) {
        const std::smatch &match = *it;
        if (match[1].matched) {
            signature = &(signatures[selectorOf(match[1])] = " -> ");
        } else {
            signature->insert(match[3] == "in" ? signature->find(" ->") : signature->size(),
                              match[2]);
        }
    }
    EXPECT_EQ(signatures.size(), 83);
    for (const auto &[selector, expected] : unsent) {
        EXPECT_EQ(signatures[selector], expected) << selector;
    }
}
