// Messages that can't be done: neutral answers and a line about it.
#include "tests/plotwerk/server/serverTest.h"

#include <map>
#include <set>
#include <sstream>

using MessagesTest = ServerTest;

TEST_F(MessagesTest, ToAnUnknownDocumentAreRefusedWithItsName) {
    start();
    const std::set<std::string> toTheApplication{
        "documentNameOfFrontWindow",         "waitForEmptyReply", "newDocumentWithName_",
        "openFile_file_doRangeOverAll_",     "setDeciSeparator_", "newCompositionView_",
        "savePDFofCompositionView_openWith_"};
    const std::map<std::string, std::string> neutral{
        {"", ""},    {"d", "nan"}, {"dd", "nan nan"},        {"i", "-1"},
        {"b", "no"}, {"s", "''"},  {"iidd", "-1 -1 nan nan"}};
    const std::map<std::string, std::string> special{
        {"nameOfNextMarkedCurveOf", "'' '' no 0 -1"},
        {"markSelectedCurvesOf", "0"},
        {"startFitOf", "1 0 nan nan"},
        {"mouseEventsShiftKeyDownOf", "nan nan nan nan 0"},
        {"statisticOfSelectionOf", "'' 0 nan nan nan nan nan"},
        {"inventoryOf", "0 0 0"}};
    const std::map<std::string, std::string> values{
        {"s", "nix"}, {"i", "1"}, {"d", "1"}, {"b", "yes"}, {"(dddd)", "1 1 1 1"}};
    for (const Method &method : methodsOf(*connection)) {
        if (toTheApplication.contains(method.name)) continue;
        std::vector<std::string> arguments;
        for (const auto &argument : method.arguments) arguments.push_back(values.at(argument.type));
        plotwerk->actify_("Untitled"); // clears lastError
        const auto found = special.find(method.keyword());
        const std::string &answer =
            found == special.end() ? neutral.at(method.results) : found->second;
        EXPECT_EQ(answerTo(method, arguments), answer) << method.name;
        EXPECT_EQ(lastError(), "no document \"nix\"") << method.name;
    }
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "Untitled");
}

TEST(Documentation, HasTheTablesOfMessagesThatTheProtocolGives) {
    const auto tables = [](const std::string &path) {
        std::istringstream text(bytesOf(path));
        std::set<std::string> lines;
        for (std::string line; std::getline(text, line);)
            if (line.starts_with("## ") || line.starts_with("| ")) lines.insert(line);
        return lines;
    };
    const auto written = tables(PLOTWERK_SOURCE "/docs/plotwerkd.md");
    const auto wanted = tables(MESSAGE_TABLES);
    for (const std::string &line : wanted) EXPECT_TRUE(written.contains(line)) << line;
    for (const std::string &line : written) EXPECT_TRUE(wanted.contains(line)) << line;
}

// A new client asks for the front document before it can ask for lastError.
TEST_F(MessagesTest, LastErrorStaysUntilADocumentIsServed) {
    start();
    plotwerk->valueOfDoc_atIndex_indexSerie_("a\nb", 0, 0);
    const std::string line = "no document \"a\\x0ab\"";
    for (const char *document : {"", "a\nb", "Untitled"}) {
        plotwerk->documentNameOfFrontWindow();
        plotwerk->waitForEmptyReply();
        plotwerk->didSaveSucceed_("Untitled");
        plotwerk->getVarOf_varName_("Untitled", "xmin");
        EXPECT_EQ(plotwerk->getVarOf_varName_(document, "lastError"), line);
    }
    plotwerk->indexOfFitCurveOf_("Untitled");
    EXPECT_EQ(lastError(), "");

    plotwerk->openFile_file_doRangeOverAll_("", "", false);
    EXPECT_EQ(lastError(), "no path is given");
}
