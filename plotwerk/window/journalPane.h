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

    std::size_t numberOfLines() const { return lines.size(); }

    // Takes back the lines behind the first `count`, when what they did is undone. What stood there
    // when that was redone, stands there again.
    void takeBackTo(std::size_t count);

    // Adds the lines again that were taken back last, when that is redone. What was only selected
    // meanwhile isn't selected any more, and has no line until it is undone again. Returns the
    // number of lines to take that back to.
    std::size_t putBack();

    // Nothing is redone any more.
    void forgetTakenBack() { takenBack.clear(); }

    // The lines as a script for a shell.
    std::string script() const;

  private:
    char decimalSeparator() const;
    void insert(const MessageLine &line);
    void erase(std::size_t from, std::size_t count);
    void eraseText(std::size_t from, std::size_t count);
    void showAll();
    std::vector<MessageLine> linesFrom(std::size_t from) const;

    std::vector<MessageLine> lines;
    struct TakenBack {
        std::size_t from; // where they stood
        std::vector<MessageLine> lines;
    };
    std::vector<TakenBack> takenBack;
    struct Meanwhile { // what stood there when lines were put back
        std::size_t from;
        std::size_t staying; // of its lines, those that still do
        std::vector<MessageLine> lines;
    };
    std::vector<Meanwhile> meanwhile;
    Gtk::TextView view;
    Glib::RefPtr<Gtk::TextMark> endMark; // to which a view scrolls once the lines have their height
};

} // namespace plotwerk

#endif
