// curveList.h - the sources, tables and curves of a document as a list, in which curves are
// selected.
#ifndef PLOTWERK_WINDOW_CURVELIST_H
#define PLOTWERK_WINDOW_CURVELIST_H

#include "plotwerk/model/document.h"

#include <functional>
#include <gtkmm.h>
#include <optional>
#include <vector>

namespace plotwerk {

class CurveList final : public Gtk::ScrolledWindow {
  public:
    // `select` hears which curves the user wants to be selected, by their indexes. The document
    // must outlive the list.
    CurveList(const Document &document, std::function<void(const std::vector<int> &)> select);

    // To be called when the document may have changed. The list follows with the next frame.
    void refresh();

  private:
    class Item;

    void update();
    void bind(const Glib::RefPtr<Gtk::ListItem> &listItem);
    void tellSelection();

    const Document &document;
    const std::function<void(const std::vector<int> &)> select;
    Glib::RefPtr<Gio::ListStore<Item>> items;
    Glib::RefPtr<Gtk::MultiSelection> selection;
    Gtk::ListView view;
    std::optional<std::uint64_t> revision; // that the list shows
    bool updateIsDue = false;
    bool updating = false;
};

} // namespace plotwerk

#endif
