// windowedApplication.h - Plotwerk on a desktop: a window for each document, and the messages of
// the session bus answered beside it.
//
// All that the user does to a document is done by a message of the program's own, as the bus would
// bring it: it is recorded, refused and told like any other.
#ifndef PLOTWERK_WINDOW_WINDOWEDAPPLICATION_H
#define PLOTWERK_WINDOW_WINDOWEDAPPLICATION_H

#include "plotwerk/application/application.h"
#include "plotwerk/server/server.h"
#include "plotwerk/window/busSource.h"
#include "plotwerk/window/documentWindow.h"

#include <functional>
#include <gtkmm.h>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plotwerk {

class WindowedApplication final : public Gtk::Application, private Desktop {
  public:
    static Glib::RefPtr<WindowedApplication> create(bool keepJournals);

    // 1 when it could not begin or lost the bus.
    int status() const { return exitStatus; }

    // Does a message of the user's. True unless it was refused; then the window says why.
    bool perform(const char *member, std::vector<Argument> arguments);

    // Empty after a message that was done.
    const std::string &lastError() const { return served.lastError; }

    MouseSelection &mouseSelection(const Document &document) {
        return served.mouseSelection(document);
    }
    char decimalSeparator() const { return served.decimalSeparator; }

    // Another one is in force while the work is done.
    void withDecimalSeparator(char separator, const std::function<void()> &work);

    // While a message lets the main loop run, nothing else may be done to a document, nor is the
    // application asked for one: it may hold others meanwhile, which are being brought back.
    bool isBusy() const { return works > 0; }

    // Has the work done as soon as that is so no more, before further messages; at once otherwise.
    void whenFree(const std::function<void()> &work);

    // Cancels the fit that is running, if there is one: of any document, of that one.
    void cancelFit();
    void cancelFitOf(const Document &document);

    // As plotwerk::Application::restore.
    void restore(Document &document, Versions::Version version);

    // Opens it as the message does, when it is free; then the only window goes if its document was
    // a new one that nobody has touched.
    void openFile(const std::string &path);

    // The window's document is closed by the user: with the last window the program ends.
    bool closeDocument(const Document &document);

  private:
    explicit WindowedApplication(bool keepJournals);

    void on_startup() override;
    void on_activate() override;
    void on_open(const type_vec_files &files, const Glib::ustring &hint) override;

    void opened(Document &document) override;
    void closing(const Document &document) override;
    void activated(const Document &document) override;
    bool asksToSave(const Document &document) override;
    void copyText(const std::string &text) override;
    void copyPicture(const Document &document) override;
    std::optional<std::string> foreignText() override;

    // Beside the user, who may look at everything, follow the fit and cancel it, but change no
    // document meanwhile.
    void runFit(const Document &document, FitProgress &progress,
                const std::function<void()> &solve);

    class Running;

    void tellException() noexcept;
    void addActions();
    void startServer();
    void refresh();
    void hear(const RecordedMessage &message);
    void offerLeftDocuments();
    void bringBack();
    void fail(const std::string &reason);
    void quitAfterAsking();
    void endSoon();
    void end();
    void lettingLoopRun(const std::function<void()> &work);
    void endWork();
    Document *untouchedAside();
    DocumentWindow *frontWindow();
    DocumentWindow *windowOf(const Document &document);
    DocumentWindow *windowOf(const std::string &name);

    const bool keepsJournals;
    plotwerk::Application served;
    std::optional<Server> server;
    std::optional<BusSource> bus;
    std::map<const Document *, std::unique_ptr<DocumentWindow>> windows;
    std::vector<std::unique_ptr<DocumentWindow>> retired; // until the loop is idle
    std::unique_ptr<Gtk::MessageDialog> dialog;
    std::unique_ptr<Gtk::MessageDialog> failure;
    int works = 0;         // that let the main loop run; one may be part of another
    bool ending = false;   // the last window closes: the document that follows needs none
    bool endsSoon = false; // no fit is begun any more
    bool ended = false;
    std::vector<std::function<void()>> putOff; // until it isn't busy
    const Document *fitted = nullptr;          // by the fit that is running, if there is one
    FitProgress *fitProgress = nullptr;
    int exitStatus = 0;
};

} // namespace plotwerk

#endif
