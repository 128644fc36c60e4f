#include "plotwerk/window/windowedApplication.h"

#include "plotwerk/base/log.h"
#include "plotwerk/base/programs.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/model/change.h"
#include "plotwerk/window/clipboard.h"
#include "plotwerk/window/guarded.h"
#include "plotwerk/window/menus.h"
#include "plotwerk/window/scopedValue.h"

#include <chrono>
#include <csignal>
#include <future>
#include <glib-unix.h>
#include <thread>
#include <utility>

namespace plotwerk {

using namespace std::chrono_literals;

Glib::RefPtr<WindowedApplication> WindowedApplication::create(bool keepJournals) {
    return Glib::make_refptr_for_instance(new WindowedApplication(keepJournals));
}

WindowedApplication::WindowedApplication(bool keepJournals)
    : Gtk::Application("org.plotwerk.Plotwerk", Gio::Application::Flags::HANDLES_OPEN),
      keepsJournals(keepJournals) {
}

// The theme's red alone is hard to read on dark desktops.
static void makeErrorsReadable() {
    const auto style = Gtk::CssProvider::create();
    style->load_from_data("label.error { color: mix(@error_color, @theme_fg_color, 0.5); }");
    Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), style,
                                                GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

void WindowedApplication::on_startup() {
    Gtk::Application::on_startup();
    makeErrorsReadable();
    Glib::add_exception_handler([this] { tellException(); });
    Glib::set_application_name("Plotwerk");
    Gtk::Window::set_default_icon_name("org.plotwerk.Plotwerk");
    const auto end = +[](gpointer application) -> gboolean {
        guarded([&] { static_cast<WindowedApplication *>(application)->endSoon(); });
        return G_SOURCE_REMOVE;
    };
    g_unix_signal_add(SIGTERM, end, this);
    g_unix_signal_add(SIGINT, end, this);
    hold(); // it ends by end alone, and not with the bus
    if (const auto connection = get_dbus_connection())
        g_dbus_connection_set_exit_on_close(connection->gobj(), FALSE);
    addActions();
    startServer();
}

// An exception from the handler of an event, such as lack of memory, ends only that event; one from
// here would end the process.
void WindowedApplication::tellException() noexcept {
    try {
        try {
            throw;
        } catch (const std::exception &exception) {
            log(LogLevel::error, reasonOf(exception));
            if (DocumentWindow *window = frontWindow()) window->tell(reasonOf(exception));
        }
    } catch (...) { // nor is there memory to tell of it
    }
}

void WindowedApplication::startServer() {
    served.desktop = this;
    served.runFit = sigc::mem_fun(*this, &WindowedApplication::runFit);
    try {
        server.emplace(served);
    } catch (const std::exception &exception) {
        return fail(exception.what());
    }
    server->setListener(
        [this](const RecordedMessage &message) { guarded([&] { hear(message); }); });
    if (keepsJournals) served.keepJournals();
    bus.emplace(
        *server, [this] { refresh(); }, [this](const std::string &reason) { fail(reason); });
    if (keepsJournals) Glib::signal_idle().connect_once([this] { offerLeftDocuments(); });
}

void WindowedApplication::addActions() {
    add_action("new",
               [this] { whenFree([this] { perform("newDocumentWithName_", {std::string()}); }); });
    add_action("quit", [this] {
        cancelFit();
        whenFree([this] { quitAfterAsking(); });
    });
    add_action("about", [this] {
        if (Gtk::Window *window = get_active_window()) {
            gtk_show_about_dialog(
                window->gobj(), "program-name", "Plotwerk", "version", PLOTWERK_VERSION,
                "logo-icon-name", "org.plotwerk.Plotwerk", "comments",
                "Plots data and fits formulas to them; scripts drive it by callPlw.", nullptr);
        }
    });
    addMenus(*this);
}

void WindowedApplication::on_activate() {
    if (!server) return;
    if (isBusy()) {
        if (Gtk::Window *window = get_active_window()) window->present();
        return;
    }
    if (!served.front()) {
        served.add({});
        return;
    }
    if (DocumentWindow *window = frontWindow()) window->present();
}

void WindowedApplication::on_open(const type_vec_files &files, const Glib::ustring &) {
    if (!server) return;
    if (isBusy()) return whenFree([this, files] { on_open(files, {}); });
    std::string refused;
    for (const auto &file : files) {
        openFile(file->get_path());
        if (!served.lastError.empty()) refused = served.lastError;
    }
    if (!served.front()) served.add({});
    frontWindow()->tell(refused);
}

static bool isUntouched(const Document &document) {
    return document.name == "Untitled" && document.path.empty() && document.sources.empty() &&
           document.revision == 0;
}

static constexpr const char *aside = "Untitled, untouched";

// The only document, when it is untouched, under a name that no other one wants.
Document *WindowedApplication::untouchedAside() {
    Document *front = served.front();
    if (windows.size() != 1 || !isUntouched(*front)) return nullptr;
    front->name = aside;
    return front;
}

// An untouched document makes room for the file's, which may have the same name. What stands for a
// file that couldn't be opened isn't for the user, but the reason is.
void WindowedApplication::openFile(const std::string &path) {
    if (isBusy()) return whenFree([this, path] { openFile(path); });
    Document *const before = served.front();
    Document *const replaced = untouchedAside();
    const auto close = [this](const std::string &name) {
        perform("closeDocument_askForSave_", {name, false});
    };
    if (perform("openFile_file_doRangeOverAll_", {std::string(), path, false})) {
        if (replaced) close(aside);
        return;
    }
    const std::string reason = served.lastError;
    if (served.front() != before) close(served.front()->name);
    if (replaced) replaced->name = "Untitled";
    served.lastError = reason;
    refresh();
    if (DocumentWindow *window = frontWindow()) window->tell(reason);
}

void WindowedApplication::withDecimalSeparator(char separator, const std::function<void()> &work) {
    const ScopedValue given(served.decimalSeparator, separator);
    work();
}

bool WindowedApplication::perform(const char *member, std::vector<Argument> arguments) {
    if (isBusy() || !server) return false;
    for (const auto &[document, window] : windows) window->endStep();
    served.lastError.clear();
    server->perform({served.decimalSeparator, member, std::move(arguments)});
    if (DocumentWindow *window = frontWindow()) window->tell(served.lastError);
    refresh();
    return served.lastError.empty();
}

void WindowedApplication::restore(Document &document, Versions::Version version) {
    served.restore(document, std::move(version.document), version.origins, version.isSaved);
    refresh();
}

// Messages that come one after the other would leave no time for the picture.
void WindowedApplication::refresh() {
    for (const auto &[document, window] : windows) {
        window->refresh();
        if (bus && window->picture().isBehind(50ms)) bus->stayBehind(true);
    }
}

void WindowedApplication::hear(const RecordedMessage &message) {
    const auto line = messageLine(message);
    if (!line) return;
    if (DocumentWindow *window = line->opens ? frontWindow() : windowOf(line->document))
        line->opens ? window->hearOpened(*line) : window->hear(*line);
}

DocumentWindow *WindowedApplication::frontWindow() {
    const Document *front = served.front();
    return front ? windowOf(*front) : nullptr;
}

DocumentWindow *WindowedApplication::windowOf(const Document &document) {
    const auto found = windows.find(&document);
    return found == windows.end() ? nullptr : found->second.get();
}

DocumentWindow *WindowedApplication::windowOf(const std::string &name) {
    for (const auto &[document, window] : windows)
        if (document->name == name) return window.get();
    return nullptr;
}

void WindowedApplication::opened(Document &document) {
    if (ending) return;
    const auto self =
        std::dynamic_pointer_cast<WindowedApplication>(Glib::wrap(Gtk::Application::gobj(), true));
    auto window = std::make_unique<DocumentWindow>(self, document);
    window->picture().signalDrawn().connect([this] {
        if (bus) bus->stayBehind(false);
    });
    window->present();
    windows[&document] = std::move(window);
}

// Its functions may be at work: the window goes when they have come back.
void WindowedApplication::closing(const Document &document) {
    const auto window = windows.find(&document);
    if (window == windows.end()) return;
    retired.reserve(retired.size() + 1); // what may fail comes first
    Glib::signal_idle().connect_once([this] { retired.clear(); });
    window->second->retire();
    retired.push_back(std::move(window->second));
    windows.erase(window);
}

void WindowedApplication::activated(const Document &document) {
    if (DocumentWindow *window = windowOf(document)) window->present();
}

bool WindowedApplication::asksToSave(const Document &document) {
    if (!windows.contains(&document)) return false;
    Glib::signal_idle().connect_once([this, name = document.name] {
        if (DocumentWindow *window = windowOf(name)) window->closeAfterAsking();
    });
    return true;
}

static Glib::RefPtr<Gdk::Clipboard> clipboard() {
    return Gdk::Display::get_default()->get_clipboard();
}

void WindowedApplication::copyText(const std::string &text) {
    copyTextTo(clipboard(), text);
}

void WindowedApplication::copyPicture(const Document &document) {
    copyPictureTo(clipboard(), document);
}

std::optional<std::string> WindowedApplication::foreignText() {
    std::optional<std::string> text;
    lettingLoopRun([&] { text = foreignTextOf(clipboard()); });
    return text;
}

// The fit that can be cancelled while this lives.
class WindowedApplication::Running {
  public:
    Running(WindowedApplication &by, const Document &document, FitProgress &progress)
        : application(by) {
        application.fitted = &document;
        application.fitProgress = &progress;
    }
    ~Running() {
        application.fitted = nullptr;
        application.fitProgress = nullptr;
    }
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;

