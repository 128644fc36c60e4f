// Every command: which messages it sends with which arguments, and what it prints.
#include "client/commandTable.h"
#include "tests/client/clientTest.h"
#include "tests/support/expect.h"

#include <algorithm>
#include <fstream>
#include <regex>
#include <set>
#include <unistd.h>

static const std::string question = "documentNameOfFrontWindow\n";

// The answers that the cases count on.
static const Script answers = {
    {"YValueOfDoc", {reply({"1234567.5"})}},
    {"valueOfDoc", {reply({"-2.5e-7"})}},
    {"indexOfPointOfDoc:atX:indexSerie", {reply({"42"})}},
    {"indexOfPointOfDoc:atX:atY", {reply({"3", "17", "0.1", "-8.25"})}},
    {"indexOfSelectedCurveOf", {reply({"5"})}},
    {"indexOfFitCurveOf", {reply({"-1"})}},
    {"mouseEventsShiftKeyDownOf", {reply({"1.5", "2.5", "3", "4.5", "2"})}},
    {"indexOfCurveNameOf", {reply({"11"})}},
    {"nameOfNextMarkedCurveOf", {reply({"a name", "a.txt", "yes", "3", "7"})}},
    {"markSelectedCurvesOf", {reply({"4"})}},
    {"statisticOfSelectionOf", {reply({"a name", "100", "-1", "1", "12.5", "0.25", "33"})}},
    {"getXRangeOf", {reply({"-1", "1.5"})}},
    {"getFitRangeOf", {reply({"nan", "2.5"})}},
    {"getYRangeOf", {reply({"-3", "3.5"})}},
    {"getVarOf", {reply({"0.125"})}},
    {"formulaTextOf", {reply({"y = pow(x, 2)\n  + b"})}},
    {"formulaParameterListOf", {reply({"a = 1,5\nb = 2,25"})}},
    {"startFitOf", {reply({"0", "12", "0.001", "1.5"})}},
    {"didSaveSucceed", {reply({"yes"})}},
    {"inventoryOf", {reply({"2", "3", "5"})}},
};

// In ISO 8859-1, of a text that has no other letters.
static std::string latin1Of(const std::string &text) {
    std::string letters;
    for (std::size_t i = 0; i < text.size(); ++i)
        letters += text[i] == '\xc3' ? static_cast<char>(text[++i] + 0x40) : text[i];
    return letters;
}

static std::vector<CommandCase> readCases() {
    std::vector<CommandCase> cases;
    std::ifstream file(TEST_DATA_DIR "/commands.txt");
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        if (line[0] != ' ')
            cases.push_back({latin1Of(line)});
        else if (line.starts_with("    > "))
            cases.back().out = line.substr(6);
        else
            cases.back().messages += (cases.back().messages.empty() ? "" : "\n") + line.substr(4);
    }
    cases.front().out += ' ' + std::to_string(getpid());
    return cases;
}

static std::string nameIn(const CommandCase &c) {
    return c.line.substr(0, c.line.find(' '));
}

// Behind them the commands of one row without its options: these are then sent as empty texts, -1,
// NaN and no.
const std::vector<CommandCase> &commandCases() {
    static const std::vector<CommandCase> all = [] {
        const std::vector<CommandCase> cases = readCases();
        std::vector<CommandCase> result = cases;
        for (const CommandCase &c : cases) {
            const std::string name = nameIn(c);
            if (c.line == name || std::ranges::count(cases, name, nameIn) > 1) continue;
            std::string messages = c.messages;
            for (const auto &[given, none] : {std::pair{":'(?!doc')[^']*'", ":''"},
                                              {":-?\\d+\\.\\d+", ":nan"},
                                              {":-?\\d+(?= |$)", ":-1"},
                                              {":yes", ":no"}})
                messages = std::regex_replace(messages, std::regex(given), none);
            result.push_back({name, messages, c.out});
        }
        return result;
    }();
    return all;
}

using CommandsTest = ClientTest;

static bool needsDocument(const CommandCase &c) {
    return c.line != "parentPID" && c.line != "sync" && c.line != "activeDoc";
}

static std::string lines(const std::string &text) {
    return text.empty() ? "" : text + '\n';
}

