// Plotwerk missing, failing or silent.
#include "client/plotwerkControl.h"
#include "tests/client/clientTest.h"

#include <csignal>
#include <unistd.h>

using ConnectionTest = ClientTest;

static const std::string parentPid = "PPID = " + std::to_string(getpid()) + "\n";
static const std::string serviceUnknown = "[org.freedesktop.DBus.Error.ServiceUnknown]";

static void expectNoConnection(const Output &output) {
    expectOutput(output, "", "can't connect to Plotwerk\n", 1);
}

// The client died of an uncaught error whose report names the cause; what it had answered is out.
static void expectAbort(const Output &output, const std::string &out, const std::string &cause) {
    EXPECT_EQ(output.out, out);
    EXPECT_EQ(output.signal, SIGABRT);
    EXPECT_NE(output.err.find("sdbus::Error"), std::string::npos) << output.err;
    EXPECT_NE(output.err.find(cause), std::string::npos) << output.err;
}

TEST_F(ConnectionTest, EveryCommandNeedsPlotwerkOnABus) {
    for (const CommandCase &c : commandCases()) {
        SCOPED_TRACE(c.line);
        expectNoConnection(runShell("-x " + c.line));
    }
    expectNoConnection(runArguments({"-z"}));
    expectNoConnection(runLines(""));

    bus.stop();
    expectNoConnection(runLines("-x parentPID\n"));
    for (const std::string environment :
         {"DBUS_SESSION_BUS_ADDRESS=", "DBUS_SESSION_BUS_ADDRESS=nonsense",
          "-u DBUS_SESSION_BUS_ADDRESS -u XDG_RUNTIME_DIR"}) {
        SCOPED_TRACE(environment);
        expectNoConnection(runProgram({"sh", "-c", "env " + environment + " " CALLPLW " -x sync"}));
    }
}

TEST_F(ConnectionTest, AnErrorReplyEndsTheClient) {
    startPlotwerk({{"waitForEmptyReply", {reply({}), {Answer::Error, {}}}}});
    expectAbort(runLines("-x sync\n-x sync\n-x sync\n"), "synced\n",
                "[org.plotwerk.Error.Refused] not today");
    EXPECT_EQ(takeMessages(), "waitForEmptyReply\nwaitForEmptyReply\n");
    startPlotwerk({{"documentNameOfFrontWindow", {{Answer::Error, {}}}}});
    expectAbort(runArguments({"-x", "sync", "-x", "show"}), "synced\n", "not today");
}

TEST_F(ConnectionTest, LosingPlotwerkOrTheBusBetweenLinesEndsTheClient) {
    startPlotwerk();
    ChildProcess first({CALLPLW}), second({CALLPLW}), third({CALLPLW});
    for (ChildProcess *client : {&first, &second, &third}) {
        client->write("-x sync\n");
        EXPECT_EQ(client->readLine(), "synced\n");
    }
    plotwerk->crash();
    expectAbort(first.finish("-x parentPID\n-x sync\n-x sync\n"), parentPid, serviceUnknown);
    startPlotwerk();
    expectAbort(second.finish("-x show -d doc\n"), "", serviceUnknown);
    EXPECT_EQ(takeMessages(), "") << "Plotwerk that took the name later";
    plotwerk->crash();
    bus.stop();
    expectAbort(third.finish("-x sync\n"), "", "");
}

TEST_F(ConnectionTest, EachAnswerIsOutBeforeTheNextLineIsRead) {
    startPlotwerk();
    ChildProcess run({CALLPLW});
    for (const CommandCase &c : commandCases()) {
        if (c.out.empty()) continue;
        run.write("-x " + c.line + '\n');
        EXPECT_NE(run.readLine(), "") << c.line;
    }
    expectOutput(run.finish(), "");
}

TEST_F(ConnectionTest, ACallWaitsInOneThreadForFiveMinutes) {
    startPlotwerk({{"getVarOf", {{Answer::Never, {}}}}});
    const PlotwerkConnection connection = connectToPlotwerk();
    ASSERT_NE(connection.bus, nullptr);
    EXPECT_EQ(connection.bus->getMethodCallTimeout(), 300'000'000) << "microseconds";

    ChildProcess run({CALLPLW});
    run.write("-x getVar\n");
    std::string messages;
    waitUntil("the message", [&] {
        messages += takeMessages();
        return messages.ends_with("getVarOf:'doc' varName:''\n");
    });
    EXPECT_EQ(run.procStatus("Threads"), "1");
    plotwerk->crash();
    expectAbort(run.finish(), "", "[org.freedesktop.DBus.Error.NoReply]");
}
