// Messages that can't be done: neutral answers and a line about it.
#include "plotwerk/base/bounds.h"
#include "tests/plotwerk/files/fullDocument.h"
#include "tests/plotwerk/server/serverTest.h"

#include <map>
#include <set>
#include <sstream>

using namespace plotwerk;
using MessagesTest = ServerTest;

// Unknown, or lost with a file that couldn't be opened.
TEST_F(MessagesTest, ToNoDocumentAreRefusedWithItsName) {
    start();
    plotwerk->openFile_file_doRangeOverAll_("", pathOf("lost"), false);
    plotwerk->newCompositionView_({0, 0, 300, 200});
    plotwerk->actify_("Untitled");
    const std::set<std::string> toTheApplication{
        "documentNameOfFrontWindow", "waitForEmptyReply",  "newDocumentWithName",     "openFile",
        "setDeciSeparator",          "newCompositionView", "savePDFofCompositionView"};
    const std::map<std::string, std::string> neutral{
        // by keyword, or by the types of the answer
        {"", ""},
        {"d", "nan"},
        {"dd", "nan nan"},
        {"i", "-1"},
        {"b", "no"},
        {"s", "''"},
        {"iidd", "-1 -1 nan nan"},
        {"nameOfNextMarkedCurveOf", "'' '' no 0 -1"},
        {"markSelectedCurvesOf", "0"},
        {"startFitOf", "1 0 nan nan"},
        {"mouseEventsShiftKeyDownOf", "nan nan nan nan 0"},
        {"statisticOfSelectionOf", "'' 0 nan nan nan nan nan"},
        {"inventoryOf", "0 0 0"}};
    const std::map<std::string, std::string> values{
        {"i", "1"}, {"d", "1"}, {"b", "yes"}, {"(dddd)", "1 1 1 1"}};
    const std::pair<std::string, std::string> documents[] = {
        {"nix", "no document \"nix\""},
        {"lost", "the document stands for a file that couldn't be opened (\"lost\")"}};
    for (const auto &[name, reason] : documents) {
        for (const Method &method : methodsOf(*connection)) {
            const std::string keyword = method.keyword();
            if (toTheApplication.contains(keyword)) continue;
            if (name == "lost" && (keyword == "closeDocument" || keyword == "didSaveSucceed"))
                continue;
            std::vector<std::string> arguments;
            for (const auto &argument : method.arguments)
                arguments.push_back(argument.type == "s" ? name : values.at(argument.type));
            plotwerk->actify_("Untitled"); // clears lastError
            const std::string &kind = neutral.contains(keyword) ? keyword : method.results;
            EXPECT_EQ(answerTo(method, arguments), neutral.at(kind)) << method.name;
            EXPECT_EQ(lastError(), reason) << method.name;
        }
    }
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "Untitled");
    EXPECT_FALSE(holds(stop().err, "unsaved changes"));
}

