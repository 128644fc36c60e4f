// How arguments and lines become options, and options a target document.
#include "client/rtf.h"
#include "tests/client/clientTest.h"

#include <sstream>

using CommandLineTest = ClientTest;

static const std::string frontAsked = "documentNameOfFrontWindow\n";

// What getVar sends for the value of -s.
static std::string getVarMessage(const std::string &value) {
    return "getVarOf:'doc' varName:'" + value + "'\n";
}

TEST_F(CommandLineTest, LinesAreCutIntoWordsAndOptions) {
    using namespace std::string_literals;
    // what must come of the input: values of -s in getVar commands, a '|' behind each
    const auto expectValues = [&](const std::string &input, const std::string &values,
                                  const std::string &err) {
        SCOPED_TRACE(testing::PrintToString(input));
        std::string messages = values.empty() ? "" : frontAsked, out, value;
        for (std::istringstream each(values); std::getline(each, value, '|'); out += '\n')
            messages += getVarMessage(value);
        expectOutput(runLines(input), out, err);
        EXPECT_EQ(takeMessages(), messages);
    };
    startPlotwerk();
    for (const std::string c : {" -> ",
                                "-x '' -> ",
                                "\n\n \t \n-s a\n-x getVar\n -> |",
                                "-x getVar -s a\n-x getVar -> a||",
                                "\t-x\tgetVar\t -s\ta \n -> a|",
                                "-s a -x getVar -> a|",
                                "-x getVar -sab -> ab|",
                                "-x getVar -s -1 -> -1|",
                                "-x getVar -s a -s b -> b|",
                                "-x getVar -s a -s '' -> |",
                                "-x nonsense -x getVar -> |",
                                "-x getVar -s 'a b' -> a b|",
                                "-x getVar -s \"a b\n-x getVar -> a b||",
                                "-x getVar -s a=b, c -> a|",
                                "-x=getVar -s  = a -> a|",
                                "-x,getVar,-s,,a -> ,a|",
                                "stray -x getVar -> ",
                                "-x getVar stray -s a -> |",
                                "-x getVar -- -s a -> |",
                                "-x getVar -s -- -> --|",
                                "-x getVar -s a\r\n -> a\r|"})
        expectValues(c.substr(0, c.find(" -> ")), c.substr(c.find(" -> ") + 4), "");

    const std::string getVar = "-x getVar -s ", full(498, 'a');
    std::string ones;
    for (int i = 0; i < 29; ++i) ones += " -a 1";
    const std::string noOption = "callPlw: invalid option -- ";
    const std::string noValue = "callPlw: option requires an argument -- ";
    const std::string noZ = noOption + "'z'\n";
    const struct {
        std::string input, values, err = "";
    } cases[] = {{"\0-x getVar\n-x getVar -s a\0b\n-x getVar -s c"s, "a|c|"},
                 {"-x getVar --sa", "a|", noOption + "'-'\n"},
                 {"-x getVar -O 0.5 -s a", "|", noOption + "'O'\n"},
                 {"-s a -x\n-x getVar", "|", noValue + "'x'\n"},
                 {"-x getVar -zz\n-x getVar -s a\n-x getVar -zs\n-x getVar -zsb", "|a||b|",
                  noZ + noZ + noZ + noValue + "'s'\n" + noZ},
                 // words beyond the 62nd
                 {"-x getVar" + ones + " -s last" + ones, "last|"},
                 {"-x getVar" + ones + " -a 1 -s late", "|"},
                 {"-x getVar" + ones + " -a1 -s late", "|", noValue + "'s'\n"},
                 // bytes beyond the 511th are another line
                 {getVar + full + "\n", full + "|"},
                 {getVar + full + "a\n", full + "|"},
                 {getVar + full + getVar + full + getVar + "end\n", full + "|" + full + "|end|"}};
    for (const auto &c : cases) expectValues(c.input, c.values, c.err);
}