  private:
    WindowedApplication &application;
};

// A short fit is waited for; a long one lets the main loop run, and tells of itself when it takes
// longer than one would wonder about.
void WindowedApplication::runFit(const Document &document, FitProgress &progress,
                                 const std::function<void()> &solve) {
    if (endsSoon) progress.cancel();
    std::packaged_task<void()> task(solve);
    std::future<void> result = task.get_future();
    const auto isOver = [&](auto within) {
        return result.wait_for(within) == std::future_status::ready;
    };
    const std::jthread thread([&] {
        task();
        g_main_context_wakeup(nullptr);
    });
    if (!isOver(16ms)) {
        constexpr unsigned int interval = 200; // of telling, in ms
        const Running running(*this, document, progress);
        lettingLoopRun([&] {
            DocumentWindow *window = windowOf(document); // null while the program ends
            if (window) window->beginFit();
            sigc::connection timer = Glib::signal_timeout().connect(
                [&] {
                    if (window) window->showFit(progress);
                    return true;
                },
                interval);
            while (!isOver(0ms)) g_main_context_iteration(nullptr, TRUE);
            timer.disconnect();
            if (window) window->endFit();
        });
    }
    result.get();
}

void WindowedApplication::cancelFit() {
    if (fitProgress) fitProgress->cancel();
}

void WindowedApplication::cancelFitOf(const Document &document) {
    if (fitted == &document) cancelFit();
}

void WindowedApplication::lettingLoopRun(const std::function<void()> &work) {
    if (works++ == 0 && bus) bus->suspend();
    try {
        work();
    } catch (...) {
        endWork();
        throw;
    }
    endWork();
}

void WindowedApplication::endWork() {
    if (--works > 0) return;
    if (bus) bus->resume();
    if (putOff.empty()) return;
    Glib::signal_idle().connect_once(
        [this] {
            for (const auto &work : std::exchange(putOff, {}))
                if (!ended) work();
        },
        Glib::PRIORITY_HIGH);
}

void WindowedApplication::whenFree(const std::function<void()> &work) {
    if (!isBusy()) return work();
    putOff.push_back(work);
}

bool WindowedApplication::closeDocument(const Document &document) {
    const ScopedValue isLast(ending, windows.size() == 1);
    const bool done = perform("closeDocument_askForSave_", {document.name, false});
    if (done && ending) end();
    return done;
}

// One document after the other, the one in front first, until the user keeps one open.
void WindowedApplication::quitAfterAsking() {
    if (ended) return;
    if (windows.empty()) return end();
    frontWindow()->closeAfterAsking([this] {
        Glib::signal_idle().connect_once([this] { whenFree([this] { quitAfterAsking(); }); });
    });
}

void WindowedApplication::offerLeftDocuments() {
    const std::vector<std::string> left = served.leftDocuments();
    if (left.empty()) return served.removeOldJournals();
    Glib::ustring list;
    for (const std::string &document : left) list += document + '\n';
    dialog = std::make_unique<Gtk::MessageDialog>("Bring back unsaved documents?", false,
                                                  Gtk::MessageType::QUESTION,
                                                  Gtk::ButtonsType::NONE, true);
    if (DocumentWindow *window = frontWindow()) dialog->set_transient_for(*window);
    dialog->set_title("Plotwerk");
    dialog->set_secondary_text("Plotwerk ended before they were saved.\n\n" + list);
    dialog->add_button("_Not Now", Gtk::ResponseType::CANCEL);
    auto *bringing = dialog->add_button("_Bring Back", Gtk::ResponseType::ACCEPT);
    bringing->add_css_class("suggested-action");
    dialog->set_default_response(Gtk::ResponseType::ACCEPT);
    dialog->signal_response().connect([this](int response) {
        dialog->hide();
        if (response != Gtk::ResponseType::ACCEPT) return served.removeOldJournals();
        // It lets the main loop run, which is not for the handler of an event.
        Glib::signal_idle().connect_once([this] { whenFree([this] { bringBack(); }); });
    });
    dialog->show();
}

// What took long once, may take as long again.
void WindowedApplication::bringBack() {
    using Clock = std::chrono::steady_clock;
    constexpr auto slice = 16ms;
    if (ended || endsSoon) return;
    if (DocumentWindow *window = frontWindow()) window->note("Documents are brought back…");
    auto last = Clock::now() - slice;
    const auto letLoopRun = [&] {
        if (Clock::now() >= last + slice) {
            for (const auto end = Clock::now() + slice; Clock::now() < end;)
                if (!g_main_context_iteration(nullptr, FALSE)) break;
            last = Clock::now();
        }
        return !endsSoon;
    };
    bool all = false;
    Document *const replaced = untouchedAside();
    try {
        lettingLoopRun([&] { server->recover(letLoopRun); });
        all = served.leftDocuments().empty();
        if (!endsSoon) served.removeOldJournals();
    } catch (const std::exception &exception) { // no memory to begin with
        log(LogLevel::error, reasonOf(exception));
    }
    if (replaced && windows.size() > 1)
        perform("closeDocument_askForSave_", {std::string(aside), false});
    else if (replaced)
        replaced->name = "Untitled";
    for (const auto &[document, window] : windows)
        window->tell(all ? "" : "Not all documents could be brought back: the log says why");
}

void WindowedApplication::fail(const std::string &reason) {
    log(LogLevel::error, reason);
    exitStatus = 1;
    bus.reset();
    const bool hasDocuments = !windows.empty();
    failure = std::make_unique<Gtk::MessageDialog>("Plotwerk can't answer messages", false,
                                                   Gtk::MessageType::ERROR, Gtk::ButtonsType::CLOSE,
                                                   true);
    if (DocumentWindow *window = frontWindow()) failure->set_transient_for(*window);
    failure->set_title("Plotwerk");
    failure->set_secondary_text(hasDocuments ? reason + ".\n\nThe documents stay open, to be saved."
                                             : reason);
    failure->signal_response().connect([this](int) {
        failure->hide();
        if (windows.empty()) endSoon();
    });
    failure->show();
}

void WindowedApplication::endSoon() {
    endsSoon = true;
    cancelFit();
    whenFree([this] { end(); });
}

void WindowedApplication::end() {
    if (std::exchange(ended, true)) return;
    served.leave();
    for (const auto &[document, window] : windows) window->retire();
    windows.clear();
    bus.reset();
    server.reset();
    quit();
}

} // namespace plotwerk
