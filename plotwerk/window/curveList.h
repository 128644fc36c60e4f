// curveList.h - the sources, tables and curves of a document as a list, in which curves are
// selected, shown and hidden.
#ifndef PLOTWERK_WINDOW_CURVELIST_H
#define PLOTWERK_WINDOW_CURVELIST_H

#include "plotwerk/model/document.h"

#include <functional>
#include <gtkmm.h>
#include <optional>
#include <vector>

namespace plotwerk {

// What the user wants. Curves are told by their indexes, in ascending order.
struct CurveWishes {
    std::function<void(const std::vector<int> &curves)> select;
    std::function<void(bool shown)> showSelection;
};

class CurveList final : public Gtk::ScrolledWindow {
  public:
    // The document must outlive the list.
    CurveList(const Document &document, CurveWishes wishes);
    ~CurveList() override;

    // To be called when the document may have changed. The list follows with the next frame.
    void refresh();

  private:
    class Item;

    void update();
    void setUp(const Glib::RefPtr<Gtk::ListItem> &listItem);
    void bind(const Glib::RefPtr<Gtk::ListItem> &listItem);
    void selectFor(const Gtk::ListItem &listItem);
    void addMenu();
    void showMenu(double x, double y);
    void tellSelection();

    const Document &document;
    const CurveWishes wishes;
    Glib::RefPtr<Gio::ListStore<Item>> items;
    Glib::RefPtr<Gtk::MultiSelection> selection;
    Gtk::ListView view;
    Gtk::PopoverMenu menu;
    std::optional<std::uint64_t> revision; // that the list shows
    bool updateIsDue = false;
    bool updating = false;
    bool binding = false;
};

} // namespace plotwerk

#endif
