#include "plotwerk/window/fitPane.h"

#include "plotwerk/fit/fitVariables.h"
#include "plotwerk/window/scopedValue.h"

#include <cmath>
#include <cstdio>
#include <utility>

namespace plotwerk {

static Gtk::Label *heading(const char *text) {
    auto *label = Gtk::make_managed<Gtk::Label>(text, true);
    label->set_xalign(0);
    // the theme's headings have a size of their own, whatever the desktop's is
    Pango::AttrList bold;
    auto weight = Pango::Attribute::create_attr_weight(Pango::Weight::BOLD);
    bold.insert(weight);
    label->set_attributes(bold);
    return label;
}

static void setAccessibleLabel(Gtk::Widget &widget, const Glib::ustring &label) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   label.c_str(), -1);
}

FitPane::FitPane(const Document &shown, FitWishes heard)
    : Gtk::Box(Gtk::Orientation::VERTICAL, 6),
      document(shown),
      wishes(std::move(heard)),
      fitButton("F_it", true),
      progressBox(Gtk::Orientation::VERTICAL, 6),
      cancelButton("Cance_l", true) {
    set_margin(12);
    set_size_request(260, -1);
    set_hexpand(false); // whatever its entries do

    auto *formulaHeading = heading("Form_ula");
    formulaHeading->set_mnemonic_widget(formula);
    append(*formulaHeading);
    formula.set_monospace();
    formula.set_wrap_mode(Gtk::WrapMode::CHAR);
    formula.set_accepts_tab(false);
    formula.set_left_margin(6);
    formula.set_right_margin(6);
    formula.set_top_margin(4);
    formula.set_bottom_margin(4);
    formula.set_tooltip_text("y as an expression in x; other names are parameters");
    setAccessibleLabel(formula, "Formula");
    auto *scrolled = Gtk::make_managed<Gtk::ScrolledWindow>();
    scrolled->set_child(formula);
    scrolled->set_min_content_height(72);
    scrolled->set_has_frame();
    append(*scrolled);
    const auto focus = Gtk::EventControllerFocus::create();
    focus->signal_leave().connect([this] { sendSoon([this] { sendFormula(); }); });
    formula.add_controller(focus);
    signal_unmap().connect([this] {
        sendFormula();
        for (const auto &row : rows) sendParameter(*row);
    });

    parametersHeading = heading("Parameters");
    append(*parametersHeading);
    grid.set_row_spacing(4);
    grid.set_column_spacing(6);
    auto *scrolledGrid = Gtk::make_managed<Gtk::ScrolledWindow>();
    scrolledGrid->set_child(grid);
    scrolledGrid->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scrolledGrid->set_propagate_natural_height();
    append(*scrolledGrid);

    fitButton.add_css_class("suggested-action");
    fitButton.set_margin_top(6);
    fitButton.signal_clicked().connect([this] { fit(); });
    append(fitButton);
    auto *state = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
    progressLabel.set_xalign(0);
    progressLabel.add_css_class("numeric");
    state->append(spinner);
    state->append(progressLabel);
    cancelButton.set_action_name("win.cancel-fit");
    cancelButton.set_focus_on_click(false); // it goes
    progressBox.append(*state);
    progressBox.append(cancelButton);
    progressBox.set_visible(false);
    append(progressBox);
    report.set_xalign(0);
    report.set_wrap();
    report.set_selectable();
    report.set_yalign(0);
    report.add_css_class("numeric");
    auto *scrolledReport = Gtk::make_managed<Gtk::ScrolledWindow>();
    scrolledReport->set_child(report);
    scrolledReport->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scrolledReport->set_min_content_height(72);
    scrolledReport->set_vexpand();
    append(*scrolledReport);
    makeRows();
    refresh();
}

// Its parts lose the focus when they go.
FitPane::~FitPane() {
    filling = true;
}

static std::string shortText(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.7g", value);
    return text;
}

void FitPane::refresh() {
    if (revision == document.revision) return;
    revision = document.revision;
    if (document.formula != shownFormula) {
        shownFormula = document.formula;
        formula.get_buffer()->set_text(shownFormula);
    }
    bool same = rows.size() == document.parameters.size();
    for (std::size_t i = 0; same && i < rows.size(); ++i)
        same = rows[i]->name.get_text().raw() == document.parameters[i].name;
    if (!same) makeRows();
    fillRows();
    const FitResult &fit = document.fit;
    report.set_text(
        fit.done ? Glib::ustring::sprintf("%s\n%d iterations", fitReport(fit), fit.iterations)
                 : Glib::ustring());
    fitButton.set_sensitive(!document.formula.empty() || !document.sources.empty());
}

