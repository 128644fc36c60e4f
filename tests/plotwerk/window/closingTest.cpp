// Closing windows, and ending.
#include "tests/plotwerk/window/windowTest.h"

#include <algorithm>
#include <optional>

TEST_F(WindowTest, QuittingAsksAboutOneDocumentAfterTheOtherUntilOneIsKept) {
    startWithLine();
    plotwerk->setXRangeOf_xmin_xmax_(name, 0, 5);
    plotwerk->newDocumentWithName_("other");
    plotwerk->setXRangeOf_xmin_xmax_("other", 0, 5);
    screen.frame();
    waitForWindows(2);
    screen.type("ctrl+q");
    waitForWindows(3);
    screen.type("alt+d");
    waitUntil("the next question", [&] {
        const auto titles = screen.titles();
        return titles.size() == 2 && std::count(titles.begin(), titles.end(), "• other") == 0;
    });
    screen.settle();
    screen.type("Escape");
    waitForWindows(1);
    screen.type("ctrl+q");
    waitForWindows(2);
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
    waitForWindows(2);
    activate(0, "quit");
    screen.type("Escape");
    const auto isAsked = [&] {
        const auto titles = screen.titles();
        return titles.size() == 2 && std::count(titles.begin(), titles.end(), "Save Changes") == 1;
    };
    waitUntil("the question", isAsked);
    activate(0, "quit");
    screen.settle();
    EXPECT_TRUE(isAsked()) << "once";
    screen.type("alt+d");
    bus.waitForNoOwner(busName);
    EXPECT_EQ(program->finish().status, 0);
}

TEST_F(WindowTest, ClosingAndEndingCancelAFit) {
    startWithSlowFit();
    plotwerk->setXTitleOf_to_(name, "unsaved");
    std::optional<ChildProcess> fit;
    const auto begin = [&] {
        fit.emplace(std::vector<std::string>{CALLPLW, "-x", "fit"});
        waitForProgress();
    };
    for (const char *key : {"ctrl+w", "ctrl+q"}) {
        begin();
        screen.type(key);
        EXPECT_EQ(fit->finish().out, "fit ERROR 0 nan nan\n");
        waitForWindows(2);
        EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), name) << "messages are answered meanwhile";
        screen.type("Escape");
        waitUntil("no question", [&] { return screen.titles().size() == 1; });
    }
    begin();
    EXPECT_TRUE(holds(stop().err, "unsaved changes of \"Untitled\""));
    EXPECT_EQ(fit->finish().out, "fit ERROR 0 nan nan\n");
}
