// What is done in the window is a script, which does it again without a window.
#include "tests/plotwerk/window/script.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

class ReplayTest : public ScriptTest {
  protected:
    ReplayTest() {
        std::string programs;
        for (const std::filesystem::path path : {CALLPLW, PLOTWERK})
            programs += path.parent_path().string() + ':';
        setenv("PATH", (programs + std::getenv("PATH")).c_str(), 1);
    }

    std::string savedScript(int window = 1) {
        activate(window, "save-script");
        choose(pathOf("script.sh"));
        waitForWindows(1);
        return bytesOf(pathOf("script.sh"));
    }

    // Gives a plotwerkd of its own the document that was saved before, if one was, for the script
    // to make of it what there is now, and to write the files again.
    void expectItMakesTheSame(const std::string &script, const std::string &before,
                              const std::vector<std::string> &files = {}) {
        const std::string made = contentsOf(plotwerk->documentNameOfFrontWindow());
        std::vector<std::string> written;
        for (const std::string &path : files) {
            written.push_back(bytesOf(path));
            std::filesystem::remove(path);
        }
        stop();
        programPath = PLOTWERKD;
        start({"--no-journal"});
        if (!before.empty()) openInstead(before);
        setenv("CALLPLW_ERRORS", "report", 1);
        const std::string shown = script.substr(0, 2000) + "..." + script.substr(script.size() / 2);
        EXPECT_EQ(runProgram({"sh"}, script).err, "") << shown;
        unsetenv("CALLPLW_ERRORS");
        const std::string again = contentsOf(plotwerk->documentNameOfFrontWindow());
        const auto differ = std::mismatch(made.begin(), made.end(), again.begin(), again.end());
        const auto from = std::max<std::ptrdiff_t>(differ.first - made.begin() - 200, 0);
        EXPECT_TRUE(again == made)
            << shown << "\nmakes\n"
            << again.substr(static_cast<std::size_t>(from), 400) << "\ninstead of\n"
            << made.substr(static_cast<std::size_t>(from), 400);
        for (std::size_t i = 0; i < files.size(); ++i)
            EXPECT_TRUE(bytesOf(files[i]) == written[i]) << files[i];
        stop();
    }

    // Answers the dialog of a file. In one to open a file, what begins with / is a path at once.
    void choose(const std::string &path) {
        waitForWindows(2);
        screen.type("ctrl+a");
        screen.write(path);
        screen.settle();
        screen.type("Return");
    }
};

class ScriptsTest : public ReplayTest, public testing::WithParamInterface<const char *> {};

} // namespace

TEST_P(ScriptsTest, ShowsWhatTheScriptSaysWhichTheJournalDoesAgain) {
    start({"--no-journal"});
    follow(std::string(GetParam()) + ".txt");
    std::vector<std::string> files;
    for (const auto &file : std::filesystem::directory_iterator(directory))
        if (holds(".pdf .eps .png .plotwerk", file.path().extension()) &&
            file.path().has_extension())
            files.push_back(file.path());
    expectItMakesTheSame(savedScript(), "", files);
}

INSTANTIATE_TEST_SUITE_P(Windows, ScriptsTest,
                         testing::Values("actions", "curveList", "dialogs", "fitPane", "hiding",
                                         "journal", "layout", "marks", "menus", "mouse", "status"),
                         [](const auto &of) { return std::string(of.param); });

TEST_F(ReplayTest, DocumentsHaveWindowsAndFilesTakeThePlaceOfAnUntouchedOne) {
    start({"--no-journal"});
    follow("documents.txt");
    stop();
}

// What a new action does to the document, or to files, has to be in the journal.
TEST_F(ReplayTest, EveryActionIsInAScript) {
    start({"--no-journal"});
    std::string scripts;
    for (const auto &file : std::filesystem::directory_iterator(TEST_DATA_DIR "/windows"))
        scripts += bytesOf(file.path());
    screen.frame();
    for (const std::string &action : actions(0))
        EXPECT_TRUE(holds(scripts, "\ndo app." + action + '\n')) << action;
    for (const std::string &action : actions(1))
        EXPECT_TRUE(holds(scripts, "\ndo " + action + '\n')) << action;
    stop();
}

TEST_F(ReplayTest, MessagesOfTheBusAreInTheJournalWhateverTheyAre) {
    startWithLine();
    screen.frame();
    const std::string before = file("before.plotwerk", bytesOf(pathOf("line.plotwerk")));
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_(name, 0, 0, false);
    plotwerk->changeNameOfSelectionOf_to_(name, "it's");
    plotwerk->setXTitleOf_to_(name, "it's x");
    plotwerk->diffOf_(name);
    plotwerk->setFormulaOf_formulaText_(name, "1.25*x");
    for (const bool ofY : {true, false}) plotwerk->modifyDataOf_Ydata_(name, ofY);
    plotwerk->setDeciSeparator_(1);
    plotwerk->readDataformText_of_source_doRangeOverAll_appendToExistingData_(
        "x;a\n0,5;1,5\n1,5;2,25\n", name, "Commas", false, false);
    plotwerk->setDeciSeparator_(0);
    std::string many = "x z\n";
    for (int i = 0; i < 20'000; ++i) many += std::to_string(i) + ' ' + std::to_string(i % 9) + '\n';
    read(many, "Many");
    plotwerk->set2YRangeOf_ymin_ymax_(name, -2, NAN);
    plotwerk
        ->setDocAttributes_xAxisLength_yAxisLength_tickLength_axisThickness_yAxisPos_xAxisPos_multiDimFit_noLineOnRev_(
            name, NAN, NAN, NAN, 2, NAN, NAN, 2, 1);
    plotwerk
        ->setAxisOf_axisCode_inc_ticks_prec_log_insideticks_outsideticks_majorgrid_minorgrid_expnumbers_labelAngle_noline_numbersinside_nonumbers_arrow_logticksAt_lognumberAt_reverse_labelDensity_(
            name, 1, NAN, -1, 3, 2, 2, 2, 1, 2, 2, NAN, 2, 2, 2, 1, -1, -1, 2, NAN);
    for (const char *text : {"{\\rtf1 plain}", "{\\rtf1 \\b bold}", "no RTF"})
        plotwerk->setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_(name, text, 1, 0, NAN, 0, 1);
    plotwerk->setFormulaOf_formulaText_(name, "c = a*x\nc + b");
    plotwerk->startFitOf_iterations_lambda_chiq_(name);
    const std::string last = contentsOf(name);
    screen.settle();
    screen.type("ctrl+z");
    waitUntil("undo", [&] { return contentsOf(name) != last; });
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_(name, 0, 0, false);
    plotwerk->savePicturePDF_as_(name, pathOf("undone.pdf"));
    screen.settle();
    screen.type("ctrl+shift+z");
    waitUntil("redo", [&] { return contentsOf(name) == last; });
    const std::string script = savedScript(3);
    EXPECT_FALSE(holds(script, "didSaveSucceed")) << "a question";
    expectItMakesTheSame(script, before);
}

TEST_F(ReplayTest, AScriptBeginsWithTheDataThatWereOpened) {
    start({"--no-journal"});
    plotwerk->setDeciSeparator_(1);
    runProgram({PLOTWERK, file("some data.txt", "1,234 5\n2,345 6\n4,567 9\n")});
    waitUntil("the data",
              [&] { return screen.titles() == std::vector<std::string>{"some data.txt"}; });
    screen.frame();
    activate(2, "select-all");
    activate(2, "differentiate");
    screen.settle();
    activate(2, "undo");
    activate(2, "zoom-in");
    expectItMakesTheSame(savedScript(2), "");
}
