// How arguments and lines become options, and options a target document.
#include "tests/client/clientTest.h"

using CommandLineTest = ClientTest;

static const std::string frontAsked = "documentNameOfFrontWindow\n";

// What getVar sends for the value of -s.
static std::string getVarMessage(const std::string &value) {
    return "getVarOf:varName: \"doc\" " + quoted(value) + "\n";
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
        {"-x getVar -s \"it's\"\n", {"it's"}},
        {"-x getVar -s \"a \\\"b\"\n", {"a \\\"b"}},
        {"-x getVar -s \"a b\n-x getVar\n", {"a b", ""}},
        {"-x getVar -s 'a'b\n", {"a"}},
        {"-x getVar -s a'b c'\n", {"a'b"}},
        {"-x getVar -s a=b, c\n", {"a"}},
        {"-x=getVar -s  = a\n", {"a"}},
        {"-x,getVar,-s,,a\n", {",a"}},

        {"stray -x getVar\n", {}},
        {"-x getVar stray -s a\n", {""}},
        {"-x getVar - -s a\n", {""}},
        {"-x getVar -- -s a\n", {""}},
        {"-x getVar -s --\n", {"--"}},

        {"-x getVar -z -s a\n", {"a"}, "callPlw: invalid option -- 'z'\n"},
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
    };
    startPlotwerk();
    for (const auto &c : cases) {
        SCOPED_TRACE(quoted(c.input));
        std::string messages = c.values.empty() ? "" : frontAsked;
        for (const std::string &value : c.values) messages += getVarMessage(value);
        expectOutput(runLines(c.input), std::string(c.values.size(), '\n'), c.err);
        EXPECT_EQ(takeMessages(), messages);
    }
}

TEST_F(CommandLineTest, LongLinesAreReadInPiecesOf511Bytes) {
    const std::string start = "-x getVar -s ";
    const auto a = [](size_t n) { return std::string(n, 'a'); };
    const size_t pieceValue = 511 - start.size();
    startPlotwerk();
    for (const size_t length : {510, 511, 512, 513}) {
        runLines(start + a(length - 1 - start.size()) + '\n');
        EXPECT_EQ(takeMessages(),
                  frontAsked + getVarMessage(a(std::min(length - 1 - start.size(), pieceValue))))
            << length;
    }
    const std::string line = start + a(pieceValue) + start + a(pieceValue) + start + a(464) + '\n';
    ASSERT_EQ(line.size(), 1500);
    runLines(line);
    EXPECT_EQ(takeMessages(), frontAsked + getVarMessage(a(pieceValue)) +
                                  getVarMessage(a(pieceValue)) + getVarMessage(a(464)));
}

TEST_F(CommandLineTest, WordsBeyondThe62ndAreIgnored) {
    const auto pairs = [](int count) {
        std::string text;
        while (count-- > 0) text += " -a 1";
        return text;
    };
    startPlotwerk();
    expectOutput(runLines("-x getVar" + pairs(29) + " -s last" + pairs(3)), "\n");
    expectOutput(runLines("-x getVar" + pairs(30) + " -s late" + pairs(3)), "\n");
    expectOutput(runLines("-x getVar" + pairs(29) + " -a1 -s late"), "\n",
                 "callPlw: option requires an argument -- 's'\n");
    EXPECT_EQ(takeMessages(), frontAsked + getVarMessage("last") + frontAsked + getVarMessage("") +
                                  frontAsked + getVarMessage(""));
}

