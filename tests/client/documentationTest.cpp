#include "client/commandTable.h"
#include "tests/support/process.h"

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <sstream>

using Names = std::multiset<std::string>;

static Names commandNames() {
    Names names;
    for (const CommandRow &row : withoutDocument) names.insert(row.name);
    for (const CommandRow &row : onDocument) names.insert(row.name);
    return names;
}

TEST(Documentation, ManualPageDescribesEveryCommandOnce) {
    std::ifstream page(CALLPLW_DOC "/callPlw.1");
    Names described;
    for (std::string line; std::getline(page, line);) {
        std::istringstream words(line);
        std::string item, markup, name;
        if (words >> item >> markup >> name && item == ".It" && markup == "Ic") {
            described.insert(name);
        }
    }
    EXPECT_EQ(described, commandNames());
}

// The letters of the options that the manual page tells of each command, but for -d.
static std::map<std::string, std::set<std::string>> optionsOfManualPage() {
    static const std::regex option("(?:Fl|,|\\|) ([a-ce-zA-Z])(?= |$)");
    std::map<std::string, std::set<std::string>> options;
    std::ifstream page(CALLPLW_DOC "/callPlw.1");
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
    const auto offered = [&](const std::string &words) {
        std::istringstream out(
            runProgram({"bash", "-c",
                        ". " CALLPLW_DOC "/callPlw.bash; COMP_WORDS=(callPlw " + words +
                            "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _callPlw; "
                            "echo ${COMPREPLY[*]}"})
                .out);
        return Names(std::istream_iterator<std::string>(out), {});
    };
    const struct {
        std::string words;
        Names offers;
    } cases[] = {
        {"-x ''", commandNames()},
        {"-s '' -xopen -x ''", commandNames()},
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