void FitPane::showProgress(const FitProgress &progress) {
    progressLabel.set_text(progress.iterations() == 0
                               ? "Fitting…"
                               : Glib::ustring::sprintf("χ² = %s\n%d iterations",
                                                        shortText(progress.chiSquare()),
                                                        progress.iterations()));
    fitButton.set_sensitive(false);
    report.set_visible(false);
    spinner.start();
    progressBox.set_visible();
}

void FitPane::hideProgress() {
    progressBox.set_visible(false);
    spinner.stop();
    report.set_visible();
    fitButton.set_sensitive();
}

void FitPane::makeRows() {
    {
        const ScopedValue ownDoing(filling, true);
        while (Gtk::Widget *child = grid.get_first_child()) grid.remove(*child);
    }
    rows.clear();
    parametersHeading->set_visible(!document.parameters.empty());
    int line = 0;
    for (const FitParameter &parameter : document.parameters) {
        auto row = std::make_unique<Row>();
        row->name.set_text(parameter.name);
        row->name.set_xalign(0);
        row->value.set_width_chars(10);
        row->value.set_hexpand();
        row->error.set_xalign(0);
        row->error.add_css_class("dim-label");
        row->fixed.set_tooltip_text("Hold the parameter fixed");
        setAccessibleLabel(row->value, parameter.name);
        setAccessibleLabel(row->fixed, Glib::ustring::sprintf("Hold %s fixed", parameter.name));
        const auto send = [this, sent = row.get()] {
            if (!filling) sendParameter(*sent);
        };
        row->value.signal_activate().connect(send);
        const auto focus = Gtk::EventControllerFocus::create();
        focus->signal_leave().connect([this, name = parameter.name] {
            sendSoon([this, name] {
                for (const auto &left : rows)
                    if (left->name.get_text().raw() == name) return sendParameter(*left);
            });
        });
        row->value.add_controller(focus);
        row->fixed.signal_toggled().connect(send);
        grid.attach(row->name, 0, line);
        grid.attach(row->value, 1, line);
        grid.attach(row->error, 2, line);
        grid.attach(row->fixed, 3, line);
        rows.push_back(std::move(row));
        ++line;
    }
}

void FitPane::fillRows() {
    const ScopedValue ownDoing(filling, true);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const FitParameter &parameter = document.parameters[i];
        const std::string value = shortText(parameter.value);
        if (std::exchange(rows[i]->shownValue, value) != value) rows[i]->value.set_text(value);
        rows[i]->error.set_text(std::isnan(parameter.error)
                                    ? Glib::ustring()
                                    : Glib::ustring::sprintf("± %.2g", parameter.error));
        rows[i]->fixed.set_active(parameter.fixed);
    }
}

// Parts that come and go while the focus goes from one to another would lead it astray.
void FitPane::sendSoon(const std::function<void()> &send) {
    if (filling) return;
    const auto sendIfShown = [this, send] {
        if (get_mapped()) send(); // else that was done, and the document may be gone
    };
    Glib::signal_idle().connect_once(sigc::track_obj(sendIfShown, *this), Glib::PRIORITY_HIGH);
}

void FitPane::sendFormula() {
    const std::string text = formula.get_buffer()->get_text();
    if (text == document.formula || !wishes.setFormula(text)) return;
    shownFormula = text;
}

// What is shown is shorter than the value may be: only another text is another value.
void FitPane::sendParameter(Row &row) {
    const std::string name = row.name.get_text();
    for (const FitParameter &parameter : document.parameters) {
        if (parameter.name != name) continue;
        const std::string text = row.value.get_text();
        const bool otherValue = text != shortText(parameter.value);
        if (!otherValue && row.fixed.get_active() == parameter.fixed) return;
        row.shownValue.clear(); // what was written is shown as the document has it
        char exact[40];
        std::snprintf(exact, sizeof exact, "%.17g", parameter.value);
        if (wishes.setParameters(name + " = " + (otherValue ? text : exact) +
                                 (row.fixed.get_active() ? " !" : "")))
            return; // the row may be another one now
        const ScopedValue ownDoing(filling, true);
        row.fixed.set_active(parameter.fixed);
        return;
    }
}

void FitPane::fit() {
    const std::string text = formula.get_buffer()->get_text();
    if (text != document.formula && !wishes.setFormula(text)) return;
    shownFormula = text;
    wishes.fit();
}

} // namespace plotwerk
