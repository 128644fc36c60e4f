#include "plotwerk/window/questions.h"

#include <utility>

namespace plotwerk {

void Questions::askForFile(const Glib::ustring &title, Gtk::FileChooser::Action action,
                           const std::filesystem::path &folder, const Glib::ustring &name,
                           const std::function<void(const std::string &)> &chosen) {
    const bool opens = action == Gtk::FileChooser::Action::OPEN;
    chooser =
        Gtk::FileChooserNative::create(title, parent, action, opens ? "_Open" : "_Save", "_Cancel");
    chooser->set_modal();
    if (!folder.empty()) chooser->set_current_folder(Gio::File::create_for_path(folder.string()));
    if (!opens) chooser->set_current_name(name);
    chooser->signal_response().connect([this, chosen](int response) {
        const auto ended = std::exchange(chooser, {});
        const bool isChosen =
            response == static_cast<int>(Gtk::ResponseType::ACCEPT) && ended->get_file();
        end();
        if (isChosen) chosen(ended->get_file()->get_path());
    });
    chooser->show();
}

void Questions::askForText(const Glib::ustring &title, const Glib::ustring &button,
                           const Glib::ustring &proposed,
                           const std::function<void(const std::string &)> &given) {
    auto *entry = Gtk::make_managed<Gtk::Entry>();
    entry->set_text(proposed);
    entry->set_activates_default();
    entry->set_margin(12);
    entry->set_hexpand();
    dialog = std::make_unique<Gtk::Dialog>(title, parent, true);
    dialog->set_default_size(360, -1);
    dialog->set_hide_on_close();
    dialog->get_content_area()->append(*entry);
    dialog->add_button("_Cancel", Gtk::ResponseType::CANCEL);
    dialog->add_button(button, Gtk::ResponseType::OK);
    dialog->set_default_response(Gtk::ResponseType::OK);
    dialog->signal_response().connect([this, entry, given](int response) {
        dialog->hide();
        end();
        if (response == Gtk::ResponseType::OK) given(entry->get_text());
    });
    dialog->present();
}

void Questions::askToSave(const Glib::ustring &document,
                          const std::function<void(Changes)> &answered) {
    auto asking = std::make_unique<Gtk::MessageDialog>(
        parent, Glib::ustring::sprintf("Save changes to “%s” before closing?", document), false,
        Gtk::MessageType::QUESTION, Gtk::ButtonsType::NONE, true);
    asking->set_title("Save Changes");
    asking->set_hide_on_close();
    asking->set_secondary_text("Changes that are not saved will be lost.");
    constexpr int discard = 1;
    auto *discarding = asking->add_button("_Discard", discard);
    discarding->add_css_class("destructive-action");
    asking->add_button("_Cancel", Gtk::ResponseType::CANCEL);
    auto *saving = asking->add_button("_Save", Gtk::ResponseType::ACCEPT);
    saving->add_css_class("suggested-action");
    asking->set_default_response(Gtk::ResponseType::ACCEPT);
    dialog = std::move(asking);
    dialog->signal_response().connect([this, answered](int response) {
        dialog->hide();
        next = {};
        answered(response == Gtk::ResponseType::ACCEPT ? Changes::saved
                 : response == discard                 ? Changes::discarded
                                                       : Changes::kept);
    });
    dialog->present();
}

bool Questions::isAsking() const {
    return chooser || (dialog && dialog->get_visible());
}

void Questions::remind(const std::function<void()> &whenAnswered) {
    next = whenAnswered;
    parent.present();
    if (!chooser) dialog->present();
}

void Questions::withdraw() {
    if (dialog) dialog->hide();
    chooser.reset();
}

void Questions::end() {
    if (!next) return;
    Glib::signal_idle().connect_once(
        sigc::track_obj([work = std::exchange(next, {})] { work(); }, *this));
}

} // namespace plotwerk
