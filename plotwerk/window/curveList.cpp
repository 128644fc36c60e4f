#include "plotwerk/window/curveList.h"

#include "plotwerk/model/curves.h"
#include "plotwerk/model/errorColumns.h"
#include "plotwerk/window/hiddenCurves.h"
#include "plotwerk/window/menus.h"
#include "plotwerk/window/scopedValue.h"

#include <initializer_list>
#include <numbers>
#include <string>
#include <utility>

namespace plotwerk {

namespace {

// What a row shows.
struct Row {
    enum Kind { source, table, curve } kind = source;
    std::string text;
    int first = 0; // the curves that it stands for
    int last = -1;
    bool marked = false;
    bool fitData = false;
    bool hidden = false;
    bool errors = false; // of another curve: never drawn as one
    bool line = false;
    bool symbols = false;
    double red = 0;
    double green = 0;
    double blue = 0;

    bool operator==(const Row &) const = default;
};

} // namespace

class CurveList::Item final : public Glib::Object {
  public:
    static Glib::RefPtr<Item> create(Row row) {
        return Glib::make_refptr_for_instance(new Item(std::move(row)));
    }
    const Row row;

  private:
    explicit Item(Row shown) : row(std::move(shown)) {}
};

static Row rowOf(const Column &column, int index, bool holdsErrors) {
    const Colour &colour = column.look.lineColour;
    return {Row::curve,
            column.name.empty() ? Glib::ustring("(no name)") : Glib::ustring(column.name),
            index,
            index,
            column.marked,
            column.fitData,
            !isSeen(column.look),
            holdsErrors,
            column.look.line,
            column.look.symbols,
            colour.red,
            colour.green,
            colour.blue};
}

// Tables have a row of their own where a source has several. Rows of selected curves are added to
// `selected`: a row stays the same one when the mouse selects it, and the click goes on.
static std::vector<Row> rowsOf(const Document &document, Gtk::Bitset &selected) {
    std::vector<Row> rows;
    int index = 0;
    for (const Source &source : document.sources) {
        const std::size_t head = rows.size();
        rows.push_back({.kind = Row::source, .text = source.name, .first = index});
        int number = 0;
        for (const Table &table : source.tables) {
            ++number;
            if (source.tables.size() > 1)
                rows.push_back({.kind = Row::table,
                                .text = Glib::ustring::sprintf("Table %d", number),
                                .first = index,
                                .last = index + static_cast<int>(table.y.size()) - 1});
            const ErrorColumns errors(table);
            for (std::size_t i = 0; i < table.y.size(); ++i) {
                if (table.y[i].rank > 0) selected.add(static_cast<guint>(rows.size()));
                rows.push_back(rowOf(table.y[i], index++, errors.holdsErrors(i)));
            }
        }
        rows[head].last = index - 1;
    }
    return rows;
}

CurveList::CurveList(const Document &shown, CurveWishes heard)
    : document(shown),
      wishes(std::move(heard)),
      items(Gio::ListStore<Item>::create()),
      selection(Gtk::MultiSelection::create(items)),
      view(selection),
      menu(curvesMenu()) {
    const auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect(sigc::mem_fun(*this, &CurveList::setUp));
    factory->signal_bind().connect(sigc::mem_fun(*this, &CurveList::bind));
    view.set_factory(factory);
    view.add_css_class("navigation-sidebar");
    selection->signal_selection_changed().connect([this](guint, guint) { tellSelection(); });
    gtk_accessible_update_property(GTK_ACCESSIBLE(view.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   "Curves", -1);
    set_child(view);
    addMenu();
    signal_map().connect([this] { update(); });
    set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    update();
}

CurveList::~CurveList() {
    menu.unparent();
}

static const Glib::Quark itemKey("list item"); // of a row's box

// Of the row that has the focus, or has a part that has it.
static const Gtk::ListItem *itemOf(Gtk::Widget &focus) {
    for (Gtk::Widget *box : {focus.get_first_child(), focus.get_parent()})
        if (void *item = box ? box->get_data(itemKey) : nullptr)
            return static_cast<Gtk::ListItem *>(item);
    return nullptr;
}

// At the pointer by the mouse's other button; by keys, at the row that has the focus.
void CurveList::addMenu() {
    menu.set_parent(view);
    menu.set_has_arrow(false);
    menu.set_halign(Gtk::Align::START);
    const auto keys = Gtk::EventControllerKey::create();
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType held) {
            const bool isShifted = (held & Gdk::ModifierType::SHIFT_MASK) != Gdk::ModifierType{};
            if (key != GDK_KEY_Menu && !(key == GDK_KEY_F10 && isShifted)) return false;
            double x = 0, y = 0;
            if (Gtk::Widget *focus = get_root()->get_focus()) {
                if (const Gtk::ListItem *item = itemOf(*focus)) selectFor(*item);
                focus->translate_coordinates(view, 0, focus->get_height(), x, y);
            }
            showMenu(x, y);
            return true;
        },
        false);
    view.add_controller(keys);
    menu.signal_closed().connect([this] { view.grab_focus(); }); // else the menu bar has it
}

