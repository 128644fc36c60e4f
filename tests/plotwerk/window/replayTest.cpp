// What is done in the window is a script, which does it again without a window.
#include "tests/plotwerk/window/script.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <utility>

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
    std::filesystem::current_path(directory);
    start({"--no-journal"});
    follow(std::string(GetParam()) + ".txt");
    expectItMakesTheSame(savedScript(), "");
}

INSTANTIATE_TEST_SUITE_P(Windows, ScriptsTest,
                         testing::Values("curveList", "dialogs", "fitPane", "hiding", "journal",
                                         "layout", "marks", "menus", "mouse", "status"),
                         [](const auto &of) { return std::string(of.param); });

TEST_F(ReplayTest, DocumentsHaveWindowsAndFilesTakeThePlaceOfAnUntouchedOne) {
    std::filesystem::current_path(directory);
    start({"--no-journal"});
    follow("documents.txt");
    stop();
}

// A new action needs a row: what it does to the document, or to files, has to be in the journal.
TEST_F(ReplayTest, EveryActionIsInTheJournalAsWhatAScriptDoes) {
    std::filesystem::current_path(directory);
    setenv("XDG_RUNTIME_DIR", directory.c_str(), 1);
    start({"--no-journal"});
    read("x a b\n1 1 9\n3 2 4\n2 5 3\n", "Data", true);
    const std::string before = pathOf("before.plotwerk");
    plotwerk->saveDocument_as_binary_(name, before, false);
    stop();
    start({"--no-journal", before});
    screen.frame();

    std::vector<std::string> files;
    const auto written = [&](const std::string &fileName) {
        files.push_back(pathOf(fileName));
        choose(files.back());
        waitForWindows(1);
    };
    const auto dismiss = [&] {
        waitForWindows(2);
        screen.type("Escape");
        waitForWindows(1);
    };
    const auto closeOther = [&] {
        std::string other;
        waitUntil("another document", [&] {
            other = plotwerk->documentNameOfFrontWindow();
            return other != name;
        });
        plotwerk->closeDocument_askForSave_(other, false);
        waitForWindows(1);
    };
    const std::string nothing;
    const std::string shownParts = "callPlw -x setAttributes -l ";
    const struct {
        std::string action;
        std::string line; // with which its lines begin
        std::function<void()> goOn = [] {};
    } cases[] = {
        {"toggle-line", "callPlw -x setAttributes -l no\n"},
        {"toggle-symbols", "callPlw -x setAttributes -S yes\n"},
        {"hide", shownParts + "no"},
        {"show", "callPlw -x show\n"},
        {"mark", "callPlw -x markSelectedCurves\n"},
        {"fit-data", "callPlw -x markSelectionAsFitData\n"},
        {"rename", "callPlw -x changeNameOfSelection -t 'a b'\n",
         [&] {
             waitForWindows(2);
             screen.type("ctrl+a");
             screen.write("a b");
             screen.type("Return");
             waitForWindows(1);
         }},
        {"differentiate", "callPlw -x diff\n"},
        {"sort-by-x", "callPlw -x sortByX\n"},
        {"swap-with-x", "callPlw -x swapWithX\n"},
        {"copy-data", "callPlw -x copy -i yes\n"},
        {"paste-data", "callPlw -x readData -p ",
         [&] {
             waitUntil("the clipboard's data",
                       [&] { return contentsOf(name).find("Clipboard") != std::string::npos; });
         }},
        {"select-all", "callPlw -x selectCurveByIndex\n"},
        {"delete", "callPlw -x delete\n"},
        {"undo", nothing},
        {"redo", nothing},
        {"zoom-in", "callPlw -x setXRange "},
        {"zoom-out", "callPlw -x setYRange "},
        {"view-back", "callPlw -x setXRange "},
        {"view-forward", "callPlw -x setYRange "},
        {"range-over-all", "callPlw -x display -r yes\n"},
        {"logarithmic-x", "callPlw -x setAxis -a 1 -l yes\n"},
        {"logarithmic-y", "callPlw -x setAxis -a 2 -l yes\n"},
        {"save-as", "callPlw -x saveDocument -f ", [&] { written("saved.plotwerk"); }},
        {"mark", "callPlw -x markSelectedCurves\n"},
        {"save", "callPlw -x saveDocument -k yes\n"},
        {"export", "callPlw -x savePDF ", [&] { written("a.pdf"); }},
        {"export", "callPlw -x saveEPS ", [&] { written("b.eps"); }},
        {"export", "callPlw -x saveTIFF ", [&] { written("c.png"); }},
        {"copy-picture", "callPlw -x copyPDF\n"},
        // These do nothing to the document.
        {"export", nothing,
         [&] { // of a kind that there isn't
             choose(pathOf("d.jpg"));
             waitForWindows(1);
             EXPECT_FALSE(std::filesystem::exists(pathOf("d.jpg")));
         }},
        {"copy-read-out", nothing},
        {"fill-window", nothing},
        {"show-curves", nothing},
        {"show-fit", nothing},
        {"show-journal", nothing},
        {"cancel-fit", nothing},
        {"about", nothing, dismiss},
        {"new", nothing, closeOther},
        {"open", nothing,
         [&] {
             choose(file("other.txt", "1 2\n"));
             closeOther();
         }},
        {"print", nothing,
         [&] {
             waitForWindows(2);
             for (const char *key : {"Tab", "Down", "space", "alt+p"}) { // the printer of files
                 screen.type(key);
                 screen.settle();
             }
             waitForWindows(1);
             waitUntil("a PDF file", [&] {
                 return runProgram({"pdftotext", pathOf("Untitled.pdf"), "-"}).out.size() > 10;
             });
         }},
        {"mark", "callPlw -x markSelectedCurves\n"},
        {"close", nothing, dismiss},
        {"quit", nothing, dismiss},
        {"save-script", nothing,
         [&] {
             choose(pathOf("script.sh"));
             waitForWindows(1);
         }},
    };

    std::vector<std::string> names;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.action);
        names.push_back(c.action);
        const bool goesBackOrForth = c.action == "undo" || c.action == "redo";
        if (!goesBackOrForth)
            plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_(name, 0, 1, false);
        const bool changesNothing = c.line.empty() && !goesBackOrForth;
        const std::string contents = changesNothing ? contentsOf(name) : "";
        const auto appActions = actions(0);
        const bool isOfWindow =
            std::find(appActions.begin(), appActions.end(), c.action) == appActions.end();
        activate(isOfWindow ? 1 : 0, c.action);
        c.goOn();
        if (changesNothing) {
            EXPECT_TRUE(contentsOf(name) == contents);
        }
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    std::vector<std::string> all = actions(1);
    for (const std::string &action : actions(0)) all.push_back(action);
    std::sort(all.begin(), all.end());
    EXPECT_EQ(names, all);

    const std::string script = bytesOf(pathOf("script.sh"));
    for (const auto &c : cases)
        EXPECT_TRUE(c.line.empty() || holds(script, '\n' + c.line)) << c.action;
    EXPECT_TRUE(script.starts_with("#!/bin/sh\n"));
    expectItMakesTheSame(script, before, files);
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