TEST_F(CommandLineTest, ArgumentsChainCommandsAndKeepOptions) {
    const std::string synced = "waitForEmptyReply\n", usage = "\nusage: " CALLPLW " \n";
    const struct {
        std::string words, messages, out, err = "";
        int status = 0;
    } cases[] = {
        {"-s a -x getVar -x sync -x getVar -sb -x getVar",
         frontAsked + getVarMessage("a") + synced + getVarMessage("b") + getVarMessage("b"),
         "\nsynced\n\n\n"},
        {"-x setFormula -f 'a\nb\t' -p p -x setFormulaParameters",
         frontAsked + "setFormulaOf:'doc' formulaText:'a\nb\t'\n"
                      "readFormulaParameterOf:'doc' parameterList:'p'\n",
         ""},
        {"-x sync stray -x sync", synced, "synced\n"},
        {"-x getVar -s \"a=b, 'c\"", frontAsked + getVarMessage("a=b, 'c"), "\n"},
        // No -x: an empty command.
        {"''", frontAsked, "", "unknown command: \n"},
        {"-a 1 stray -x sync", frontAsked, "", "unknown command:  -a 1\n"},
        {"-x Sync -s 2 -S3 -y4 -a 1 -f f -p p -Y 5", frontAsked, "",
         "unknown command: Sync -a 1 -s 2 -y 4\n"},
        // What an earlier -x started stays done.
        {"-d doc -x sync", "", "", CALLPLW ": invalid option -- 'd'" + usage, 1},
        {"-x sync -x sync -z", synced, "synced\n", CALLPLW ": invalid option -- 'z'" + usage, 1},
        {"-x sync -x", "", "", CALLPLW ": option requires an argument -- 'x'" + usage, 1}};
    startPlotwerk();
    for (const auto &c : cases) {
        SCOPED_TRACE(c.words);
        expectOutput(runShell(c.words), c.out, c.err, c.status);
        EXPECT_EQ(takeMessages(), c.messages);
    }
}

TEST_F(CommandLineTest, LongValuesAreCutToTheirBuffer) {
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
        EXPECT_TRUE(takeMessages() == frontAsked + "setFormulaOf:'doc' formulaText:'" + cut +
                                          "'\nreadFormulaParameterOf:'doc' parameterList:'" + cut +
                                          "'\n")
            << length;
    }
}

TEST_F(CommandLineTest, OfALineOnlyTheTargetIsKeptUntilItIsChangedOrForgotten) {
    const auto show = [](const std::string &name) { return "showCurveOf:'" + name + "'\n"; };
    const std::string ask = frontAsked;
    const struct {
        std::string what, input, messages, out = "", err = "";
    } cases[] = {{"asked once", "-x show\n-x show\n", ask + show("A") + show("A")},
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
                 {"long texts",
                  "-x setFormula -f a\n-x setFormula\n-x setFormulaParameters -p b\n"
                  "-x setFormulaParameters\n",
                  ask + "setFormulaOf:'A' formulaText:'a'\nsetFormulaOf:'A' formulaText:''\n"
                        "readFormulaParameterOf:'A' parameterList:'b'\n"
                        "readFormulaParameterOf:'A' parameterList:''\n"}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        startPlotwerk({{"documentNameOfFrontWindow", {reply({"A"}), reply({"Ä"})}}});
        expectOutput(runLines(c.input), c.out, c.err);
        EXPECT_EQ(takeMessages(), c.messages);
    }
}

TEST_F(CommandLineTest, NumbersinsideIsTakenFromTheNameGivenForTheTarget) {
    startPlotwerk();
    for (const auto &[option, sent] : {std::pair{"-d Fit1", " numbersinside:1 "},
                                       {"-d notes", " numbersinside:0 "},
                                       {"-d Kurve", " numbersinside:2 "},
                                       {"", " numbersinside:2 "}}) {
        runLines(std::string("-x show -d Fit1\n-x setAxis ") + option);
        const std::string messages = takeMessages();
        EXPECT_NE(messages.find(sent), std::string::npos) << option << ": " << messages;
    }
}

TEST(RtfOfText, EscapesWhatIsNoPlainAscii) {
    const std::pair<const char *, std::string> cases[] = {
        {"", ""},
        {"plain, {braced} \\slash", "plain, \\{braced\\} \\\\slash"},
        {"\xc3\xa4\xe4", "\\u195\\'3f\\u164\\'3f\\u228\\'3f"},
        {"naïve € \xef\xbf\xbd", "na\\u239\\'3fve \\u8364\\'3f \\u-3\\'3f"},
        {"\xf0\x9f\x98\x80", "\\u-10179\\'3f\\u-8704\\'3f"},
        {"\U00010000", "\\u-10240\\'3f\\u-9216\\'3f"},
        {"a\nb\rc\r\nd\n\n", "a\\par\nb\\par\nc\\par\nd\\par\n\\par\n"},
        {"a\tb\x01\x7f~", "a\\tab b\\'01\\'7f~"}};
    for (const auto &[text, rtf] : cases)
        EXPECT_EQ(rtfOfText(text), "{\\rtf1\\ansi\\uc1 " + rtf + "}");
}