void CurveList::showMenu(double x, double y) {
    menu.set_pointing_to({static_cast<int>(x), static_cast<int>(y), 1, 1});
    menu.popup();
}

// A row: colour, name, what is true of the curve, and whether it is shown.
void CurveList::setUp(const Glib::RefPtr<Gtk::ListItem> &listItem) {
    auto *box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
    auto *swatch = Gtk::make_managed<Gtk::DrawingArea>();
    swatch->set_size_request(20, 14);
    swatch->set_valign(Gtk::Align::CENTER);
    auto *name = Gtk::make_managed<Gtk::Label>();
    name->set_ellipsize(Pango::EllipsizeMode::MIDDLE);
    name->set_hexpand();
    name->set_xalign(0);
    auto *tags = Gtk::make_managed<Gtk::Label>();
    tags->add_css_class("dim-label");
    auto *check = Gtk::make_managed<Gtk::CheckButton>();
    check->set_tooltip_text("Shown in the plot");
    gtk_accessible_update_property(GTK_ACCESSIBLE(check->gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   "Shown", -1);
    for (Gtk::Widget *part : std::initializer_list<Gtk::Widget *>{swatch, name, tags, check})
        box->append(*part);
    listItem->set_child(*box);

    Gtk::ListItem *item = listItem.get(); // which outlives its child
    box->set_data(itemKey, item);
    check->signal_toggled().connect([this, item, check] {
        if (binding) return;
        const bool isShown = check->get_active(); // selecting may bind the row anew
        selectFor(*item);
        wishes.showSelection(isShown);
        const auto curve = curveAt(document, items->get_item(item->get_position())->row.first);
        const ScopedValue ownDoing(binding, true); // a refused change isn't shown
        check->set_active(curve && isSeen(columnOf(document, *curve).look));
    });
    const auto click = Gtk::GestureClick::create();
    click->set_button(GDK_BUTTON_SECONDARY);
    click->signal_pressed().connect([this, item, box](int, double x, double y) {
        box->get_parent()->grab_focus(); // a row's, where keys go on
        selectFor(*item);
        box->translate_coordinates(view, x, y, x, y);
        showMenu(x, y);
    });
    box->add_controller(click);
}

// What is done to a row is done to the selection: to that row alone, unless it is selected.
void CurveList::selectFor(const Gtk::ListItem &listItem) {
    if (!listItem.get_selected()) selection->select_item(listItem.get_position(), true);
}

static Glib::ustring tagsOf(const Row &row) {
    Glib::ustring tags;
    const auto add = [&](bool has, const char *tag) {
        if (has) tags += tags.empty() ? tag : Glib::ustring(", ") + tag;
    };
    add(row.marked, "marked");
    add(row.fitData, "fit data");
    add(row.errors, "errors");
    return tags;
}

void CurveList::bind(const Glib::RefPtr<Gtk::ListItem> &listItem) {
    const Row row = std::dynamic_pointer_cast<Item>(listItem->get_item())->row;
    auto *box = dynamic_cast<Gtk::Box *>(listItem->get_child());
    auto *swatch = dynamic_cast<Gtk::DrawingArea *>(box->get_first_child());
    auto *name = dynamic_cast<Gtk::Label *>(swatch->get_next_sibling());
    auto *tags = dynamic_cast<Gtk::Label *>(name->get_next_sibling());
    auto *check = dynamic_cast<Gtk::CheckButton *>(tags->get_next_sibling());

    swatch->set_visible(row.kind == Row::curve);
    swatch->set_opacity(row.errors ? 0 : 1);
    swatch->set_draw_func([row](const Cairo::RefPtr<Cairo::Context> &cr, int width, int height) {
        cr->set_source_rgb(1, 1, 1); // as on the page, whatever the theme
        cr->paint();
        cr->set_source_rgba(row.red, row.green, row.blue, row.hidden ? 0.3 : 1);
        const double middle = height / 2.0;
        if (row.line) cr->rectangle(0, middle - 1, width, 2);
        if (row.symbols) cr->arc(width / 2.0, middle, 3.5, 0, 2 * std::numbers::pi);
        cr->fill();
    });
    name->set_text(row.text);
    name->set_tooltip_text(row.text);
    Pango::AttrList
        looks; // the theme's headings have a size of their own, whatever the desktop's is
    auto weight = Pango::Attribute::create_attr_weight(
        row.kind == Row::source ? Pango::Weight::BOLD : Pango::Weight::NORMAL);
    looks.insert(weight);
    name->set_attributes(looks);
    box->set_margin_start(row.kind == Row::source ? 0 : row.kind == Row::table ? 6 : 12);
    box->set_opacity(row.hidden ? 0.6 : 1);
    tags->set_text(tagsOf(row));
    const ScopedValue ownDoing(binding, true);
    check->set_visible(row.kind == Row::curve && !row.errors);
    check->set_active(!row.hidden);
}

void CurveList::refresh() {
    if (!get_mapped() || revision == document.revision || std::exchange(updateIsDue, true)) return;
    add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock> &) {
        updateIsDue = false;
        if (get_mapped()) update(); // else its document may be gone
        return false;
    });
}

