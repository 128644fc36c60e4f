// How arguments and lines become options, and options a target document.
#include "tests/client/clientTest.h"

using CommandLineTest = ClientTest;

static const std::string frontAsked = "documentNameOfFrontWindow\n";

// What getVar sends for the value of -s.
static std::string getVarMessage(const std::string &value) {
    return "getVarOf:'doc' varName:'" + value + "'\n";
}

static std::string repeated(const std::string &text, std::size_t count) {
    std::string result;
    while (count-- > 0) result += text;
    return result;
}

TEST_F(CommandLineTest, LinesAreCutIntoWordsAndOptions) {
    using namespace std::string_literals;
    const struct {
        std::string input;
        std::vector<std::string> values; // of -s in the getVar commands that must come of it
        std::string err = "";
    } cases[] = {
        {"", {}},
        {"\n\n \t \n-s a\n-x getVar\n", {""}},
        {"-x getVar -s a\n-x getVar\n", {"a", ""}},
        {"-x getVar -s a", {"a"}},
        {"\t-x\tgetVar\t -s\ta \n", {"a"}},
        {"-s a -x getVar\n", {"a"}},
        {"-x getVar -sab\n", {"ab"}},
        {"-x getVar -s -1\n", {"-1"}},
        {"-x getVar -s a -s b\n", {"b"}},
        {"-x getVar -s a -s ''\n", {""}},
        {"-x nonsense -x getVar\n", {""}},
        {"-x ''\n", {}},

        {"-x getVar -s 'a b'\n", {"a b"}},
        {"-x getVar -s \"a b\n-x getVar\n", {"a b", ""}},
        {"-x getVar -s a=b, c\n", {"a"}},
        {"-x=getVar -s  = a\n", {"a"}},
        {"-x,getVar,-s,,a\n", {",a"}},

        {"stray -x getVar\n", {}},
        {"-x getVar stray -s a\n", {""}},
        {"-x getVar - -s a\n", {""}},
        {"-x getVar -- -s a\n", {""}},
        {"-x getVar -s --\n", {"--"}},

        {"-x getVar -zsa\n", {"a"}, "callPlw: invalid option -- 'z'\n"},
        {"-x getVar --sa\n", {"a"}, "callPlw: invalid option -- '-'\n"},
        {"-x getVar -O 0.5 -s a\n", {""}, "callPlw: invalid option -- 'O'\n"},
        {"-x getVar -s\n", {""}, "callPlw: option requires an argument -- 's'\n"},
        {"-s a -x\n-x getVar\n", {""}, "callPlw: option requires an argument -- 'x'\n"},
        {"-x getVar -zz\n-x getVar -s a\n-x getVar -zs\n-x getVar -s b",
         {"", "a", "", "b"},
         "callPlw: invalid option -- 'z'\ncallPlw: invalid option -- 'z'\n"
         "callPlw: invalid option -- 'z'\ncallPlw: option requires an argument -- 's'\n"},

        {"-x getVar -s a\0b\n-x getVar -s c\n"s, {"a", "c"}},
        {"\0-x getVar\n-x getVar -s a\n"s, {"a"}},
        {"-x getVar -s a\r\n", {"a\r"}},

        // words beyond the 62nd
        {"-x getVar" + repeated(" -a 1", 29) + " -s last" + repeated(" -a 1", 3), {"last"}},
        {"-x getVar" + repeated(" -a 1", 30) + " -s late", {""}},
        {"-x getVar" + repeated(" -a 1", 29) + " -a1 -s late",
         {""},
         "callPlw: option requires an argument -- 's'\n"},
    };
    startPlotwerk();
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.input));
        std::string messages = c.values.empty() ? "" : frontAsked;
        for (const std::string &value : c.values) messages += getVarMessage(value);
        expectOutput(runLines(c.input), std::string(c.values.size(), '\n'), c.err);
        EXPECT_EQ(takeMessages(), messages);
    }
}

