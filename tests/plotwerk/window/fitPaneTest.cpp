// The pane of the fit.
#include "tests/plotwerk/window/windowTest.h"

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
        for (int x = check.x - 6; x <= check.x + 6; ++x)
            EXPECT_EQ(after.at(x, check.y), idle.at(x, check.y)) << "checked as before";
    }
    stop();
}

TEST_F(WindowTest, WhatIsWrittenInTheFitPaneStaysWhileMessagesCome) {
    startWithLine();
    plotwerk->setFormulaOf_formulaText_(name, "a*x");
    screen.frame();
    screen.type("F7");
    screen.settle();
    screen.click({800, 180}); // the value of a
    screen.type("ctrl+a");
    for (const char *key : {"2", "4"}) screen.type(key);
    plotwerk->setYRangeOf_ymin_ymax_(name, 0, 300);
    screen.settle();
    for (const char *key : {"7", "Return"}) screen.type(key);
    waitUntil("the value", [&] { return plotwerk->getVarOf_varName_(name, "a") == "247"; });
    plotwerk->setFormulaOf_formulaText_(name, "b*x + c"); // the entry that has the focus goes
    screen.settle();
    EXPECT_EQ(plotwerk->formulaParameterListOf_(name), "b = 1\nc = 1");
    stop();
}
