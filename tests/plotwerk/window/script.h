// script.h - a text that says what a user does and what is shown then.
#ifndef TESTS_PLOTWERK_WINDOW_SCRIPT_H
#define TESTS_PLOTWERK_WINDOW_SCRIPT_H

#include "tests/plotwerk/window/windowTest.h"

#include <string>

// A line of it does something; the indented lines behind it, WHAT: TEXT, are what is seen then, the
// further lines of a text indented more. RIGHT and UP are parts of the plot's frame; +1 or -1
// behind them, pixels to the right or down. WIDGET is what it says, or its kind.
//   call WORDS              what callPlw -x WORDS does, the words as a shell takes them
//   sh COMMAND              of a shell in the test's folder, which finds our programs
//   do ACTION               an action of the window, or app.ACTION
//   key KEY ...   write TEXT
//   click [N] WIDGET        shift, ctrl: with that key; menu: by the other button
//   point RIGHT UP [KEY]    a click; twice: two
//   drag RIGHT UP RIGHT UP [KEY]    pan: by the middle button; hold: until `release`
//   hover RIGHT UP          the mouse stays there; away: it leaves the plot
//   wheel RIGHT UP CLICKS   up where positive
//   frame                   finds the frame anew
//   layout                  place and looks of all widgets, of labels the place of their text
//   shown [TITLE]           as Screen tells it, of windows whose title ends so
//   text, looks [N] WIDGET  what it says, and else looks like
//   dots [N] WIDGET         the pixels across its middle and down it
//   across UP, down RIGHT   those of a line through the frame
//   states                  the actions that can't be done | those that are on
//   answers QUESTION ...    of callPlw
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
    bool isStill = false; // nothing was done since it was looked at
};

#endif