TEST_F(CommandLineTest, ArgumentsChainCommandsAndKeepOptions) {
    const std::string synced = "waitForEmptyReply\n";
    const std::string client = CALLPLW;
    const std::string usage = "usage: " + client + " \n";
    const struct {
        std::vector<std::string> words;
        std::string messages, out, err;
        int status = 0;
    } cases[] = {
        {{"-x", "sync"}, synced, "synced\n", ""},
        {{"-x", "sync", "-x", "sync"}, synced + synced, "synced\nsynced\n", ""},
        {{"-s", "a", "-x", "getVar", "-x", "sync", "-x", "getVar", "-sb", "-x", "getVar"},
         frontAsked + getVarMessage("a") + synced + getVarMessage("b") + getVarMessage("b"),
         "\nsynced\n\n\n",
         ""},
        {{"-x", "setFormula", "-f", "a\nb\t", "-p", "p", "-x", "setFormulaParameters"},
         frontAsked + "setFormulaOf:formulaText: \"doc\" \"a\\x0ab\\x09\"\n"
                      "readFormulaParameterOf:parameterList: \"doc\" \"p\"\n",
         "",
         ""},
        {{"-x", "sync", "stray", "-x", "sync"}, synced, "synced\n", ""},
        {{"-x", "sync", "--", "-x", "sync"}, synced, "synced\n", ""},
        {{"-x", "getVar", "-s", "a=b, 'c"}, frontAsked + getVarMessage("a=b, 'c"), "\n", ""},
        // No -x: an empty command.
        {{"-a", "1"}, frontAsked, "", "unknown command:  -a 1\n"},
        {{""}, frontAsked, "", "unknown command: \n"},
        {{"stray", "-x", "sync"}, frontAsked, "", "unknown command: \n"},
        {{"-x", "Sync"}, frontAsked, "", "unknown command: Sync\n"},
        {{"-x", "foo", "-s", "2", "-S3", "-y4", "-a", "1", "-f", "f", "-p", "p", "-Y", "5"},
         frontAsked,
         "",
         "unknown command: foo -a 1 -s 2 -y 4\n"},
        // What an earlier -x started stays done.
        {{"-d", "doc", "-x", "sync"}, "", "", client + ": invalid option -- 'd'\n" + usage, 1},
        {{"-x", "sync", "-x", "sync", "-z"},
         synced,
         "synced\n",
         client + ": invalid option -- 'z'\n" + usage,
         1},
        {{"-x", "sync", "-x"},
         "",
         "",
         client + ": option requires an argument -- 'x'\n" + usage,
         1},
    };
    startPlotwerk();
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.words));
        const Output output = runArguments(c.words);
        EXPECT_EQ(output.out, c.out);
        EXPECT_EQ(output.err, c.err);
        EXPECT_EQ(output.status, c.status);
        EXPECT_EQ(takeMessages(), c.messages);
    }
}

TEST_F(CommandLineTest, LongValuesAreCutToTheirBuffer) {
    const auto a = [](size_t n) { return std::string(n, 'a'); };
    const auto formulaMessages = [](const std::string &text) {
        return frontAsked + "setFormulaOf:formulaText: \"doc\" \"" + text +
               "\"\nreadFormulaParameterOf:parameterList: \"doc\" \"" + text + "\"\n";
    };
    startPlotwerk();
    for (const size_t length : {1022, 1023, 1024, 2000}) {
        const std::string cut = a(std::min<size_t>(length, 1023));
        expectOutput(runArguments({"-x", a(length)}), "", "unknown command: " + cut + '\n');
        // A cut value leaves nothing behind for a shorter one.
        expectOutput(runArguments({"-x", "getVar", "-s", a(length), "-x", "getVar", "-s", "b"}),
                     "\n\n");
        EXPECT_EQ(takeMessages(), frontAsked + frontAsked + getVarMessage(cut) + getVarMessage("b"))
            << length;
    }
    for (const size_t length : {65534, 65535, 65536, 100000}) {
        const std::string cut = a(std::min<size_t>(length, 65535));
        runArguments(
            {"-x", "setFormula", "-f", a(length), "-p", a(length), "-x", "setFormulaParameters"});
        EXPECT_TRUE(takeMessages() == formulaMessages(cut)) << length;
    }
}

