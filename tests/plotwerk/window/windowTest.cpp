// plotwerk run on a screen that nobody sees, by mouse, keys and messages.
#include "tests/plotwerk/server/serverTest.h"
#include "tests/plotwerk/window/screen.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <regex>

namespace {

class WindowTest : public ServerTest {
  protected:
    WindowTest() : ServerTest(PLOTWERK) {}

    // A straight line from (0, 0) to (10, 100), in a document "Line" of that range.
    void startWithLine() {
        start({"--no-journal"});
        plotwerk->readDataformText_of_source_doRangeOverAll_appendToExistingData_(
            "x y\n0 0\n5 50\n10 100\n", name, "Data", true, false);
        plotwerk->setXRangeOf_xmin_xmax_(name, 0, 10);
        plotwerk->setYRangeOf_ymin_ymax_(name, 0, 100);
        reopen();
    }

    // In a window whose first picture is the document as it is now.
    void reopen() {
        const std::string path = pathOf("line.plotwerk");
        plotwerk->saveDocument_as_binary_(name, path, false);
        plotwerk->newDocumentWithName_("other"); // for there always is one
        plotwerk->closeDocument_askForSave_(name, false);
        plotwerk->openFile_file_doRangeOverAll_("", path, false);
        plotwerk->closeDocument_askForSave_("other", false);
    }

    std::array<double, 4> ranges() {
        const auto [xmin, xmax] = plotwerk->getXRangeOf_xmin_xmax_(name);
        const auto [ymin, ymax] = plotwerk->getYRangeOf_ymin_ymax_(name);
        return {xmin, xmax, ymin, ymax};
    }

    // Waits until the ranges are these, within what a pixel is worth.
    void waitForRanges(const std::array<double, 4> &want, double tolerance) {
        std::array<double, 4> is{};
        try {
            waitUntil("ranges", [&] {
                is = ranges();
                for (std::size_t i = 0; i < 4; ++i)
                    if (!(std::abs(is[i] - want[i]) <= tolerance * (want[i | 1] - want[i & 2])))
                        return false;
                return true;
            });
        } catch (const std::runtime_error &) {
            ADD_FAILURE() << testing::PrintToString(is) << " is not "
                          << testing::PrintToString(want);
        }
    }

