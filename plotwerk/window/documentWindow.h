// documentWindow.h - the window of a document.
#ifndef PLOTWERK_WINDOW_DOCUMENTWINDOW_H
#define PLOTWERK_WINDOW_DOCUMENTWINDOW_H

#include "plotwerk/window/closing.h"
#include "plotwerk/window/curveList.h"
#include "plotwerk/window/fitPane.h"
#include "plotwerk/window/hiddenCurves.h"
#include "plotwerk/window/journalPane.h"
#include "plotwerk/window/plotArea.h"
#include "plotwerk/window/questions.h"
#include "plotwerk/window/statusLine.h"
#include "plotwerk/window/versions.h"
#include "plotwerk/window/viewHistory.h"

#include <gtkmm.h>
#include <string>
#include <vector>

namespace plotwerk {

class WindowedApplication;

class DocumentWindow final : public Gtk::ApplicationWindow {
  public:
    // The document must outlive the window's use: see retire.
    DocumentWindow(const Glib::RefPtr<WindowedApplication> &application, Document &document);

    PictureArea &picture() { return plot.picture(); }

    // A message of that line was done to the document.
    void hear(const MessageLine &line);

    // A message of that line has opened a file, and the document is in front now. Where the file
    // holds data, the journal begins with it: nothing that is saved later changes those.
    void hearOpened(const MessageLine &message);

    // To be called when the document may have changed.
    void refresh();

    // What was done until now is a step of its own, to be undone alone. What is seen together for
    // the first time is one step otherwise.
    void endStep();

    // A line for the user, until the next one; empty: none. What is told has gone wrong.
    void note(const Glib::ustring &text) { status.note(text); }
    void tell(const Glib::ustring &text) { status.tell(text); }

    // The progress of a fit of the document, which the user can cancel.
    void beginFit();
    void showFit(const FitProgress &progress);
    void endFit();

    // Asks what becomes of unsaved changes, and closes the document unless the user wants to keep
    // it open. Without any it is closed at once. A fit of it is cancelled, another one waited for,
    // and so is the answer to what the user is being asked already. When it has been closed `then`
    // is called.
    void closeAfterAsking(const std::function<void()> &then = {}) { closing.begin(then); }

    // The document is about to go: the window disappears and does nothing from now on.
    void retire();
    bool isRetired() const { return retired; }

  private:
    void addActions();
    void addDropTarget();
    void catchUp();
    void catchUpBeforeKeys();
    void send(const char *member, std::vector<Argument> arguments = {});
    bool isDone(const char *member, std::vector<Argument> arguments);
    bool isFree();

    void restore(Versions::Version version);
    void selectCurves(const std::vector<int> &curves);
    void setRanges(const std::vector<AxisRange> &ranges);
    void showView(const View &view);
    void setLooks(const char *action, int argument);
    void hideCurves();
    void showCurves();
    void showSelection();
    void drawParts(const DrawnParts &parts);
    void toggleLogarithmic(AxisCode axis, Gio::SimpleAction &action);

    void chooseFileToOpen();
    void save(const std::function<void()> &then);
    void saveAs(const std::function<void()> &then);
    void exportPicture();
    void saveScript();
    void rename();
    void paste();
    void readText(const std::string &text, const std::string &source);
    void takeFile(const std::string &path);
    void askForFile(const Glib::ustring &title, Gtk::FileChooser::Action action,
                    const Glib::ustring &name,
                    const std::function<void(const std::string &path)> &chosen);
    void updateTitle();
    void updateActions();

    WindowedApplication &application;
    Document &document;
    ViewHistory history;
    Versions versions;
    Versions::Change change = Versions::Change::none; // since the last version
    std::uint64_t heardRevision = document.revision;  // after the last message
    bool isWithinStep = false;                        // several messages are one step
    HiddenCurves hiddenCurves;

    CurveList curves;
    PlotArea plot;
    JournalPane journalPane;
    FitPane fitPane;
    StatusLine status;
    Glib::RefPtr<Gio::SimpleAction> logarithmicX;
    Glib::RefPtr<Gio::SimpleAction> logarithmicY;
    Glib::RefPtr<Gio::SimpleAction> fillWindow;
    Glib::RefPtr<Gio::SimpleAction> line;
    Glib::RefPtr<Gio::SimpleAction> symbols;
    std::vector<Glib::RefPtr<Gio::SimpleAction>> forSelection; // need one
    Glib::RefPtr<Gio::SimpleAction> undo;
    Glib::RefPtr<Gio::SimpleAction> redo;
    Glib::RefPtr<Gio::SimpleAction> back;
    Glib::RefPtr<Gio::SimpleAction> forward;
    Glib::RefPtr<Gio::SimpleAction> cancelFit;
    Questions questions;
    Closing closing;
    bool retired = false;
};

} // namespace plotwerk

#endif
