// What is written about the commands for the user is what their tables say.
#include "client/commandTable.h"
#include "tests/support/process.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>

// The options as in a command's row, of the manual page's line about it: the text between [ and ]
// there is an Op to the line's end, or Oo to Oc.
static std::string synopsisOf(std::istream &words) {
    std::string synopsis, before;
    bool open = false;
    for (std::string word; words >> word; before = word) {
        open = open || word == "Op";
        if (word == "Fl" || word == "Ar") continue;
        if (word == "Oc") {
            synopsis += ']';
            continue;
        }
        if (!synopsis.empty() && synopsis.back() != '[') synopsis += ' ';
        if (before == "Fl") synopsis += '-';
        synopsis += word == "Oo" || word == "Op" ? "[" : word;
    }
    return open ? synopsis + ']' : synopsis;
}

TEST(Documentation, ManualPageHasEveryCommandOnceWithItsOptions) {
    std::multimap<std::string, std::string> written, known;
    for (const CommandTable *table : command::allTables) {
        for (const CommandRow &row : *table) known.emplace(row.name, row.synopsis);
    }
    std::ifstream page(CALLPLW_MANUAL);
    for (std::string line; std::getline(page, line);) {
        std::istringstream words(line);
        std::string item, markup, name;
        if (words >> item >> markup >> name && item == ".It" && markup == "Ic") {
            written.emplace(name, synopsisOf(words));
        }
    }
    EXPECT_EQ(written, known);
}

// The letters of the options that the manual page tells of each command, but for -d.
static std::map<std::string, std::set<std::string>> optionsOfManualPage() {
    static const std::regex option("(?:Fl|,|\\|) ([a-ce-zA-Z])(?= |$)");
    std::map<std::string, std::set<std::string>> options;
    std::ifstream page(CALLPLW_MANUAL);
    std::string command;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with(".Ss ") || line.starts_with(".Sh ")) command.clear();
        if (line.starts_with(".It Ic ")) command = line.substr(7, line.find(' ', 7) - 7);
        if (command.empty() || line[0] != '.') continue;
        std::set<std::string> &letters = options[command];
        for (std::sregex_iterator at(line.begin(), line.end(), option), end; at != end; ++at)
            letters.insert("-" + at->str(1));
    }
    return options;
}

TEST(Documentation, CompletionOffersCommandsAndTheirOptionsWhereTheyAreWanted) {
    using Names = std::multiset<std::string>;
    Names names;
    for (const CommandTable *table : command::allTables) {
        for (const CommandRow &row : *table) names.insert(row.name);
    }
    const auto offered = [&](const std::string &words) {
        std::istringstream out(
            runProgram({"bash", "-c",
                        ". " CALLPLW_COMPLETION "; COMP_WORDS=(callPlw " + words +
                            "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _callPlw; "
                            "echo ${COMPREPLY[*]}"})
                .out);
        return Names(std::istream_iterator<std::string>(out), {});
    };
    const struct {
        std::string words;
        Names offers;
    } cases[] = {
        {"-x ''", names},
        {"-s '' -xopen -x ''", names},
        {"-x setF", {"setFitRange", "setFormula", "setFormulaParameters"}},
        {"-xsetF", {"-xsetFitRange", "-xsetFormula", "-xsetFormulaParameters"}},
        {"-x README", {}},
        {"-s set", {}},
        {"-s -x ''", {"-x"}},
        {"''", {"-x"}},
        {"-", {"-x"}},
        {"-x", {"-x"}},
        {"-xopen -f file -", {"-f", "-r", "-x"}},
        {"-x nonsense ''", {"-x"}},
        {"stray ''", {}},
    };
    for (const auto &c : cases) EXPECT_EQ(offered(c.words), c.offers) << c.words;

    for (auto [command, options] : optionsOfManualPage()) {
        options.insert("-x");
        EXPECT_EQ(offered("-x " + command + " ''"), Names(options.begin(), options.end()))
            << command;
    }
}