    // With data and a formula that a fit works on for long, all saved, and the fit pane shown.
    void startWithSlowFit() {
        std::string data = "x y\n";
        for (int i = 1; i <= 300'000; ++i)
            data += std::to_string(1e-4 * i) + ' ' + std::to_string(i % 7) + '\n';
        start({"--no-journal"});
        plotwerk->readDataformText_of_source_doRangeOverAll_appendToExistingData_(
            data, name, "Data", true, false);
        plotwerk->setFormulaOf_formulaText_(name, "a*x^b + c*x^d + e*x^f");
        plotwerk->readFormulaParameterOf_parameterList_(name, "b = 2\nd = 3\nf = 0.5");
        plotwerk->saveDocument_as_binary_(name, pathOf("slow.plotwerk"), false);
        screen.move({300, 300});
        const int right = screen.frame().upperRight.x;
        screen.type("F7");
        waitUntil("the fit pane", [&] { return screen.frame().upperRight.x < right - 100; });
        idle = screen.stillShot();
    }

    // The corners of what is shown otherwise than before a fit, beside the plot.
    std::array<Place, 2> traceOfFit() const {
        const Shot shown = screen.shot();
        Place first{shown.width, shown.height};
        Place last;
        for (int y = 0; y < shown.height; ++y)
            for (int x = shown.width * 6 / 10; x < shown.width; ++x) {
                const auto place = static_cast<std::size_t>(y * shown.width + x);
                if (shown.pixels[place] == idle.pixels[place]) continue;
                first = {std::min(first.x, x), std::min(first.y, y)};
                last = {std::max(last.x, x), y};
            }
        return {first, last};
    }

    // The lowest of it is the button, and it is more than a line of text.
    Place waitForCancelButton() const {
        std::array<Place, 2> trace;
        waitUntil("the fit's progress", [&] {
            trace = traceOfFit();
            return trace[1].y - trace[0].y > 60;
        });
        return {(trace[0].x + trace[1].x) / 2, trace[1].y - 12};
    }

    // The actions of the application, or of its window of that number.
    std::unique_ptr<sdbus::IProxy> actionsOf(int window) const {
        std::string path = "/org/plotwerk/Plotwerk";
        if (window > 0) path += "/window/" + std::to_string(window);
        return sdbus::createProxy(*connection, "org.plotwerk.Plotwerk", path);
    }
    void activate(int window, const std::string &action) const {
        actionsOf(window)
            ->callMethod("Activate")
            .onInterface("org.gtk.Actions")
            .withArguments(action, std::vector<sdbus::Variant>(),
                           std::map<std::string, sdbus::Variant>());
    }

    // The text of the journal, copied as a user would.
    std::string copiedJournal(const std::string &line) {
        screen.type("F8");
        screen.stillShot();
        screen.click({300, 580});
        screen.type("ctrl+a");
        screen.type("ctrl+c");
        std::string script;
        waitUntil("the journal's text", [&] {
            script = runProgram({"xclip", "-selection", "clipboard", "-o"}).out;
            return script.find(line) != std::string::npos;
        });
        return script;
    }

    // Begins anew with the saved document, for the script to make of it what there is now.
    void expectItMakesTheSame(const std::string &script, const std::string &path) {
        const std::string made = contentsOf(name);
        stop();
        start({"--no-journal", path});
        const std::string programs = std::filesystem::path(CALLPLW).parent_path().string();
        setenv("PATH", (programs + ':' + std::getenv("PATH")).c_str(), 1);
        const std::string shown =
            script.substr(0, 2000) + "..." + script.substr(script.size() - script.size() / 2);
        EXPECT_EQ(runProgram({"sh"}, script).err, "") << shown;
        const std::string again = contentsOf(name);
        const auto differ = std::mismatch(made.begin(), made.end(), again.begin(), again.end());
        const auto from = std::max<std::ptrdiff_t>(differ.first - made.begin() - 200, 0);
        EXPECT_TRUE(again == made)
            << shown << "\nmakes\n"
            << again.substr(static_cast<std::size_t>(from), 400) << "\ninstead of\n"
            << made.substr(static_cast<std::size_t>(from), 400);
        stop();
    }

    const std::string name = "Untitled";
    Screen screen;
    Shot idle; // what was shown before a fit
};

} // namespace

TEST_F(WindowTest, ShowsAWindowForEachDocumentWithAMarkForUnsavedChanges) {
    const std::string path = file("small.txt", "1 2\n3 4\n");
    start({"--no-journal", path});
    const auto hasTitles = [&](std::vector<std::string> want) {
        waitUntil(testing::PrintToString(want), [&] {
            auto is = screen.titles();
            std::sort(is.begin(), is.end());
            return is == want;
        });
    };
    hasTitles({"small.txt"});
    plotwerk->newDocumentWithName_("new");
    hasTitles({"new", "small.txt"});
    plotwerk->setXRangeOf_xmin_xmax_("new", 1, 2);
    hasTitles({"small.txt", "• new"});
    plotwerk->saveDocument_as_binary_("new", pathOf("new.plotwerk"), false);
    hasTitles({"new", "small.txt"});
    EXPECT_EQ(runProgram({PLOTWERK, file("third.txt", "1 1\n")}).status, 0)
        << "handed to the one that runs";
    hasTitles({"new", "small.txt", "third.txt"});
    plotwerk->closeDocument_askForSave_("new", false);
    hasTitles({"small.txt", "third.txt"});
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "third.txt");
    stop();
}

TEST_F(WindowTest, ClosingAsksToSave) {
    startWithLine();
    plotwerk->setXRangeOf_xmin_xmax_(name, 0, 5);
    screen.frame();
    screen.type("ctrl+w");
    waitUntil("the question", [&] { return screen.titles().size() == 2; });
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), name) << "messages are answered meanwhile";
    const std::string before = bytesOf(pathOf("line.plotwerk"));
    screen.type("Return");
    bus.waitForNoOwner(busName);
    EXPECT_NE(bytesOf(pathOf("line.plotwerk")), before);
    EXPECT_EQ(program->finish().status, 0) << "it ends with its last window";
}

