#include "plotwerk/window/menus.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace plotwerk {

namespace {

struct Entry {
    const char *label;
    const char *action;
    const char *key = "";
    bool yields = false; // its key, to a text that is being written
};

} // namespace

static constexpr const char *menu = "menu"; // instead of an action: the entries below are in it
static constexpr const char *section = "section"; // a line between entries

static constexpr const char *curves = "_Curves";

static constexpr Entry entries[] = {
    {"_File", menu},
    {"_New", "app.new", "<Control>n"},
    {"_Open…", "win.open", "<Control>o"},
    {"", section},
    {"_Save", "win.save", "<Control>s"},
    {"Save _As…", "win.save-as", "<Control><Shift>s"},
    {"_Export Picture…", "win.export", "<Control>e"},
    {"", section},
    {"_Print…", "win.print", "<Control>p"},
    {"", section},
    {"_Close", "win.close", "<Control>w"},
    {"_Quit", "app.quit", "<Control>q"},

    {"_Edit", menu},
    {"_Undo", "win.undo", "<Control>z", true},
    {"_Redo", "win.redo", "<Control><Shift>z", true},
    {"", section},
    {"_Copy Data", "win.copy-data", "<Control>c", true},
    {"Copy P_icture", "win.copy-picture", "<Control><Shift>c"},
    {"Copy R_ead-Out", "win.copy-read-out", "<Control><Shift>r"},
    {"_Paste Data", "win.paste-data", "<Control>v", true},
    {"", section},
    {"Select _All Curves", "win.select-all", "<Control>a", true},
    {"_Delete Curves", "win.delete", "Delete", true},

    {"_View", menu},
    {"Zoom _In", "win.zoom-in", "<Control>plus"},
    {"Zoom _Out", "win.zoom-out", "<Control>minus"},
    {"_All Data", "win.range-over-all", "<Control>0"},
    {"_Previous View", "win.view-back", "<Alt>Left"},
    {"_Next View", "win.view-forward", "<Alt>Right"},
    {"", section},
    {"_Fill the Window", "win.fill-window", "<Control>f"},
    {"Logarithmic _x", "win.logarithmic-x"},
    {"Logarithmic _y", "win.logarithmic-y"},
    {"", section},
    {"_Curves", "win.show-curves", "F9"},
    {"Fi_t", "win.show-fit", "F7"},
    {"_Journal", "win.show-journal", "F8"},
    {"_Save Journal as Script…", "win.save-script"},

    {curves, menu},
    {"_Line", "win.toggle-line", "<Control>l"},
    {"_Symbols", "win.toggle-symbols", "<Control>b"},
    {"", section},
    {"S_how in Front", "win.show", "<Control>j"},
    {"H_ide", "win.hide", "<Control>h"},
    {"_Mark", "win.mark"},
    {"Use as _Fit Data", "win.fit-data"},
    {"Ca_ncel Fit", "win.cancel-fit", "Escape"},
    {"_Rename…", "win.rename", "F2"},
    {"", section},
    {"_Differentiate", "win.differentiate"},
    {"Sort by _x", "win.sort-by-x"},
    {"_Exchange with x", "win.swap-with-x"},

    {"_Help", menu},
    {"_About Plotwerk", "app.about"},
};

// The menu whose entry that is, of the ones that follow it.
static Glib::RefPtr<Gio::Menu> menuOf(const Entry *entry) {
    const auto opened = Gio::Menu::create();
    Glib::RefPtr<Gio::Menu> part;
    for (++entry; entry != std::end(entries) && entry->action != menu; ++entry) {
        if (!part || entry->action == section) opened->append_section(part = Gio::Menu::create());
        if (entry->action == section) continue;
        const auto item = Gio::MenuItem::create(entry->label, entry->action);
        if (entry->yields)
            item->set_attribute_value("accel", Glib::Variant<Glib::ustring>::create(entry->key));
        part->append_item(item);
    }
    return opened;
}

void addMenus(Gtk::Application &application) {
    const auto bar = Gio::Menu::create();
    for (const Entry &entry : entries) {
        if (entry.action == menu)
            bar->append_submenu(entry.label, menuOf(&entry));
        else if (*entry.key && !entry.yields)
            application.set_accel_for_action(entry.action, entry.key);
    }
    application.set_menubar(bar);
}

Glib::RefPtr<Gio::Menu> curvesMenu() {
    return menuOf(std::find_if(std::begin(entries), std::end(entries), [](const Entry &entry) {
        return entry.action == menu && entry.label == curves;
    }));
}

Glib::RefPtr<Gtk::ShortcutController> yieldingKeys() {
    auto keys = Gtk::ShortcutController::create();
    for (const Entry &entry : entries) {
        if (!entry.yields) continue;
        keys->add_shortcut(Gtk::Shortcut::create(Gtk::ShortcutTrigger::parse_string(entry.key),
                                                 Gtk::NamedAction::create(entry.action)));
    }
    return keys;
}

} // namespace plotwerk
