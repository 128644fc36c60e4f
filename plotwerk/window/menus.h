// menus.h - the menu bar, and the keys of its entries.
#ifndef PLOTWERK_WINDOW_MENUS_H
#define PLOTWERK_WINDOW_MENUS_H

#include <gtkmm.h>

namespace plotwerk {

// Entries name actions of the application ("app.") and of its windows ("win."), which have to be
// there.
void addMenus(Gtk::Application &application);

// The menu of what is done to the selected curves, to be shown beside them.
Glib::RefPtr<Gio::Menu> curvesMenu();

// For a window: the keys that also mean something where a text is written, and yield to that.
Glib::RefPtr<Gtk::ShortcutController> yieldingKeys();

} // namespace plotwerk

#endif