TEST_F(WindowTest, QuittingAsksAboutOneDocumentAfterTheOtherUntilOneIsKept) {
    startWithLine();
    plotwerk->setXRangeOf_xmin_xmax_(name, 0, 5);
    plotwerk->newDocumentWithName_("other");
    plotwerk->setXRangeOf_xmin_xmax_("other", 0, 5);
    screen.frame();
    const auto windows = [&](std::size_t count) {
        waitUntil(std::to_string(count) + " windows",
                  [&] { return screen.titles().size() == count; });
        screen.stillShot();
    };
    windows(2);
    screen.type("ctrl+q");
    windows(3);
    screen.type("alt+d");
    waitUntil("the next question", [&] {
        const auto titles = screen.titles();
        return titles.size() == 2 && std::count(titles.begin(), titles.end(), "• other") == 0;
    });
    screen.stillShot();
    screen.type("Escape");
    windows(1);
    screen.type("ctrl+q");
    windows(2);
    screen.type("alt+d");
    bus.waitForNoOwner(busName);
    EXPECT_EQ(program->finish().status, 0);
}

TEST_F(WindowTest, QuittingWaitsForTheAnswerToAnOpenDialog) {
    startWithLine();
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_(name, 0, 0, false);
    plotwerk->changeNameOfSelectionOf_to_(name, "unsaved");
    screen.frame();
    screen.type("F2");
    waitUntil("the dialog", [&] { return screen.titles().size() == 2; });
    screen.stillShot();
    activate(0, "quit");
    screen.type("Escape");
    const auto isAsked = [&] {
        const auto titles = screen.titles();
        return titles.size() == 2 && std::count(titles.begin(), titles.end(), "Save Changes") == 1;
    };
    waitUntil("the question", isAsked);
    activate(0, "quit");
    screen.stillShot();
    EXPECT_TRUE(isAsked()) << "once";
    screen.type("alt+d");
    bus.waitForNoOwner(busName);
    EXPECT_EQ(program->finish().status, 0);
}

TEST_F(WindowTest, OutlivesTheBus) {
    startWithLine();
    plotwerk->setXRangeOf_xmin_xmax_(name, 0, 5);
    screen.frame();
    const std::string before = bytesOf(pathOf("line.plotwerk"));
    bus.stop();
    waitUntil("the news", [&] { return screen.titles().size() == 2; });
    screen.stillShot();
    screen.type("Escape");
    waitUntil("the document", [&] { return screen.titles() == std::vector{"• " + name}; });
    screen.type("ctrl+s");
    waitUntil("a saved document", [&] { return screen.titles() == std::vector{name}; });
    EXPECT_NE(bytesOf(pathOf("line.plotwerk")), before);
    screen.type("ctrl+w");
    EXPECT_EQ(program->finish().status, 1) << "it could not answer messages to its end";
}

TEST_F(WindowTest, AnUntouchedDocumentMakesRoomForTheFileThatTheUserOpens) {
    const std::string path = file("small.txt", "1 2\n3 4\n");
    const auto handOver = [&](const std::string &to) { runProgram({PLOTWERK, to}); };
    const auto hasTitle = [&](const std::string &want) {
        waitUntil(want, [&] { return screen.titles() == std::vector{want}; });
    };
    start({"--no-journal"});
    hasTitle(name);
    const std::string same = pathOf("saved under the same name");
    plotwerk->saveDocument_to_binary_(name, same, false);
    handOver(same);
    waitUntil("a document with a path", [&] {
        plotwerk->saveDocument_to_binary_(name, "", false);
        return plotwerk->didSaveSucceed_(name);
    });
    hasTitle(name);
    plotwerk->closeDocument_askForSave_(name, false);
    handOver(file("no data.txt", "nothing but words\n"));
    hasTitle(name);
    handOver(path);
    hasTitle("small.txt");
    plotwerk->closeDocument_askForSave_("small.txt", false);
    hasTitle(name);
    plotwerk->openFile_file_doRangeOverAll_("", path, false);
    waitUntil("both", [&] { return screen.titles().size() == 2; });
    handOver(file("other.txt", "1 2\n"));
    waitUntil("all", [&] { return screen.titles().size() == 3; });
    stop();
}

