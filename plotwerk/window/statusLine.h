// statusLine.h - the line below the plot: what lies under the mouse, and what the user is told.
#ifndef PLOTWERK_WINDOW_STATUSLINE_H
#define PLOTWERK_WINDOW_STATUSLINE_H

#include "plotwerk/window/readOut.h"

#include <chrono>
#include <gtkmm.h>
#include <string>

namespace plotwerk {

class StatusLine final : public Gtk::Box {
  public:
    StatusLine();

    void showReadOut(const ReadOut &readOut);

    // What was shown last under the mouse, for the clipboard; stays when the mouse has left.
    const std::string &readOutText() const { return lastReadOut; }

    // A line for the user, until the next one; empty: none. What is told has gone wrong.
    void note(const Glib::ustring &text);
    void tell(const Glib::ustring &text);

    // What was told has had time to be read.
    bool isRead() const;

  private:
    Gtk::Label place;
    Gtk::Label point;
    Gtk::Label message;
    std::string lastReadOut;
    std::chrono::steady_clock::time_point toldAt;
};

} // namespace plotwerk

#endif
