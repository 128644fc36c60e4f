// windowTest.h - plotwerk run on a screen that nobody sees, by mouse, keys and messages.
#ifndef TESTS_PLOTWERK_WINDOW_WINDOWTEST_H
#define TESTS_PLOTWERK_WINDOW_WINDOWTEST_H

#include "tests/plotwerk/server/serverTest.h"
#include "tests/plotwerk/window/screen.h"

#include <memory>
#include <string>
#include <vector>

class WindowTest : public ServerTest {
  protected:
    WindowTest();

    // A straight line from (0, 0) to (10, 100), in a document "Untitled" of that range.
    void startWithLine();

    // Shows the document in a window whose first picture is the document as it is now.
    void reopen();

    void read(const std::string &text, const std::string &source, bool rangeOverAll = false);

    // That file in the place of the document.
    void openInstead(const std::string &path);

    // With data and a formula that a fit works on for long, all saved, and the fit pane shown.
    void startWithSlowFit();

    // Until the fit tells of itself.
    void waitForProgress();

    void waitForWindows(std::size_t count);

    // The actions of the application, or of its window of that number.
    std::vector<std::string> actions(int window) const;
    void activate(int window, const std::string &action) const;

    // Those that can't be done now, and behind a bar those that are on.
    std::string states(int window) const;

    const std::string name = "Untitled";
    Screen screen{program};

  private:
    std::unique_ptr<sdbus::IProxy> actionsOf(int window) const;
};

#endif