TEST_F(CommandLineTest, ALineForgetsTheLongTextsOfTheOneBefore) {
    startPlotwerk();
    runLines("-x setFormula -f a\n-x setFormula\n"
             "-x setFormulaParameters -p b\n-x setFormulaParameters\n");
    EXPECT_EQ(takeMessages(), frontAsked + "setFormulaOf:'doc' formulaText:'a'\n"
                                           "setFormulaOf:'doc' formulaText:''\n"
                                           "readFormulaParameterOf:'doc' parameterList:'b'\n"
                                           "readFormulaParameterOf:'doc' parameterList:''\n");
}

TEST_F(CommandLineTest, LongLinesAreReadInPiecesOf511Bytes) {
    const std::string start = "-x getVar -s ";
    const auto value = [&](std::size_t lineLength) {
        return std::string(lineLength - start.size(), 'a');
    };
    startPlotwerk();
    for (const std::size_t length : {510, 511, 512}) {
        runLines(start + value(length) + '\n');
        EXPECT_EQ(takeMessages(),
                  frontAsked + getVarMessage(value(std::min<std::size_t>(length, 511))))
            << length;
    }
    const std::string piece = start + value(511);
    runLines(piece + piece + start + "end\n");
    EXPECT_EQ(takeMessages(),
              frontAsked + repeated(getVarMessage(value(511)), 2) + getVarMessage("end"));
}

TEST_F(CommandLineTest, ArgumentsChainCommandsAndKeepOptions) {
    const std::string synced = "waitForEmptyReply\n";
    const auto complaint = [](const std::string &what) {
        return CALLPLW ": " + what + "\nusage: " CALLPLW " \n";
    };
    const struct {
        std::string words, messages, out, err = "";
        int status = 0;
    } cases[] = {
        {"-x sync", synced, "synced\n"},
        {"-s a -x getVar -x sync -x getVar -sb -x getVar",
         frontAsked + getVarMessage("a") + synced + getVarMessage("b") + getVarMessage("b"),
         "\nsynced\n\n\n"},
        {"-x setFormula -f 'a\nb\t' -p p -x setFormulaParameters",
         frontAsked + "setFormulaOf:'doc' formulaText:'a\nb\t'\n"
                      "readFormulaParameterOf:'doc' parameterList:'p'\n",
         ""},
        {"-x sync stray -x sync", synced, "synced\n"},
        {"-x sync -- -x sync", synced, "synced\n"},
        {"-x getVar -s \"a=b, 'c\"", frontAsked + getVarMessage("a=b, 'c"), "\n"},
        // No -x: an empty command.
        {"-a 1", frontAsked, "", "unknown command:  -a 1\n"},
        {"''", frontAsked, "", "unknown command: \n"},
        {"stray -x sync", frontAsked, "", "unknown command: \n"},
        {"-x Sync", frontAsked, "", "unknown command: Sync\n"},
        {"-x foo -s 2 -S3 -y4 -a 1 -f f -p p -Y 5", frontAsked, "",
         "unknown command: foo -a 1 -s 2 -y 4\n"},
        // What an earlier -x started stays done.
        {"-d doc -x sync", "", "", complaint("invalid option -- 'd'"), 1},
        {"-x sync -x sync -z", synced, "synced\n", complaint("invalid option -- 'z'"), 1},
        {"-x sync -x", "", "", complaint("option requires an argument -- 'x'"), 1},
    };
    startPlotwerk();
    for (const auto &c : cases) {
        SCOPED_TRACE(c.words);
        const Output output = runShell(c.words);
        EXPECT_EQ(output.out, c.out);
        EXPECT_EQ(output.err, c.err);
        EXPECT_EQ(output.status, c.status);
        EXPECT_EQ(takeMessages(), c.messages);
    }
}

TEST_F(CommandLineTest, LongValuesAreCutToTheirBuffer) {
    const auto formulaMessages = [](const std::string &text) {
        return frontAsked + "setFormulaOf:'doc' formulaText:'" + text +
               "'\nreadFormulaParameterOf:'doc' parameterList:'" + text + "'\n";
    };
    startPlotwerk();
    for (const std::size_t length : {1023, 1024, 2000}) {
        const std::string given(length, 'a'), cut(1023, 'a');
        expectOutput(runArguments({"-x", given}), "", "unknown command: " + cut + '\n');
        // A cut value leaves nothing behind for a shorter one.
        runArguments({"-x", "getVar", "-s", given, "-x", "getVar", "-s", "b"});
        EXPECT_EQ(takeMessages(), frontAsked + frontAsked + getVarMessage(cut) + getVarMessage("b"))
            << length;
    }
    for (const std::size_t length : {65535, 65536, 100000}) {
        const std::string given(length, 'a'), cut(65535, 'a');
        runArguments({"-x", "setFormula", "-f", given, "-p", given, "-x", "setFormulaParameters"});
        EXPECT_TRUE(takeMessages() == formulaMessages(cut)) << length;
    }
}

