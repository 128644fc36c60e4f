// journalPane.h - what was done to a document, as the lines of a script.
#ifndef PLOTWERK_WINDOW_JOURNALPANE_H
#define PLOTWERK_WINDOW_JOURNALPANE_H

#include "plotwerk/window/messageLine.h"

#include <gtkmm.h>
#include <string>
#include <vector>

namespace plotwerk {

class JournalPane final : public Gtk::ScrolledWindow {
  public:
    JournalPane();

    // Adds a line. Of lines that set the same, one after the other, the last one stays.
    void add(const MessageLine &line);

    // The lines as a script for a shell.
    std::string script() const;

  private:
    std::vector<MessageLine> lines;
    Gtk::TextView view;
};

} // namespace plotwerk

#endif
