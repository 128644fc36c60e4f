// script.h - a text that says what a user does and what is shown then.
#ifndef TESTS_PLOTWERK_WINDOW_SCRIPT_H
#define TESTS_PLOTWERK_WINDOW_SCRIPT_H

#include "tests/plotwerk/window/windowTest.h"

#include <functional>
#include <map>
#include <sstream>
#include <string>

// A line of it does something; the indented lines behind it, WHAT: TEXT, are what is seen then.
// RIGHT and UP are parts of the plot's frame; +1 or -1 behind them, pixels to the right or down.
//   call WORDS              what callPlw -x WORDS does, the words as a shell takes them
//   do ACTION               an action of the window, or app.ACTION
//   key KEY ...   write TEXT
//   click [N] WIDGET        shift, ctrl: with that key; menu: by the other button
//   point RIGHT UP [KEY]    twice, hover; away: the mouse leaves the plot; wheel RIGHT UP CLICKS
//   drag RIGHT UP RIGHT UP [KEY]    pan: by the middle button; hold: until `release`
//   frame                   finds the frame anew
// What is seen, further lines of it indented more: layout, the place and the looks of all widgets;
// shown [TITLE] and looks WIDGET as Screen tells it, text WIDGET, states (of
// actions), answer WORDS (of callPlw), across UP and down RIGHT: the pixels of a line through the
// frame.
class ScriptTest : public WindowTest {
  protected:
    // Runs tests/data/windows/NAME and expects what it says. With $REWRITE in the environment what
    // is seen is written there, to be looked through.
    void follow(const std::string &script);

  private:
    void act(const std::string &line);
    std::string look(const std::string &what);
    std::string patientLook(const std::string &what, const std::string &want);
    Place placeIn(std::istream &words) const;
    Widget widgetIn(std::istream &words) const;

    ShownFrame frame;
    bool isPatient = true;
};

#endif
