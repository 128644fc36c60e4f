// plotwerkd as a program: its options, its files, its name, its end.
#include "tests/plotwerk/server/serverTest.h"

#include <csignal>
#include <sys/resource.h>

using ProgramTest = ServerTest;

TEST_F(ProgramTest, ExplainsItselfAndItsUsage) {
    const std::tuple<std::vector<std::string>, std::string, std::string> cases[] = {
        {{"--help"}, "usage: plotwerkd ", ""},
        {{"--limit", "seconds=20", "--version"}, "plotwerkd " PLOTWERK_VERSION "\n", ""},
        {{"--nix"}, "", "\nusage: plotwerkd "},
        {{"--limit", "nix=1"}, "", "no limit is called \"nix\"\nusage: plotwerkd "},
        {{"--limit", "memory"},
         "",
         "the limit memory needs a value: memory=NUMBER\nusage: plotwerkd "},
        {{"--limit", "answer=121"},
         "",
         "the limit answer can't be \"121\", only 1 to 120\nusage: plotwerkd "},
        {{"--log-level", "loud"}, "", "'loud'\nusage: plotwerkd "}};
    for (const auto &[arguments, out, err] : cases) {
        const Output output = runProgram(command(arguments));
        EXPECT_EQ(output.status, err.empty() ? 0 : 2) << arguments.front();
        EXPECT_TRUE(holds(output.out, out));
        EXPECT_TRUE(holds(output.err, err));
        EXPECT_EQ(output.out.empty(), out.empty());
    }
}

TEST_F(ProgramTest, OwnsItsNameAloneUntilASignal) {
    for (const int signal : {SIGTERM, SIGINT}) {
        start();
        const Output second = runProgram(command());
        EXPECT_EQ(second.status, 1);
        EXPECT_TRUE(
            holds(second.err, "error: can't own org.plotwerk.PlotwerkControl, its owner is :"));
        EXPECT_TRUE(holds(second.err, ", process " + std::to_string(program->pid()) + "\n"));
        EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "Untitled");
        waitUntil("sleep", [&] { return program->procStatus("State").starts_with('S'); });
        plotwerk->setXRangeOf_xmin_xmax_("Untitled", 0, 1);

        program->sendSignal(signal);
        const Output output = program->finish();
        EXPECT_EQ(output.status, 0);
        EXPECT_TRUE(holds(output.err, "info: owns org.plotwerk.PlotwerkControl as :"));
        EXPECT_TRUE(holds(output.err, "info: ended\n"));
        EXPECT_FALSE(bus.hasOwner(busName));
    }
}

TEST_F(ProgramTest, MayHaveManyFilesAndOutlivesOneThatBecomesTooLarge) {
    rlimit files{};
    getrlimit(RLIMIT_NOFILE, &files);
    const rlimit fewer{files.rlim_max - 1, files.rlim_max};
    setrlimit(RLIMIT_NOFILE, &fewer);
    start();
    setrlimit(RLIMIT_NOFILE, &files);
    prlimit(program->pid(), RLIMIT_NOFILE, nullptr, &files);
    EXPECT_EQ(files.rlim_cur, files.rlim_max);

    limit(RLIMIT_FSIZE, 0);
    plotwerk->saveDocument_to_binary_("Untitled", pathOf("large"), false);
    EXPECT_TRUE(holds(lastError(), "File too large"));
    stop();
}

TEST_F(ProgramTest, EndsWithStatusOneWithoutABus) {
    start();
    plotwerk->setXRangeOf_xmin_xmax_("Untitled", 0, 1);
    bus.stop();
    const Output bereft = program->finish();
    EXPECT_EQ(bereft.status, 1);
    EXPECT_TRUE(holds(bereft.err, "plotwerkd: error: the bus has gone: "));
    EXPECT_TRUE(holds(bereft.err, "warning: unsaved changes of \"Untitled\" can be brought back"));

    const Output output = runProgram(command());
    EXPECT_EQ(output.status, 1);
    EXPECT_TRUE(holds(output.err, "plotwerkd: error: can't connect to the session bus: "));
}

TEST_F(ProgramTest, OpensTheFilesThatItCan) {
    const std::string one = file("one.txt", "1 2\n3 4\n");
    const std::string cut = file("cut", "{\"format\":\"plotwerk docu");
    start({one, pathOf("none\n"), cut, directory.string(), file("two", "t y\n0 1\n")});
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "two");
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("one.txt", 1, -1), 4);
    const std::string log = stop().err;
    EXPECT_TRUE(holds(log, "opened " + one + " as \"one.txt\"\n"));
    EXPECT_TRUE(
        holds(log, "error: can't read " + pathOf("none") + "\\x0a: No such file or directory\n"));
    EXPECT_TRUE(holds(log, "error: can't open " + cut + ": damaged at byte 25\n"));
    EXPECT_TRUE(holds(log, "error: can't read " + directory.string() + ": Is a directory\n"));

    start({pathOf("none")});
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "none") << "and nothing can be done with it";
}

TEST_F(ProgramTest, LogsWhatItIsAskedTo) {
    const std::string lines[] = {"warning: no document \"nix\" [valueOfDoc:atIndex:indexSerie:]\n",
                                 "info: owns ", "debug: valueOfDoc:atIndex:indexSerie:\n"};
    for (int most = 0; const char *level : {"error", "warning", "info", "debug"}) {
        start({std::string("--log-level=") + level});
        plotwerk->valueOfDoc_atIndex_indexSerie_("nix", 0, 0);
        const std::string log = stop().err;
        for (int i = 0; i < 3; ++i) EXPECT_EQ(holds(log, lines[i]), i < most) << level << lines[i];
        ++most;
    }
}
