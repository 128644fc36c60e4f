// questions.h - what a window asks its user: one question at a time, while everything goes on.
#ifndef PLOTWERK_WINDOW_QUESTIONS_H
#define PLOTWERK_WINDOW_QUESTIONS_H

#include <filesystem>
#include <functional>
#include <gtkmm.h>
#include <memory>
#include <string>

namespace plotwerk {

class Questions final : public sigc::trackable {
  public:
    explicit Questions(Gtk::Window &window) : parent(window) {}

    // Which file; `name` is proposed for one that is to be written. `chosen` isn't called when the
    // user cancels, nor is `given`.
    void askForFile(const Glib::ustring &title, Gtk::FileChooser::Action action,
                    const std::filesystem::path &folder, const Glib::ustring &name,
                    const std::function<void(const std::string &path)> &chosen);
    void askForText(const Glib::ustring &title, const Glib::ustring &button,
                    const Glib::ustring &proposed,
                    const std::function<void(const std::string &text)> &given);

    // What becomes of the changes of the document of that name.
    enum class Changes { saved, discarded, kept };
    void askToSave(const Glib::ustring &document, const std::function<void(Changes)> &answered);

    bool isAsking() const;

    // Shows the question that is open to who may have lost sight of it, and has the work done when
    // it has been answered; the last such work only.
    void remind(const std::function<void()> &whenAnswered);

    // The open question goes; nobody hears of an answer.
    void withdraw();

  private:
    void end();

    Gtk::Window &parent;
    Glib::RefPtr<Gtk::FileChooserNative> chooser;
    std::unique_ptr<Gtk::Dialog> dialog;
    std::function<void()> next;
};

} // namespace plotwerk

#endif