// Replaces the rows from the first to the last that differ.
void CurveList::update() {
    revision = document.revision;
    const auto selected = Gtk::Bitset::create();
    const std::vector<Row> rows = rowsOf(document, *selected.get());
    const auto rowAt = [&](guint i) -> const Row & { return items->get_item(i)->row; };
    const guint had = items->get_n_items();
    const auto has = static_cast<guint>(rows.size());
    guint head = 0;
    while (head < had && head < has && rowAt(head) == rows[head]) ++head;
    guint tail = 0;
    while (tail < had - head && tail < has - head && rowAt(had - 1 - tail) == rows[has - 1 - tail])
        ++tail;

    const ScopedValue ownDoing(updating, true);
    const Gtk::Widget *focus = get_root() ? get_root()->get_focus() : nullptr;
    const bool rowHasFocus = focus && focus->get_parent() == &view;
    std::vector<Glib::RefPtr<Item>> added;
    for (guint i = head; i < has - tail; ++i) added.push_back(Item::create(rows[i]));
    if (had - head - tail > 0 || !added.empty()) items->splice(head, had - head - tail, added);
    const auto all = Gtk::Bitset::create();
    all->add_range(0, has);
    selection->set_selection(selected, all);
    if (rowHasFocus) view.grab_focus(); // not the check button of a row that came for it
}

void CurveList::tellSelection() {
    if (updating) return;
    const auto chosen = selection->get_selection();
    std::vector<int> curves;
    for (guint i = 0; i < items->get_n_items(); ++i) {
        const Row &row = items->get_item(i)->row;
        if (!chosen->contains(i)) continue;
        for (int curve = row.first; curve <= row.last; ++curve)
            if (curves.empty() || curve > curves.back()) curves.push_back(curve);
    }
    wishes.select(curves);
    revision.reset(); // what was refused isn't selected
    refresh();
}

} // namespace plotwerk
