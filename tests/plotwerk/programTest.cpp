// plotwerkd as a program: its options, its files, its name, its end.
#include "tests/plotwerk/serverTest.h"

#include <csignal>
#include <cstdlib>

class ProgramTest : public ServerTest {};

TEST_F(ProgramTest, ExplainsItselfAndItsUsage) {
    const Output help = runProgram(command({"--help"}));
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out.find("usage: plotwerkd "), 0U) << help.out;
    EXPECT_NE(help.out.find("--log-level"), std::string::npos);

    const Output version = runProgram(command({"--version"}));
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, "plotwerkd " PLOTWERK_VERSION "\n");

    const std::vector<std::string> wrong[] = {
        {"--nix"}, {"-x"}, {"--log-level"}, {"--log-level", "loud"}};
    for (const auto &arguments : wrong) {
        const Output output = runProgram(command(arguments));
        EXPECT_EQ(output.status, 2) << arguments.front();
        EXPECT_EQ(output.out, "");
        EXPECT_NE(output.err.find("\nusage: plotwerkd "), std::string::npos) << output.err;
    }
}

TEST_F(ProgramTest, OwnsItsNameUntilASignal) {
    for (const int signal : {SIGTERM, SIGINT}) {
        start();
        EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "Untitled");
        program->sendSignal(signal);
        const Output output = program->finish();
        EXPECT_EQ(output.status, 0);
        EXPECT_EQ(output.err.find("plotwerkd: info: owns org.plotwerk.PlotwerkControl as :"), 0U)
            << output.err;
        EXPECT_FALSE(bus.hasOwner(busName));
    }
}

TEST_F(ProgramTest, LeavesTheNameToWhoeverOwnsIt) {
    start();
    const Output second = runProgram(command());
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.err.find("plotwerkd: error: can't own org.plotwerk.PlotwerkControl, its owner "
                              "is :"),
              0U)
        << second.err;
    EXPECT_NE(second.err.find(", process " + std::to_string(program->pid()) + "\n"),
              std::string::npos)
        << second.err;
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "Untitled");
}

TEST_F(ProgramTest, EndsWithStatusOneWithoutABus) {
    const char *current = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    ASSERT_NE(current, nullptr);
    const std::string address = current;
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
    const Output output = runProgram(command());
    setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    EXPECT_EQ(output.status, 1);
    EXPECT_EQ(output.err.find("plotwerkd: error: can't connect to the session bus: "), 0U)
        << output.err;

    start();
    bus.stop();
    const Output bereft = program->finish();
    EXPECT_EQ(bereft.status, 1);
    EXPECT_NE(bereft.err.find("plotwerkd: error: the bus has gone: "), std::string::npos)
        << bereft.err;
}

TEST_F(ProgramTest, OpensTheFilesThatItCan) {
    const std::string one = file("one.txt", "1 2\n3 4\n");
    const std::string cut = file("cut", "{\"format\":\"plotwerk docu");
    start({one, pathOf("none\n"), cut, directory.string(), file("two", "t y\n0 1\n")});
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "two");
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("one.txt", 1, -1), 4);

    const std::string log = stop().err;
    for (const std::string &line :
         {"opened " + one + " as \"one.txt\"\n",
          "error: can't read " + pathOf("none") + "\\x0a: No such file or directory\n",
          "error: can't open " + cut + ": damaged at byte 25\n",
          "error: can't read " + directory.string() + ": Is a directory\n"}) {
        EXPECT_NE(log.find(line), std::string::npos) << line << "in\n" << log;
    }
}

TEST_F(ProgramTest, ShowsSavedDocumentsInTheRangesTheyWereSavedWith) {
    start();
    plotwerk->setXRangeOf_xmin_xmax_("Untitled", 2, 3);
    plotwerk->saveDocument_as_binary_("Untitled", pathOf("saved"), false);
    stop();
    start({pathOf("saved")});
    EXPECT_EQ(plotwerk->getXRangeOf_xmin_xmax_("Untitled"), std::tuple(2.0, 3.0));
}

TEST_F(ProgramTest, ServesWithoutADocumentWhenNoFileCanBeOpened) {
    start({pathOf("none")});
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "");
}

TEST_F(ProgramTest, LogsWhatItIsAskedTo) {
    const struct {
        const char *level;
        bool owns, refusal, message;
    } cases[] = {{"error", false, false, false},
                 {"warning", false, true, false},
                 {"info", true, true, false},
                 {"debug", true, true, true}};
    for (const auto &c : cases) {
        start({std::string("--log-level=") + c.level});
        plotwerk->valueOfDoc_atIndex_indexSerie_("nix", 0, 0);
        const std::string log = stop().err;
        const auto has = [&](const char *text) { return log.find(text) != std::string::npos; };
        EXPECT_EQ(has("info: owns "), c.owns) << log;
        EXPECT_EQ(has("warning: valueOfDoc:atIndex:indexSerie: no document \"nix\"\n"), c.refusal)
            << log;
        EXPECT_EQ(has("debug: valueOfDoc:atIndex:indexSerie:\n"), c.message) << log;
    }
}

TEST_F(ProgramTest, WarnsOfUnsavedChangesAtItsEnd) {
    start();
    plotwerk->setXRangeOf_xmin_xmax_("Untitled", 0, 1);
    EXPECT_NE(stop().err.find("warning: unsaved changes of \"Untitled\" are lost\n"),
              std::string::npos);
}