// No name forges a line of what a client prints, and what is kept can be answered and saved.
TEST_F(MessagesTest, RefuseTextsThatAreTooLongAndWhatIsNoName) {
    start({"--limit", "answer=1"});
    std::map<std::string, Method> methods;
    for (const Method &method : methodsOf(*connection)) methods[method.name] = method;
    const std::string n994(994, 'n'), n1000(1000, 'n'), text(100'001, 't'), doc = "Untitled";
    const std::string longName = "a name can't have more than 1000 bytes",
                      noName =
                          "a name can't have control characters, line ends or turns of direction";
    const char *read = "replaceDataformText_of_source_doRangeOverAll_";
    const struct {
        std::string method;
        std::vector<std::string> arguments;
        std::string reason = "";
    } cases[] = {
        {"newDocumentWithName_", {n1000 + 'n'}, longName},
        {"newDocumentWithName_", {"a\nb"}, noName},
        {read, {"1 2\n", doc, n1000 + 'n', "no"}, longName},
        {read, {"x " + n1000 + "n\n1 2\n", doc, "", "no"}, longName},
        {read, {"\"a\x1b\tb\" " + n1000 + "\n0 0\n1 0\n2 5\n3 0\n4 0\n", doc, "", "no"}},
        {"selectCurvesOf_indexFirst_indexLast_appendSelection_", {doc, "0", "0", "no"}},
        {"diffOf_", {doc}, longName},
        {"searchMaximaOfSelectionOf_searchMaxima_searchMinima_minwidth_minheight_",
         {doc, "yes", "no", "0", "3"},
         longName},
        {"changeNameOfSelectionOf_to_", {doc, n994 + 'n'}, longName},
        {"changeNameOfSelectionOf_to_", {doc, "a\u2028b"}, noName},
        {"changeNameOfSelectionOf_to_", {doc, "\u202e\u05d0"}, noName},
        {"changeNameOfSelectionOf_to_", {doc, "a\u2066b"}, noName},
        {"changeNameOfSelectionOf_to_", {doc, "\u05d0\u200f\u061c"}},
        {"changeNameOfSelectionOf_to_", {doc, n994}},
        {"setXTitleOf_to_", {doc, text}, "a title can't have more than 100000 bytes"},
        {"setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_",
         {doc, text, "0", "0", "0", "0", "0"},
         "a text can't have more than 100000 bytes"},
        {"setFormulaOf_formulaText_", {doc, text}, "a formula can't have more than 100000 bytes"},
        {"setFormulaOf_formulaText_", {doc, n1000 + 'n'}, longName},
        {"readFormulaParameterOf_parameterList_",
         {doc, std::string(1'000'001, ' ')},
         "a list of parameters can't have more than 1000000 bytes"},
        {"newDocumentWithName_", {n1000}},
        {"newDocumentWithName_", {n1000}, longName}, // with the time behind it
        {"duplicateAsPlottedOf_", {n1000}, longName},
        {"createCurveAtSelectionOf_minx_maxx_incx_miny_incy_", {doc, "1", "2e5", "1", "0", "0"}},
        {"selectCurvesOf_indexFirst_indexLast_appendSelection_", {doc, "1", "1", "no"}},
        {"dataOfSelectedCurvesOf_", {doc}, "the data are too long as text"}};
    for (const auto &c : cases) {
        const std::string before = contentsOf(doc);
        answerTo(methods.at(c.method), c.arguments);
        const std::string error = lastError(), method = c.method.substr(0, 40);
        EXPECT_EQ(error.substr(0, c.reason.empty() ? 99 : c.reason.size()), c.reason) << method;
        EXPECT_TRUE(c.reason.empty() || contentsOf(doc) == before) << method;
    }
    const std::string saved = contentsOf(doc);
    EXPECT_TRUE(holds(saved, "\"name\":\"a  b\""));
    plotwerk->openFile_file_doRangeOverAll_("", pathOf("contents"), false);
    EXPECT_EQ(lastError(), "");
    EXPECT_EQ(plotwerk->dataOfSelectedCurvesOf_(doc), "");
}

TEST_F(MessagesTest, RefuseToAnswerWithMoreThanTheLimit) {
    start({"--limit", "answer=1"});
    Document document{.name = "doc", .frame = {.multiDimFit = true}, .fit = {.done = true}};
    FitParameter parameter{.value = 1.0 / 3, .fixed = true, .bounds = {-1.0 / 3, 2.0 / 3}};
    for (int i = 0; i < 15'000; ++i) {
        parameter.name = 'p' + std::to_string(i);
        document.parameters.push_back(parameter);
    }
    document.fit.parameters.resize(300, {.name = "name"});
    document.fit.covariance.values.assign(300 * 301 / 2, 1); // whole correlation, a line a pair
    plotwerk->openFile_file_doRangeOverAll_("", file("doc", saved(document, true)), false);
    EXPECT_EQ(lastError(), "");
    const std::string reason = "the answer would be too long (limit answer) (\"doc\")";
    EXPECT_EQ(plotwerk->formulaParameterListOf_("doc"), "");
    EXPECT_EQ(lastError(), reason);
    plotwerk->actify_("doc");
    EXPECT_EQ(plotwerk->getVarOf_varName_("doc", "report"), "");
    EXPECT_EQ(lastError(), reason);
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
    for (const std::string &line : written) {
        const bool isMessage = line.starts_with("| `") && line.find(":`") != std::string::npos;
        EXPECT_TRUE(!isMessage || wanted.contains(line)) << line;
    }
}

TEST(Documentation, HasTheLimits) {
    const std::string text = bytesOf(PLOTWERK_SOURCE "/docs/plotwerkd.md");
    for (const Bound &bound : bounds()) {
        char row[200];
        std::snprintf(row, sizeof row, "\n| `%s` | %.0f | %.0f to %.0f | %s |", bound.name,
                      bound.value, bound.least, bound.most, bound.meaning);
        EXPECT_TRUE(holds(text, row)) << row;
    }
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
