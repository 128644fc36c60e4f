// fitPane.h - the formula of a document, its parameters and the last fit, to look at and to change.
#ifndef PLOTWERK_WINDOW_FITPANE_H
#define PLOTWERK_WINDOW_FITPANE_H

#include "plotwerk/fit/fitProgress.h"
#include "plotwerk/model/document.h"

#include <functional>
#include <gtkmm.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plotwerk {

// What the user wants. Two are false when it was refused.
struct FitWishes {
    std::function<bool(const std::string &text)> setFormula;
    std::function<bool(const std::string &list)> setParameters; // with decimal points
    std::function<void()> fit;
};

class FitPane final : public Gtk::Box {
  public:
    // The document must outlive it.
    FitPane(const Document &document, FitWishes wishes);
    ~FitPane() override;

    // To be called when the document may have changed. What the user is writing stays.
    void refresh();

    // While the document is fitted, in place of the last fit: how far that has come, and the
    // action win.cancel-fit as a button.
    void showProgress(const FitProgress &progress);
    void hideProgress();

  private:
    struct Row {
        Gtk::Label name;
        Gtk::Entry value;
        Gtk::Label error;
        Gtk::CheckButton fixed;
        std::string shownValue; // as the document has it
    };

    void makeRows();
    void fillRows();
    void sendSoon(const std::function<void()> &send);
    void sendFormula();
    void sendParameter(Row &row);
    void fit();

    const Document &document;
    const FitWishes wishes;
    std::optional<std::uint64_t> revision; // that is shown
    std::string shownFormula;
    bool filling = false; // nothing is the user's that happens now

    Gtk::TextView formula;
    Gtk::Label *parametersHeading = nullptr;
    Gtk::Grid grid;
    std::vector<std::unique_ptr<Row>> rows;
    Gtk::Button fitButton;
    Gtk::Box progressBox;
    Gtk::Spinner spinner;
    Gtk::Label progressLabel;
    Gtk::Button cancelButton;
    Gtk::Label report;
};

} // namespace plotwerk

#endif
