// What is written about the commands for the user is what their tables say.
#include "client/commandTable.h"
#include "tests/support/process.h"

#include <cctype>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>

// The options of a line of the manual page as in a command's row: "-a x [-s series]".
static std::string synopsisOf(std::string line) {
    for (const auto &[markup, text] :
         {std::pair{" Op (.*)$", " [$1]"}, {" Oo ", " ["}, {" Oc", "]"}, {"Fl ", "-"}, {"Ar ", ""}})
        line = std::regex_replace(line, std::regex(markup), text);
    return line.substr(line.empty() ? 0 : 1);
}

TEST(Documentation, ManualPageHasEveryCommandOnceWithItsOptions) {
    std::multimap<std::string, std::string> written, known;
    for (const CommandTable *table : command::allTables) {
        for (const CommandRow &row : *table) known.emplace(row.name, row.synopsis);
    }
    std::ifstream page(CALLPLW_MANUAL);
    for (std::string line; std::getline(page, line);) {
        std::smatch item;
        if (std::regex_match(line, item, std::regex("\\.It Ic (\\w+)(.*)")))
            written.emplace(item[1], synopsisOf(item[2]));
    }
    EXPECT_EQ(written, known);
}

static std::string lettersOf(const CommandRow &row) {
    static const std::regex option("[-|] ?([a-zA-Z])(?= )");
    const std::string synopsis = row.synopsis;
    std::string letters;
    for (std::sregex_iterator at(synopsis.begin(), synopsis.end(), option), end; at != end; ++at)
        letters += at->str(1);
    return letters;
}

TEST(Documentation, CompletionOffersCommandsAndTheirOptionsWhereTheyAreWanted) {
    using Names = std::multiset<std::string>;
    const auto offered = [&](const std::string &words) {
        std::istringstream out(
            runProgram({"bash", "-c",
                        ". " CALLPLW_COMPLETION "; COMP_WORDS=(callPlw " + words +
                            "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _callPlw; "
                            "echo ${COMPREPLY[*]}"})
                .out);
        return Names(std::istream_iterator<std::string>(out), {});
    };
    Names names;
    std::vector<std::pair<std::string, Names>> cases = {
        {"-x setF", {"setFitRange", "setFormula", "setFormulaParameters"}},
        {"-xsetF", {"-xsetFitRange", "-xsetFormula", "-xsetFormulaParameters"}},
        {"-s set", {}},
        {"-s -x ''", {"-x"}},
        {"''", {"-x"}},
        {"-x", {"-x"}},
        {"-xopen -f file -", {"-f", "-r", "-x"}},
        {"-x nonsense ''", {"-x"}},
        {"stray ''", {}}};
    for (const CommandTable *table : command::allTables) {
        for (const CommandRow &row : *table) {
            names.insert(row.name);
            Names options{"-x"};
            for (const char letter : lettersOf(row)) options.insert({'-', letter});
            cases.push_back({std::string("-x ") + row.name + " ''", options});
        }
    }
    cases.insert(cases.end(), {{"-x ''", names}, {"-s '' -xopen -x ''", names}});
    for (const auto &[words, offers] : cases) EXPECT_EQ(offered(words), offers) << words;
}

// Rows {"MEMBER", "COMMAND -o VALUE|OTHER", "d a b? ."} of the table in the source.
TEST(Documentation, JournalOfAWindowHasCommandsAndOptionsOfTheTables) {
    std::map<std::string, std::string> letters;
    for (const CommandTable *table : command::allTables)
        for (const CommandRow &row : *table) letters[row.name] = lettersOf(row);

    std::ifstream file(MESSAGE_LINES);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    static const std::regex row("\\{(?:\"\\w+\"\\s*)*\"\\w+_\",\\s*\"([^\"]+)\",\\s*\"([^\"]*)\"");
    int rows = 0;
    for (std::sregex_iterator at(text.begin(), text.end(), row), end; at != end; ++at, ++rows) {
        std::istringstream names(at->str(1)), kinds(at->str(2));
        std::string known;
        for (std::string name; std::getline(names, name, '|');)
            known = letters.at(name.substr(0, name.find(' ')));
        for (std::string kind; kinds >> kind;) {
            const bool isOption = std::isalpha(static_cast<unsigned char>(kind[0])) && kind != "d";
            EXPECT_TRUE(!isOption || known.find(kind[0]) != std::string::npos) << at->str();
        }
    }
    EXPECT_GT(rows, 40);
}
