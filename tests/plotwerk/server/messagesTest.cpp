// Messages that can't be done: neutral answers, documents unchanged, and a line about it.
#include "tests/plotwerk/server/serverTest.h"

#include <cmath>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <set>
#include <sstream>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

template<class Value> Value read(sdbus::MethodReply &reply) {
    Value value{};
    reply >> value;
    return value;
}

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

    // Sends the text for every text of the message; the answers as one line.
    std::string answersTo(const Method &method, const std::string &text) {
        const auto control = sdbus::createProxy(*connection, busName, objectPath);
        sdbus::MethodCall call = control->createMethodCall(busName, method.name);
        for (const auto &argument : method.arguments) {
            switch (argument.type[0]) {
            case 's': call << text; break;
            case 'i': call << int32_t{1}; break;
            case 'd': call << 1.0; break;
            case 'b': call << true; break;
            default: call << sdbus::Struct<double, double, double, double>(1, 1, 1, 1);
            }
        }
        sdbus::MethodReply reply = control->callMethod(call, deadline);
        std::ostringstream line;
        for (const char type : method.results) {
            switch (type) {
            case 's': line << '\'' << read<std::string>(reply) << "' "; break;
            case 'i': line << read<int32_t>(reply) << ' '; break;
            case 'd': line << read<double>(reply) << ' '; break;
            default: line << (read<bool>(reply) ? "yes " : "no ");
            }
        }
        return line.str();
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

// Every message, with "nix" for each of its texts.
TEST_F(MessagesTest, ToAnUnknownDocumentAreRefusedWithItsName) {
    const std::set<std::string> toTheApplication{
        "documentNameOfFrontWindow",         "waitForEmptyReply", "newDocumentWithName_",
        "openFile_file_doRangeOverAll_",     "setDeciSeparator_", "newCompositionView_",
        "savePDFofCompositionView_openWith_"};
    const std::map<std::string, std::string> special{
        {"nameOfNextMarkedCurveOf", "'' '' no 0 -1 "},
        {"markSelectedCurvesOf", "0 "},
        {"startFitOf", "1 0 nan nan "},
        {"mouseEventsShiftKeyDownOf", "nan nan nan nan 0 "},
        {"statisticOfSelectionOf", "'' 0 nan nan nan nan nan "},
        {"inventoryOf", "0 0 0 "}};
    for (const Method &method : methodsOf(*connection)) {
        if (toTheApplication.contains(method.name)) continue;
        SCOPED_TRACE(method.name);
        std::string neutral;
        for (const char type : method.results)
            neutral += type == 'd' ? "nan " : type == 'i' ? "-1 " : type == 'b' ? "no " : "'' ";
        if (const auto found = special.find(method.keyword()); found != special.end())
            neutral = found->second;
        clearLastError();
        EXPECT_EQ(answersTo(method, "nix"), neutral);
        EXPECT_TRUE(holds(lastError(), ": no document \"nix\""));
        expectRefusal(method.keyword() + ':');
    }
}

TEST_F(MessagesTest, StandInBothManuals) {
    const std::string table = bytesOf(PLOTWERK_SOURCE "/docs/plotwerkd.md");
    std::multiset<std::string> inPage;
    std::ifstream page(PLOTWERK_SOURCE "/plotwerk/doc/plotwerkd.1");
    for (std::string line; std::getline(page, line);) {
        constexpr std::string_view item = ".It Ic ";
        if (line.starts_with(item))
            inPage.insert(line.substr(item.size(), line.find(':') - item.size()));
    }
    std::multiset<std::string> served;
    for (const Method &method : methodsOf(*connection)) {
        served.insert(method.keyword());
        EXPECT_TRUE(table.find('`' + method.keyword()) != std::string::npos) << method.name;
    }
    EXPECT_EQ(inPage, served);
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

TEST_F(MessagesTest, TextsOf64MegabytesArriveAndComeBack) {
    constexpr size_t rows = 4'000'000;
    constexpr std::string_view row = "1.25 1234567.25\n"; // 16 bytes
    std::string text;
    text.reserve(rows * row.size());
    for (size_t i = 0; i < rows; ++i) text += row;
    text.replace(text.size() - row.size(), row.size(), "9.75 7654321.25\n");

    plotwerk->replaceDataformText_of_source_doRangeOverAll_(text, "doc", "Data", true);
    EXPECT_EQ(lastError(), "");
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("doc", rows - 1, 0), 7654321.25);
    EXPECT_EQ(plotwerk->getXRangeOf_xmin_xmax_("doc"), std::tuple(1.25, 9.75));

    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("doc", 0, 0, false);
    const std::string back = plotwerk->dataOfSelectedCurvesOf_("doc");
    EXPECT_GE(back.size(), text.size());
    EXPECT_EQ(back.substr(back.rfind('\n', back.size() - 2)), "\n9.75\t7.65432125e+06\n");
}