TEST_F(CommandsTest, SendAndPrintInBothModes) {
    std::set<std::string> commands;
    startPlotwerk(answers);
    for (const CommandCase &c : commandCases()) {
        SCOPED_TRACE(c.line);
        commands.insert(nameIn(c));
        const std::string messages = (needsDocument(c) ? question : "") + lines(c.messages);
        expectOutput(runShell("-x " + c.line), lines(c.out));
        expectOutput(runLines("-x " + c.line), lines(c.out));
        EXPECT_EQ(takeMessages(), messages + messages);
    }
    for (const CommandTable *table : command::allTables) {
        for (const CommandRow &row : *table) EXPECT_TRUE(commands.contains(row.name)) << row.name;
    }
}

TEST_F(CommandsTest, DoNothingWithoutADocument) {
    startPlotwerk({{"documentNameOfFrontWindow", {reply({""})}}});
    for (const CommandCase &c : commandCases()) {
        if (!needsDocument(c)) continue;
        SCOPED_TRACE(c.line);
        expectOutput(runLines("-x " + c.line), "");
        EXPECT_EQ(takeMessages(), question);
    }
    expectOutput(runLines("-x nonsense -a 1\n-x activeDoc\n-x sync\n-x newDocument -d new\n"),
                 "none\nsynced\n");
    EXPECT_EQ(takeMessages(),
              question + question + "waitForEmptyReply\nnewDocumentWithName:'new'\n");
}

TEST_F(CommandsTest, PrintWhateverPlotwerkAnswers) {
    const std::tuple<std::string, std::vector<std::string>, std::string, std::string> given[] = {
        {"mouseEvents", {"nan", "2", "3", "4", "5"}, "mouseClick", "none"},
        {"mouseEvents", {"1", "nan", "nan", "nan", "0"}, "mouseClick", "1 nan nan nan 0"},
        {"nameOfNextMarked", {"", "", "no", "-1", "-1"}, "nextMarkedCurve", "-1 x  Table -1 "},
        {"statisticOfSelectionOf", {"", "0", "nan", "inf", "0"}, "statistic", "0 nan inf 0 0 0 "},
        {"startFitOf", {"1", "3", "1e10", "nan"}, "fit", "fit ERROR 3 1e+10 nan"},
        {"startFitOf", {"-1", "0", "0", "0"}, "fit", "fit ERROR 0 0 0"},
        {"indexOfPointOfDoc:atX:atY", {"-1", "-1", "nan", "-inf"}, "iAtXY", "-1 -1 nan -inf"},
        {"getVarOf", {"1,5\n%s \xc3\xa4"}, "getVar", "1,5\n%s \xc3\xa4"},
        {"formulaTextOf", {"\n\na,b\r\n%d\n"}, "getFormula", "  a,b\r %d "},
        {"formulaParameterListOf", {"\na,b\n"}, "getFormulaParameters", " a.b "},
        {"documentNameOfFrontWindow", {"a %s\nb"}, "activeDoc", "a %s\nb"},
        {"didSaveSucceed", {"no"}, "saveDocument", "save ERROR"},
    };
    for (const auto &[selector, values, command, out] : given) {
        SCOPED_TRACE(command + " answered " + testing::PrintToString(values));
        startPlotwerk({{selector, {reply(values)}}});
        expectOutput(runLines("-x " + command), out + '\n');
    }
}

TEST(Options, AreReadByTheFirstCharacterOrAsFarAsANumberGoes) {
    const std::tuple<const char *, bool, int, int, double> texts[] = {
        {"", false, 2, 10, 10},    {"n", false, 0, 0, 0},      {"Nein", false, 0, 0, 0},
        {"k", true, 2, 0, 0},      {"Keep", true, 2, 0, 0},    {"false", true, 1, 0, 0},
        {" n", true, 1, 0, 0},     {"-", true, 1, 0, 0},       {"\xc3\xb1", true, 1, 0, 0},
        {"1,5", true, 1, 1, 1},    {" 7", true, 1, 7, 7},      {"+3.75", true, 1, 3, 3.75},
        {"1e3", true, 1, 1, 1000}, {"0x10", true, 1, 0, 16},   {"inf", true, 1, 0, infinity},
        {"nan", false, 0, 0, NaN}, {"-0.0", true, 1, 0, -0.0}, {"1e400", true, 1, 1, infinity}};
    for (const auto &[text, yes, state, whole, number] : texts) {
        EXPECT_EQ(yesNo(text), yes) << text;
        EXPECT_EQ(triState(text), state) << text;
        const OptionText option{text, 'a', "YatX"};
        EXPECT_EQ(integer(option, 10), whole) << text;
        EXPECT_TRUE(same(real(option, 10), number)) << text;
    }
}