TEST_F(CommandLineTest, TheTargetStaysUntilItIsChangedOrForgotten) {
    const auto show = [](const std::string &name) { return "showCurveOf: \"" + name + "\"\n"; };
    const std::string ask = frontAsked;
    const struct {
        std::string what, input, messages;
        std::string out = "", err = "";
    } cases[] = {
        {"asked once", "-x show\n-x show\n", ask + show("A") + show("A")},
        {"named once", "-x show -d B\n-x show\n", show("B") + show("B")},
        {"named later", "-x show\n-x show -d B\n-x show\n",
         ask + show("A") + show("B") + show("B")},
        {"closed", "-x close -d B\n-x show\n",
         "closeDocument:askForSave: \"B\" no\n" + ask + show("A")},
        {"opened", "-x show\n-x open -f f\n-x show\n",
         ask + show("A") + "openFile:file:doRangeOverAll: \"A\" \"f\" no\n" + ask + show("B")},
        {"no command", "-d B\n-x show\n", ask + show("A")},
        {"command without target", "-x sync -d C\n-x activeDoc -d C\n-x show\n",
         "waitForEmptyReply\n" + ask + ask + show("B"), "synced\nA\n"},
        {"activeDoc changes nothing", "-x show -d C\n-x activeDoc\n-x show\n",
         show("C") + ask + show("C"), "A\n"},
        {"unknown command", "-x foo -d C -a 1\n-x show\n", show("C"), "",
         "unknown command: foo -a 1 -d C\n"},
        {"carriage return", "-x show\r\n", ask, "", "unknown command: show\r\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        startPlotwerk({{"documentNameOfFrontWindow", {reply({"A"}), reply({"B"})}}});
        expectOutput(runLines(c.input), c.out, c.err);
        EXPECT_EQ(takeMessages(), c.messages);
    }
}

TEST_F(CommandLineTest, NumbersinsideIsTakenFromTheNameGivenForTheTarget) {
    const std::pair<std::string, std::string> cases[] = {{"-d Fit1", "1"},  {"-d notes", "0"},
                                                         {"-d Notes", "0"}, {"-d kurve", "2"},
                                                         {"-d Kurve", "2"}, {"", "2"}};
    startPlotwerk();
    for (const auto &[option, numbersinside] : cases) {
        runLines("-x show -d Fit1\n-x setAxis " + option);
        const std::string messages = takeMessages();
        EXPECT_NE(messages.find(" nan 2 " + numbersinside + " 2 2 -1 -1 2 nan\n"),
                  std::string::npos)
            << option << ": " << messages;
    }
}

TEST_F(CommandLineTest, TextThatIsNotUtf8IsReadAsLatin1) {
    const auto latin1 = [](const std::string &bytes) {
        std::string utf8;
        for (const char c : bytes) {
            const auto code = static_cast<unsigned char>(c);
            if (code >= 0x80) utf8 += static_cast<char>(0xc0 | code >> 6);
            utf8 += static_cast<char>(code < 0x80 ? code : 0x80 | (code & 0x3f));
        }
        return utf8;
    };
    const char *const utf8Texts[] = {"\xc3\xa4 \xe2\x82\xac", "\xc2\x80",        "\xe0\xa0\x80",
                                     "\xed\x9f\xbf",          "\xee\x80\x80",    "\xef\xb7\x8f",
                                     "\xef\xb7\xb0",          "\xef\xbf\xbd",    "\xf0\x90\x80\x80",
                                     "\xf0\x9f\x98\x80",      "\xf4\x8f\xbf\xbd"};
    const char *const otherTexts[] = {"\xe4",
                                      "a\xff",
                                      "\xc3\xa4\xe4",
                                      "\x80",
                                      "\xc1\xbf",
                                      "\xe0\x9f\xbf",
                                      "\xf0\x8f\xbf\xbf",
                                      "\xe2\x82",
                                      "\xe2\x82z",
                                      "\xed\xa0\x80",
                                      "\xed\xbf\xbf",
                                      "\xef\xb7\x90",
                                      "\xef\xb7\xaf",
                                      "\xef\xbf\xbe",
                                      "\xef\xbf\xbf",
                                      "\xf0\x9f\xbf\xbe",
                                      "\xf4\x8f\xbf\xbf",
                                      "\xf4\x90\x80\x80",
                                      "\xf5\x80\x80\x80"};
    startPlotwerk();
    std::string input, messages = frontAsked;
    for (const char *text : utf8Texts) {
        input += std::string("-x getVar -s '") + text + "'\n";
        messages += getVarMessage(text);
    }
    for (const char *text : otherTexts) {
        input += std::string("-x getVar -s '") + text + "'\n";
        messages += getVarMessage(latin1(text));
    }
    expectOutput(runLines(input), std::string(std::size(utf8Texts) + std::size(otherTexts), '\n'));
    EXPECT_EQ(takeMessages(), messages);

    runLines("-x show -d \xe4");
    EXPECT_EQ(takeMessages(), "showCurveOf: \"\xc3\xa4\"\n");
}

TEST_F(CommandLineTest, EveryTextOptionAndAnswerCarriesUmlauts) {
    startPlotwerk({{"documentNameOfFrontWindow", {reply({"d\xc3\xa4"})}},
                   {"getVarOf:varName:", {reply({"\xc3\xb6"})}}});
    expectOutput(
        runLines("-x getVar -s \xfc\n-x selectCurve -s \xe4 -c \xf6\n-x setFormula -f \xe4\n"
                 "-x setFormulaParameters -p \xe4\n-x savePDFofComposition -f \xe4 -a \xf6\n"
                 "-x readData -p \xe4 -s \xf6\n-x changeNameOfSelection -t \xe4\n"
                 "-x indexOfCurveName -s \xe4 -c \xf6\n-x activeDoc\n-x open -f \xe4\n"),
        "\xc3\xb6\n0\nd\xc3\xa4\n");
    EXPECT_EQ(
        takeMessages(),
        frontAsked +
            "getVarOf:varName: \"dä\" \"ü\"\n"
            "selectCurvesOf:sourceName:table:column:appendSelection: \"dä\" \"ä\" -1 \"ö\" no\n"
            "setFormulaOf:formulaText: \"dä\" \"ä\"\n"
            "readFormulaParameterOf:parameterList: \"dä\" \"ä\"\n"
            "savePDFofCompositionView:openWith: \"ä\" \"ö\"\n"
            "readDataformText:of:source:doRangeOverAll:appendToExistingData: \"ä\" \"dä\" "
            "\"ö\" no no\n"
            "changeNameOfSelectionOf:to: \"dä\" \"ä\"\n"
            "indexOfCurveNameOf:source:table:column: \"dä\" \"ä\" -1 \"ö\"\n" +
            frontAsked + "openFile:file:doRangeOverAll: \"dä\" \"ä\" no\n");
}

TEST_F(CommandLineTest, PlacedTextIsRtf) {
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"plain, {braced} \\slash", "plain, \\{braced\\} \\\\slash"},
        {"\xc3\xa4\xe4", "\\u195\\'3f\\u164\\'3f\\u228\\'3f"},
        {"\xc3\xa4 \xe2\x82\xac \xef\xbf\xbd", "\\u228\\'3f \\u8364\\'3f \\u-3\\'3f"},
        {"na\xc3\xafve", "na\\u239\\'3fve"},
        {"\xf0\x9f\x98\x80", "\\u-10179\\'3f\\u-8704\\'3f"},
        {"a\nb\rc\r\nd\n\n", "a\\par\nb\\par\nc\\par\nd\\par\n\\par\n"},
        {"a\tb", "a\\tab b"},
        {"\x01\x7f~", "\\'01\\'7f~"},
    };
    startPlotwerk();
    for (const auto &[text, rtf] : cases) {
        runArguments({"-x", "placeText", "-t", text});
        EXPECT_EQ(takeMessages(), frontAsked +
                                      "setRTFTextOf:to:at_X:at_Y:angle:xFloating:yFloating: "
                                      "\"doc\" " +
                                      quoted("{\\rtf1\\ansi\\uc1 " + rtf + "}") +
                                      " 0.5 0.5 0 0 0\n")
            << text;
    }
}
