// What is written about the commands for the user is what their tables say.
#include "client/commandTable.h"
#include "tests/support/process.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
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

TEST(Documentation, CompletionOffersEveryCommandOnceAndOnlyBehindX) {
    using Names = std::multiset<std::string>;
    Names names;
    for (const CommandTable *table : command::allTables) {
        for (const CommandRow &row : *table) names.insert(row.name);
    }
    const std::string complete = ". " CALLPLW_COMPLETION "; COMP_CWORD=2; COMP_WORDS=(callPlw ";
    const std::string print = "); _callPlw; echo ${COMPREPLY[*]}";
    const auto offered = [&](const std::string &words) {
        std::istringstream out(runProgram({"bash", "-c", complete + words + print}).out);
        return Names(std::istream_iterator<std::string>(out), {});
    };
    EXPECT_EQ(offered("-x ''"), names);
    EXPECT_EQ(offered("-x setF"), Names({"setFitRange", "setFormula", "setFormulaParameters"}));
    EXPECT_EQ(offered("-s set"), Names());
}