TEST_F(CommandLineTest, TheTargetStaysUntilItIsChangedOrForgotten) {
    const auto show = [](const std::string &name) { return "showCurveOf:'" + name + "'\n"; };
    const std::string ask = frontAsked;
    const struct {
        std::string what, input, messages;
        std::string out = "", err = "";
    } cases[] = {
        {"asked once", "-x show\n-x show\n", ask + show("A") + show("A")},
        {"named later", "-x show\n-x show -d \xfc\n-x show\n",
         ask + show("A") + show("ü") + show("ü")},
        {"closed", "-x close -d B\n-x show\n",
         "closeDocument:'B' askForSave:no\n" + ask + show("A")},
        {"opened", "-x show\n-x open -f f\n-x show\n",
         ask + show("A") + "openFile:'A' file:'f' doRangeOverAll:no\n" + ask + show("Ä")},
        {"no command", "-d B\n-x show\n", ask + show("A")},
        {"command without target", "-x sync -d C\n-x activeDoc -d C\n-x show\n",
         "waitForEmptyReply\n" + ask + ask + show("Ä"), "synced\nA\n"},
        {"activeDoc changes nothing", "-x show -d C\n-x activeDoc\n-x show\n",
         show("C") + ask + show("C"), "A\n"},
        {"unknown command", "-x foo -d C -a 1\n-x show\n", show("C"), "",
         "unknown command: foo -a 1 -d C\n"},
        {"carriage return", "-x show\r\n", ask, "", "unknown command: show\r\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        startPlotwerk({{"documentNameOfFrontWindow", {reply({"A"}), reply({"Ä"})}}});
        expectOutput(runLines(c.input), c.out, c.err);
        EXPECT_EQ(takeMessages(), c.messages);
    }
}

TEST_F(CommandLineTest, NumbersinsideIsTakenFromTheNameGivenForTheTarget) {
    startPlotwerk();
    for (const auto &[option, numbersinside] :
         {std::pair{"-d Fit1", "1"}, {"-d notes", "0"}, {"-d Kurve", "2"}, {"", "2"}}) {
        runLines(std::string("-x show -d Fit1\n-x setAxis ") + option);
        const std::string messages = takeMessages();
        EXPECT_NE(messages.find(std::string(" numbersinside:") + numbersinside + " nonumbers:2"),
                  std::string::npos)
            << option << ": " << messages;
    }
}

TEST_F(CommandLineTest, PlacedTextIsRtf) {
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"plain, {braced} \\slash", "plain, \\{braced\\} \\\\slash"},
        {"\xc3\xa4\xe4", "\\u195\\'3f\\u164\\'3f\\u228\\'3f"},
        {"ä € \xef\xbf\xbd", "\\u228\\'3f \\u8364\\'3f \\u-3\\'3f"},
        {"naïve", "na\\u239\\'3fve"},
        {"\xf0\x9f\x98\x80", "\\u-10179\\'3f\\u-8704\\'3f"},
        {"a\nb\rc\r\nd\n\n", "a\\par\nb\\par\nc\\par\nd\\par\n\\par\n"},
        {"a\tb", "a\\tab b"},
        {"\x01\x7f~", "\\'01\\'7f~"},
    };
    const auto placeTextMessages = [](const std::string &rtf) {
        return frontAsked + "setRTFTextOf:'doc' to:'{\\rtf1\\ansi\\uc1 " + rtf +
               "}' at_X:0.5 at_Y:0.5 angle:0 xFloating:0 yFloating:0\n";
    };
    startPlotwerk();
    for (const auto &[text, rtf] : cases) {
        runArguments({"-x", "placeText", "-t", text});
        EXPECT_EQ(takeMessages(), placeTextMessages(rtf)) << text;
    }
}