TEST_F(WindowTest, ShowsWhatMessagesChangeAndNothingElse) {
    startWithLine();
    screen.frame();
    const Shot line = screen.stillShot();
    plotwerk->getXRangeOf_xmin_xmax_(name);
    EXPECT_EQ(screen.stillShot(), line);
    plotwerk->setYRangeOf_ymin_ymax_(name, 0, 200);
    waitUntil("another picture", [&] { return screen.shot() != line; });
    plotwerk->setYRangeOf_ymin_ymax_(name, 0, 100);
    waitUntil("the first picture", [&] { return screen.shot() == line; });
}

TEST_F(WindowTest, AnswersWhatTheMouseSelectedAndTheKeysHeld) {
    startWithLine();
    const ShownFrame frame = screen.frame();
    const auto answer = [&] { return runProgram({CALLPLW, "-x", "mouseClick"}).out; };
    const auto selected = [&] {
        return plotwerk->mouseEventsShiftKeyDownOf_x1_y1_x2_y2_keyMode_(name);
    };
    EXPECT_EQ(answer(), "none\n");
    const struct {
        const char *key;
        int code;
    } cases[] = {{"", 0}, {"shift", 1}, {"alt", 4}};
    for (const auto &c : cases) {
        screen.drag(frame.at(0.2, 0.9), frame.at(0.6, 0.4), 1, c.key);
        waitUntil("a selection", [&] {
            return !std::isnan(std::get<0>(selected())) && std::get<4>(selected()) == c.code;
        });
        const auto [x1, y1, x2, y2, keys] = selected();
        const double pixel = 1.5 / (frame.upperRight.x - frame.lowerLeft.x);
        EXPECT_NEAR(x1, 2, 10 * pixel);
        EXPECT_NEAR(y1, 90, 200 * pixel);
        EXPECT_NEAR(x2, 6, 10 * pixel);
        EXPECT_NEAR(y2, 40, 200 * pixel);
    }
    EXPECT_EQ(ranges(), (std::array<double, 4>{0, 10, 0, 100})) << "nothing was zoomed";
    screen.click(frame.at(0.8, 0.2));
    waitUntil("no selection", [&] { return answer() == "none\n"; });
}

// The place under the mouse keeps its value, on any scale.
TEST_F(WindowTest, ZoomsAndPansOnAnyScale) {
    startWithLine();
    const ShownFrame frame = screen.frame();
    constexpr double tolerance = 0.01;
    const std::array<double, 4> whole{0, 10, 0, 100};
    const auto restore = [&] {
        plotwerk->setXRangeOf_xmin_xmax_(name, 0, 10);
        plotwerk->setYRangeOf_ymin_ymax_(name, 0, 100);
        screen.stillShot();
    };

    screen.wheel(frame.at(0.5, 0.5), 1);
    waitForRanges({1, 9, 10, 90}, tolerance);
    screen.type("alt+Left");
    waitForRanges(whole, 0);
    screen.type("alt+Right");
    waitForRanges({1, 9, 10, 90}, tolerance);
    restore();

    Place below = frame.at(0.25, 0);
    below.y += 12;
    screen.wheel(below, 1);
    waitForRanges({0.5, 8.5, 0, 100}, tolerance);
    restore();

    screen.drag(frame.at(0.2, 0.5), frame.at(0.7, 0.9), 1, "ctrl");
    waitForRanges({2, 7, 50, 90}, tolerance);
    EXPECT_EQ(std::get<4>(plotwerk->mouseEventsShiftKeyDownOf_x1_y1_x2_y2_keyMode_(name)), 2);
    restore();

    screen.drag(frame.at(0.5, 0.5), frame.at(0.6, 0.4), 2);
    waitForRanges({-1, 9, 10, 110}, tolerance);
    restore();

    std::vector<std::string> axis{name, "1",   "nan", "-1", "-1", "2", "2",  "2",  "2", "2",
                                  "2",  "nan", "2",   "2",  "2",  "2", "-1", "-1", "2", "nan"};
    const auto setAxis = [&](const std::string &number, std::size_t setting) {
        auto words = axis;
        words[1] = number;
        words[setting] = "1";
        for (const Method &method : methodsOf(*connection))
            if (method.keyword() == "setAxisOf") answerTo(method, words);
    };
    setAxis("1", 18); // reversed
    setAxis("2", 5);  // logarithmic
    plotwerk->setYRangeOf_ymin_ymax_(name, 1, 10000);
    reopen();
    const ShownFrame other = screen.frame();
    screen.drag(other.at(0.2, 0.25), other.at(0.7, 0.75), 1, "ctrl");
    waitForRanges({3, 8, 10, 1000}, 4 * tolerance); // a pixel is 2 % of the value
}

