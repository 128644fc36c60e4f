#include "client/commandTable.h"
#include "tests/support/process.h"

#include <fstream>
#include <gtest/gtest.h>
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

TEST(Documentation, CompletionOffersEveryCommandOnceAndOnlyBehindX) {
    const std::string complete =
        ". " CALLPLW_DOC "/callPlw.bash; COMP_CWORD=2; COMP_WORDS=(callPlw ";
    const std::string print = "); _callPlw; echo ${COMPREPLY[*]}";
    const auto offered = [&](const std::string &words) {
        std::istringstream out(runProgram({"bash", "-c", complete + words + print}).out);
        return Names(std::istream_iterator<std::string>(out), {});
    };
    EXPECT_EQ(offered("-x ''"), commandNames());
    EXPECT_EQ(offered("-x setF"), Names({"setFitRange", "setFormula", "setFormulaParameters"}));
    EXPECT_EQ(offered("-s set"), Names());
}
