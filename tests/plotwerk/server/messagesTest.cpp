// Messages that can't be done: neutral answers, documents unchanged, and a line about it.
#include "tests/plotwerk/server/serverTest.h"

#include <functional>
#include <limits>
#include <map>
#include <set>
#include <sstream>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

} // namespace

class MessagesTest : public ServerTest {
  protected:
    MessagesTest() {
        start();
        plotwerk->newDocumentWithName_("doc");
        plotwerk->replaceDataformText_of_source_doRangeOverAll_("x a b\n0 1 2\n1 3 4\n2 5 6\n",
                                                                "doc", "Data", false);
        EXPECT_EQ(lastError(), "");
        contents = contentsOf("doc");
    }

    // The answer to the message with "nix" for each of its texts.
    std::string answerAboutNix(const Method &method) {
        const std::map<std::string, std::string> values{
            {"s", "nix"}, {"i", "1"}, {"d", "1"}, {"b", "yes"}, {"(dddd)", "1 1 1 1"}};
        std::vector<std::string> arguments;
        for (const auto &argument : method.arguments) arguments.push_back(values.at(argument.type));
        return answerTo(method, arguments);
    }

    void clearLastError() { plotwerk->actify_("doc"); }

    // The last message left a line that begins so, and all as it was.
    void expectRefusal(const std::string &line) {
        EXPECT_EQ(lastError().find(line), 0U) << lastError();
        EXPECT_LT(lastError().size(), 4000U);
        EXPECT_EQ(lastError().find('\n'), std::string::npos);
        ASSERT_EQ(contentsOf("doc"), contents);
        EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "doc");
    }

    std::string contents; // of the document "doc"
};

TEST_F(MessagesTest, ThatCannotBeDoneChangeNothing) {
    const std::function<void()> impossible[] = {
        [&] { plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("doc", 0, 2, true); },
        [&] { plotwerk->changeNameOfSelectionOf_to_("doc", "nothing is selected"); },
        [&] { plotwerk->setFitRangeOf_xmin_xmax_("doc", infinity, notANumber); },
        [&] { plotwerk->getVarOf_varName_("doc", std::string(1'000'000, '\n')); },
        [&] { plotwerk->setDeciSeparator_(2); },
        [&] { plotwerk->pasteDataOf_("doc"); },
        [&] { plotwerk->setFormulaOf_formulaText_("doc", std::string(1'000'000, '(')); },
        [&] { plotwerk->savePicturePDF_as_("doc", ""); },
        [&] { plotwerk->savePictureTIFF_as_("doc", "/dev/full"); },
        [&] { plotwerk->savePDFofCompositionView_openWith_("/nowhere", "none"); },
        [&] { plotwerk->openFile_file_doRangeOverAll_("doc", "/dev/zero", true); },
        [&] { plotwerk->actify_(std::string(1'000'000, 'n')); }};
    for (const auto &send : impossible) {
        clearLastError();
        send();
        EXPECT_NE(lastError(), "") << &send - impossible;
        expectRefusal("");
    }
    // The separator is the old one, too.
    plotwerk->replaceDataformText_of_source_doRangeOverAll_("1.5,2.5\n", "doc", "Data", false);
    EXPECT_EQ(plotwerk->YValueOfDoc_atX_indexSerie_("doc", 1.5, 0), 2.5);
}

TEST_F(MessagesTest, ToAnUnknownDocumentAreRefusedWithItsName) {
    const std::set<std::string> toTheApplication{
        "documentNameOfFrontWindow",         "waitForEmptyReply", "newDocumentWithName_",
        "openFile_file_doRangeOverAll_",     "setDeciSeparator_", "newCompositionView_",
        "savePDFofCompositionView_openWith_"};
    const std::map<std::string, std::string> special{
        {"nameOfNextMarkedCurveOf", "'' '' no 0 -1"},
        {"markSelectedCurvesOf", "0"},
        {"startFitOf", "1 0 nan nan"},
        {"mouseEventsShiftKeyDownOf", "nan nan nan nan 0"},
        {"statisticOfSelectionOf", "'' 0 nan nan nan nan nan"},
        {"inventoryOf", "0 0 0"}};
    for (const Method &method : methodsOf(*connection)) {
        if (toTheApplication.contains(method.name)) continue;
        SCOPED_TRACE(method.name);
        std::string neutral;
        for (const char type : method.results) {
            neutral += neutral.empty() ? "" : " ";
            neutral += type == 'd' ? "nan" : type == 'i' ? "-1" : type == 'b' ? "no" : "''";
        }
        if (const auto found = special.find(method.keyword()); found != special.end())
            neutral = found->second;
        clearLastError();
        EXPECT_EQ(answerAboutNix(method), neutral);
        EXPECT_TRUE(holds(lastError(), ": no document \"nix\""));
        expectRefusal(method.keyword() + ':');
    }
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
    plotwerk->valueOfDoc_atIndex_indexSerie_("a\nb", 0, 0);
    const std::string line = "valueOfDoc:atIndex:indexSerie: no document \"a\\x0ab\"";
    for (const char *document : {"", "a\nb", "doc"}) {
        plotwerk->documentNameOfFrontWindow();
        plotwerk->waitForEmptyReply();
        plotwerk->didSaveSucceed_("doc");
        plotwerk->getVarOf_varName_("doc", "xmin");
        EXPECT_EQ(plotwerk->getVarOf_varName_(document, "lastError"), line);
    }
    plotwerk->indexOfFitCurveOf_("doc");
    EXPECT_EQ(lastError(), "");

    plotwerk->openFile_file_doRangeOverAll_("", "", false);
    EXPECT_EQ(lastError(), "openFile:file:doRangeOverAll: no path is given");
}

TEST_F(MessagesTest, TheClipboardIsPastedAsItWasCopied) {
    plotwerk->replaceDataformText_of_source_doRangeOverAll_("x a\n0.5 1.25\n", "doc", "Data",
                                                            false);
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("doc", 0, -1, false);
    plotwerk->copySelectedCurvesOf_includeX_("doc", true);
    plotwerk->setDeciSeparator_(1);
    plotwerk->newDocumentWithName_("other");
    plotwerk->pasteDataOf_("other");
    EXPECT_EQ(plotwerk->YValueOfDoc_atX_indexSerie_("other", 0.5, 0), 1.25);
    EXPECT_EQ(plotwerk->indexOfCurveNameOf_source_table_column_("other", "Clipboard", 1, "a"), 0);

    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("other", 0, -1, false);
    EXPECT_TRUE(holds(plotwerk->dataOfSelectedCurvesOf_("other"), "0,5\t1,25"))
        << "the separator is still the comma";
}