TEST_F(WindowTest, SelectsTheCurveThatIsClicked) {
    startWithLine();
    plotwerk->readDataformText_of_source_doRangeOverAll_appendToExistingData_(
        "x z\n0 100\n5 50\n10 0\n", name, "More", false, false);
    const ShownFrame frame = screen.frame();
    const auto isSelected = [&](int first, int count) {
        waitUntil("the selection", [&] {
            const auto selection =
                plotwerk->statisticOfSelectionOf_name_dataPoints_min_max_sum_std_area_(name);
            return plotwerk->indexOfSelectedCurveOf_(name) == first &&
                   std::get<1>(selection) == 3 * count;
        });
    };
    screen.click(frame.at(0.8, 0.8));
    isSelected(0, 1);
    screen.click(frame.at(0.8, 0.2));
    isSelected(1, 1);
    screen.click(frame.at(0.8, 0.8), "ctrl");
    isSelected(1, 2);
    screen.type("Delete");
    waitUntil("no curves", [&] { return plotwerk->indexOfSelectedCurveOf_(name) == -1; });
}

TEST_F(WindowTest, CopiesDataAndPicturesAndPastesData) {
    setenv("XDG_RUNTIME_DIR", directory.c_str(), 1);
    startWithLine();
    screen.frame();
    const auto clipboard = [&](const char *type) {
        return runProgram({"xclip", "-selection", "clipboard", "-o", "-t", type}).out;
    };
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_(name, 0, 0, false);
    plotwerk->copySelectedCurvesOf_includeX_(name, true);
    EXPECT_EQ(clipboard("UTF8_STRING"), plotwerk->dataOfSelectedCurvesOf_(name));
    plotwerk->copyPDF_(name);
    EXPECT_TRUE(holds(clipboard("application/pdf"), "%PDF"));
    EXPECT_TRUE(holds(clipboard("image/png"), "PNG"));
    EXPECT_TRUE(holds(clipboard("image/svg+xml"), "<svg"));
    EXPECT_TRUE(holds(clipboard("image/tiff"), "II*"));

    const std::string text = file("text", "a b\n1 2\n3 4\n5 6\n");
    runProgram({"xclip", "-selection", "clipboard", "-i", text});
    waitUntil("data of another program", [&] { // which may not be at the clipboard at once
        plotwerk->pasteDataOf_(name);
        return plotwerk->indexOfCurveNameOf_source_table_column_(name, "Clipboard", 1, "b") == 1;
    });
    screen.type("ctrl+v");
    waitUntil("data from the clipboard", [&] {
        return plotwerk->indexOfCurveNameOf_source_table_column_(name, "Clipboard 2", 1, "b") == 2;
    });
}

