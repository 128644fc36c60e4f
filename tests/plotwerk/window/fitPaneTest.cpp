// The pane of the fit.
#include "tests/plotwerk/window/windowTest.h"

// A client connected already, whose messages are on the bus as soon as they are written.
TEST_F(WindowTest, AFitIsFollowedAndCancelledWhileOtherMessagesWait) {
    startWithSlowFit();
    const std::string before = contentsOf(name);
    const std::string idle = screen.shown();
    ChildProcess other({CALLPLW});
    const std::string question = "-x getVar -s status\n";
    other.write(question);
    EXPECT_EQ(other.readLine(), "NAN\n");
    for (const bool byKey : {true, false}) {
        ChildProcess fit({CALLPLW, "-x", "fit"});
        waitForProgress();
        const std::string early = screen.shown();
        waitUntil("further progress", [&] { return screen.shown() != early; });
        const Place cancel = screen.widget("Cancel").middle();
        other.write(question);
        screen.type("ctrl+z");
        screen.click(screen.widget("CheckButton").middle());
        byKey ? screen.type("Escape") : screen.click(cancel);
        EXPECT_EQ(fit.finish().out, "fit ERROR 0 nan nan\n");
        EXPECT_EQ(other.readLine(), "4\n") << "answered behind the fit";
        EXPECT_TRUE(holds(lastError(), "cancelled")) << "by key: " << byKey;
        EXPECT_TRUE(contentsOf(name) == before) << "nor was anything undone, by key: " << byKey;
        screen.move({300, 5});
        screen.settle();
        const std::string after = screen.shown();
        EXPECT_TRUE(holds(after, "= Untitled /")) << "without unsaved changes";
        EXPECT_TRUE(holds(after, "y  [x]")) << "checked as before";
        EXPECT_EQ(after.substr(after.find("Formula")), idle.substr(idle.find("Formula")));
    }
    stop();
}
