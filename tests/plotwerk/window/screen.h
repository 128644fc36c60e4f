// screen.h - a screen that nobody sees, with mouse and keyboard, and what is shown on it.
#ifndef TESTS_PLOTWERK_WINDOW_SCREEN_H
#define TESTS_PLOTWERK_WINDOW_SCREEN_H

#include "tests/support/process.h"
#include "tests/support/temporaryFolder.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct Place {
    int x = 0; // in pixels from the upper left corner
    int y = 0;
};

// What the screen showed at one time.
struct Shot {
    static constexpr int width = 1280;
    static constexpr int height = 900;
    std::vector<std::uint32_t> pixels; // 0x00RRGGBB, row by row

    std::uint32_t at(int x, int y) const;
    bool isDark(int x, int y) const;
    bool operator==(const Shot &) const = default;
};

// The corners of a plot's frame, lower left and upper right.
struct ShownFrame {
    Place lowerLeft;
    Place upperRight;

    // Of a part of its width, and of its height from below.
    Place at(double right, double up) const;
};

// What is shown in a window.
struct Widget {
    Place at; // on the screen
    int width = 0;
    int height = 0;
    std::string kind; // as the toolkit has it
    std::string text;
    std::string looks; // style classes, {tooltip}, ^cursor, opacity, (names for screen readers)

    Place middle() const { return {at.x + width / 2, at.y + height / 2}; }
};

// An X server of the test's own. While it lives it is the display of this process's children, of
// which it waits for the program.
class Screen {
  public:
    explicit Screen(const std::optional<ChildProcess> &program);
    ~Screen();

    // Words of xdotool. The mouse is moved in steps, as a hand does it.
    void type(const std::string &key);
    void write(const std::string &text);
    void move(Place to);
    void click(Place at, const std::string &key = "", int times = 1, int button = 1);
    void drag(Place from, Place to, int button = 1, const std::string &key = "");
    void hold(Place from, Place to); // as that, until the button is released
    void release();
    void wheel(Place at, int clicks); // up where positive

    // From one program's window to another's, which have to find each other: again until `isTaken`.
    void dragAcross(Place from, Place to, const std::function<bool()> &isTaken);

    // Where a window of that title gets its upper left corner.
    void place(const std::string &title, Place corner);

    // The titles of the windows that are shown.
    std::vector<std::string> titles();

    Shot shot() const;

    // Returns when neither screen nor program have anything to do.
    void settle() const;

    // What is shown then.
    Shot stillShot() const;

    // The widgets of all windows now, the last window first.
    std::vector<Widget> widgets() const;

    // What they say, of windows whose title ends so: a slash between rows. Marks stand before it:
    // * selected, > with the focus, ~ insensitive, ! an error.
    std::string shown(const std::string &title = "") const;

    // The first, second, ... widget of that kind, or that says that; waits for it.
    Widget widget(const std::string &text, int number = 1) const;

    // The runs of pixels of one colour, as in "20*ffffff 3*0 ".
    std::string pixels(Place from, Place step, int count) const;

    // The frame of the plot that is shown; waits for one.
    ShownFrame frame() const;

  private:
    void point(const std::vector<std::string> &words);

    const TemporaryFolder folder; // of its memory, and of settings
    const std::optional<ChildProcess> &program;
    std::unique_ptr<ChildProcess> server;
};

#endif