// All that is done in the window is in its journal, and doing that again makes the same document.
TEST_F(WindowTest, JournalIsAScriptThatMakesTheSameDocument) {
    startWithLine();
    const ShownFrame frame = screen.frame();
    const std::string before = contentsOf(name);
    screen.type("F7");
    waitUntil("the fit pane", [&] { return screen.frame().upperRight.x < frame.upperRight.x; });
    const ShownFrame narrow = screen.frame();
    screen.drag(narrow.at(0, 0.3), narrow.at(0.4, 0.3)); // a handle
    waitUntil("a range of the fit", [&] { return contentsOf(name) != before; });
    screen.type("F7");
    screen.wheel(frame.at(0.3, 0.3), 2);
    screen.drag(frame.at(0.2, 0.2), frame.at(0.9, 0.8), 1, "ctrl");
    screen.drag(frame.at(0.5, 0.5), frame.at(0.6, 0.4), 2);
    screen.type("alt+Left");
    screen.type("plus");
    screen.type("Up");
    screen.type("ctrl+a");
    waitUntil("a selection", [&] { return plotwerk->indexOfSelectedCurveOf_(name) == 0; });
    plotwerk->changeNameOfSelectionOf_to_(name, "it's");
    plotwerk->setXTitleOf_to_(name, "it's x");
    plotwerk->diffOf_(name);
    plotwerk->setDeciSeparator_(1);
    plotwerk->readDataformText_of_source_doRangeOverAll_appendToExistingData_(
        "x;a\n0,5;1,5\n1,5;2,25\n", name, "Commas", false, false);
    plotwerk->setDeciSeparator_(0);
    std::string many = "x z\n";
    for (int i = 0; i < 20'000; ++i) many += std::to_string(i) + ' ' + std::to_string(i % 9) + '\n';
    plotwerk->readDataformText_of_source_doRangeOverAll_appendToExistingData_(many, name, "Many",
                                                                              false, false);
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
    screen.type("ctrl+z");
    screen.type("ctrl+shift+z");
    screen.type("Home");
    waitUntil("all data", [&] { return ranges()[3] == 100; });

    const std::string script = copiedJournal("callPlw -x fit");
    expectItMakesTheSame(script, pathOf("line.plotwerk"));
}

TEST_F(WindowTest, JournalHasWhatEachActionDoes) {
    start({"--no-journal"});
    plotwerk->readDataformText_of_source_doRangeOverAll_appendToExistingData_(
        "x a b\n1 1 9\n3 2 4\n2 5 3\n", name, "Data", true, false);
    const std::string path = pathOf("curves.plotwerk");
    plotwerk->saveDocument_as_binary_(name, path, false);
    stop();
    start({"--no-journal", path});
    screen.frame();

    std::vector<std::string> actions;
    actionsOf(1)->callMethod("List").onInterface("org.gtk.Actions").storeResultsTo(actions);
    std::sort(actions.begin(), actions.end());
    for (const char *action : {"close", "export", "open", "print", "rename", "save", "save-as",
                               "save-script", "show-fit", "show-journal"})
        EXPECT_EQ(std::erase(actions, action), 1U) << action; // they ask, or change no document
    for (const char *action : {"copy-data", "paste-data", "delete", "undo", "redo"}) {
        EXPECT_EQ(std::erase(actions, action), 1U) << action;
        actions.emplace_back(action); // what they do depends on the others
    }
    const auto hasCurve = [&](const std::string &source, const std::string &curve) {
        return plotwerk->indexOfCurveNameOf_source_table_column_(name, source, 1, curve) >= 0;
    };
    std::size_t changes = 0;
    for (const std::string &action : actions) {
        const std::string before = contentsOf(name);
        plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_(name, 0, 1, false);
        if (action == actions.front() || action == "undo" || action == "redo")
            screen.stillShot(); // it is enabled
        activate(1, action);
        if (action == "paste-data")
            waitUntil("the clipboard's data", [&] { return hasCurve("Clipboard", "b"); });
        changes += contentsOf(name) != before;
    }
    EXPECT_GE(changes, 15U) << testing::PrintToString(actions);

    const std::string script = copiedJournal("callPlw -x diff");
    expectItMakesTheSame(script, path);
}

// A client connected already, whose messages are on the bus as soon as they are written.
TEST_F(WindowTest, AFitIsFollowedAndCancelledWhileOtherMessagesWait) {
    startWithSlowFit();
    const std::string before = contentsOf(name);
    const Place check{179, 84}; // of the curve in the list
    ChildProcess other({CALLPLW});
    const std::string question = "-x getVar -s status\n";
    other.write(question);
    EXPECT_EQ(other.readLine(), "NAN\n");
    for (const bool byKey : {true, false}) {
        waitUntil("no trace of a fit", [&] { return traceOfFit()[1].y == 0; });
        ChildProcess fit({CALLPLW, "-x", "fit"});
        waitForCancelButton();
        const Shot early = screen.shot();
        waitUntil("further progress", [&] { return screen.shot() != early; });
        const Place cancel = waitForCancelButton();
        other.write(question);
        screen.type("ctrl+z");
        screen.click(check);
        byKey ? screen.type("Escape") : screen.click(cancel);
        EXPECT_EQ(fit.finish().out, "fit ERROR 0 nan nan\n");
        EXPECT_EQ(other.readLine(), "4\n") << "answered behind the fit";
        EXPECT_TRUE(holds(lastError(), "cancelled")) << "by key: " << byKey;
        EXPECT_TRUE(contentsOf(name) == before) << "nor was anything undone, by key: " << byKey;
        screen.move({300, 300});
        const Shot after = screen.stillShot();
        EXPECT_EQ(screen.titles(), std::vector{name}) << "without unsaved changes";
        for (int x = check.x - 6; x <= check.x + 6; ++x) {
            const auto place = static_cast<std::size_t>(check.y * idle.width + x);
            EXPECT_EQ(after.pixels[place], idle.pixels[place]) << "checked as before";
        }
    }
    stop();
}

TEST_F(WindowTest, ClosingAndEndingCancelAFit) {
    startWithSlowFit();
    plotwerk->setXTitleOf_to_(name, "unsaved");
    idle = screen.stillShot();
    std::optional<ChildProcess> fit;
    const auto begin = [&] {
        fit.emplace(std::vector<std::string>{CALLPLW, "-x", "fit"});
        waitForCancelButton();
    };
    begin();
    screen.type("ctrl+w");
    EXPECT_EQ(fit->finish().out, "fit ERROR 0 nan nan\n");
    waitUntil("the question", [&] { return screen.titles().size() == 2; });
    screen.stillShot();
    screen.type("Escape");
    waitUntil("no question", [&] { return screen.titles().size() == 1; });
    begin();
    EXPECT_TRUE(holds(stop().err, "unsaved changes of \"Untitled\""));
    EXPECT_EQ(fit->finish().out, "fit ERROR 0 nan nan\n");
}

TEST_F(WindowTest, WhatIsWrittenInTheFitPaneStaysWhileMessagesCome) {
    startWithLine();
    plotwerk->setFormulaOf_formulaText_(name, "a*x");
    screen.frame();
    screen.type("F7");
    screen.stillShot();
    screen.click({800, 180}); // the value of a
    screen.type("ctrl+a");
    for (const char *key : {"2", "4"}) screen.type(key);
    plotwerk->setYRangeOf_ymin_ymax_(name, 0, 300);
    screen.stillShot();
    for (const char *key : {"7", "Return"}) screen.type(key);
    waitUntil("the value", [&] { return plotwerk->getVarOf_varName_(name, "a") == "247"; });
    plotwerk->setFormulaOf_formulaText_(name, "b*x + c"); // the entry that has the focus goes
    screen.stillShot();
    EXPECT_EQ(plotwerk->formulaParameterListOf_(name), "b = 1\nc = 1");
    stop();
}

TEST_F(WindowTest, CurvesAreHiddenAndShownInTheList) {
    startWithLine();
    screen.frame();
    const Place check{180, 84}; // of the first row below the source's
    const auto is = [&](const char *setting) { return holds(contentsOf(name), setting); };
    screen.click(check);
    waitUntil("a hidden curve", [&] { return is("\"line\":false"); });
    screen.click(check);
    waitUntil("the curve as it was", [&] { return !is("\"line\":false"); });
}

TEST_F(WindowTest, CurvesHiddenTogetherAreShownEachAsItWasByOneStep) {
    startWithLine();
    plotwerk->readDataformText_of_source_doRangeOverAll_appendToExistingData_(
        "x a b c\n0 1 2 3\n9 4 5 6\n", name, "More", true, false);
    const auto select = [&](int curve, bool append) {
        plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_(name, curve, curve, append);
    };
    const auto setParts = [&](int curve, int isLine, int isFilled, int hasSymbols) {
        select(curve, false);
        plotwerk
            ->setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_(
                name, isLine, 2, 2, 2, 2, isFilled, 2, 2, 2, hasSymbols);
    };
    setParts(1, 0, 0, 1);
    setParts(2, 1, 1, 0);
    for (const int curve : {2, 0, 1}) select(curve, curve != 2);
    screen.frame();
    const std::string before = contentsOf(name);
    screen.type("ctrl+h");
    waitUntil("hidden curves", [&] { return contentsOf(name) != before; });
    screen.stillShot();
    const std::string hidden = contentsOf(name);
    screen.type("ctrl+j");
    const auto parts = [&] { // apart from the layers: shown curves come to the front
        return std::regex_replace(contentsOf(name), std::regex("\"layer\":[0-9]+,?"), "");
    };
    const std::string want = std::regex_replace(before, std::regex("\"layer\":[0-9]+,?"), "");
    waitUntil("each as it was", [&] { return parts() == want; });
    screen.type("ctrl+z");
    waitUntil("hidden again, by one step", [&] { return contentsOf(name) == hidden; });
}

TEST_F(WindowTest, DroppedDataAreReadInAndDroppedDocumentsOpened) {
    startWithLine();
    const std::string data = file("decimal commas.txt", "x;y\n0,5;1,5\n2,5;3,5\n");
    const std::string document = pathOf("other.plotwerk");
    plotwerk->newDocumentWithName_("other");
    plotwerk->saveDocument_as_binary_("other", document, false);
    plotwerk->closeDocument_askForSave_("other", false);
    ChildProcess source({DRAG_SOURCE, document, data});
    const Place corner{1100, 750};
    screen.place("drag source", corner);
    const Place target = screen.frame().at(0.5, 0.5);
    screen.dragAcross({corner.x + 50, corner.y + 50}, target, [&] {
        return plotwerk->indexOfCurveNameOf_source_table_column_(name, "decimal commas.txt", 1,
                                                                 "y") == 1 &&
               plotwerk->documentNameOfFrontWindow() == "other";
    });
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_(name, 1, 1), 3.5);
    EXPECT_EQ(lastError(), "");
    source.sendSignal(SIGTERM);
    source.finish();
}

TEST_F(WindowTest, PrintsToAFile) {
    std::filesystem::current_path(directory);
    startWithLine();
    screen.frame();
    screen.type("ctrl+p");
    waitUntil("the dialog", [&] { return screen.titles().size() == 2; });
    screen.stillShot();
    for (const char *key : {"Tab", "Down", "space"}) screen.type(key); // the printer of files
    screen.stillShot();
    screen.type("alt+p");
    waitUntil("a PDF file", [&] {
        return runProgram({"pdftotext", pathOf("Untitled.pdf"), "-"}).out.find("100") !=
               std::string::npos;
    });
}

TEST_F(WindowTest, UndoesWhatMessagesDidToTheSameBytes) {
    startWithLine();
    screen.frame();
    const std::string first = contentsOf(name);
    plotwerk->deleteAllCurvesOf_(name);
    screen.stillShot();
    const std::string last = contentsOf(name);
    screen.type("ctrl+z");
    waitUntil("the curves", [&] { return contentsOf(name) == first; });
    screen.type("ctrl+shift+z");
    waitUntil("no curves", [&] { return contentsOf(name) == last; });
    stop();
}

// Its fits are done again, and the windows live meanwhile.
TEST_F(WindowTest, OffersWhatAKilledOneHadNotSaved) {
    start();
    std::string data = "x y\n";
    for (int i = 0; i < 50'000; ++i) {
        const double x = 2e-3 * i;
        const double y = std::exp(-x / 50) * std::cos(x) + 0.01 * (i % 7);
        data += std::to_string(x) + ' ' + std::to_string(y) + '\n';
    }
    plotwerk->readDataformText_of_source_doRangeOverAll_appendToExistingData_(data, name, "Data",
                                                                              true, false);
    std::string formula = "a*exp(-b*x)*cos(c*x) + d";
    for (int i = 0; i < 5; ++i) formula += " + 1e-12*sin(a*x + " + std::to_string(i) + ')';
    plotwerk->setFormulaOf_formulaText_(name, formula);
    for (int i = 0; i < 3; ++i) {
        plotwerk->readFormulaParameterOf_parameterList_(name, "a=2, b=0.021, c=1.0001, d=0.1");
        EXPECT_EQ(std::get<0>(plotwerk->startFitOf_iterations_lambda_chiq_(name)), 0);
    }
    const std::string made = contentsOf(name);
    program->sendSignal(SIGKILL);
    program->finish();
    start();
    waitUntil("the question", [&] { return screen.titles().size() == 2; });
    screen.stillShot();
    screen.type("Return");
    Shot last = screen.shot();
    int changes = 0;
    waitUntil("the document in the place of the untouched one", [&] {
        screen.move({300 + 40 * (changes % 5), 300});
        Shot next = screen.shot();
        if (std::exchange(last, std::move(next)) != last) ++changes;
        return screen.titles() == std::vector{"• " + name};
    });
    EXPECT_GE(changes, 1) << "the read-out followed the mouse";
    EXPECT_TRUE(contentsOf(name) == made);
    stop();
}
